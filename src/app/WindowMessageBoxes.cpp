#include "app/WindowMessageBoxes.h"

#include "app/Identity.h"

#include <QApplication>
#include <QMessageBox>

namespace zrk {
namespace {

QMessageBox::Icon iconOf(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::Exclamation:
        return QMessageBox::Warning;
    case MessageIcon::Information:
        return QMessageBox::Information;
    case MessageIcon::Question:
        return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

} // namespace

WindowMessageBoxes::WindowMessageBoxes(std::function<QWidget*()> parent, Runner run)
    : m_parent(std::move(parent)), m_run(std::move(run)) {
    if (!m_run)
        m_run = [](QMessageBox& box) { return box.exec(); };
}

Answer WindowMessageBoxes::show(const MessageBox& box) {
    QString prompt = box.prompt;
    prompt.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    QMessageBox shown(m_parent());
    QApplication::alert(shown.parentWidget());
    shown.setTextFormat(Qt::PlainText);
    shown.setText(prompt);
    shown.setIcon(iconOf(box.icon));
    shown.setWindowTitle(box.title.isEmpty() ? applicationTitle() : box.title);
    if (box.buttons == MessageButtons::Ok) {
        shown.setStandardButtons(QMessageBox::Ok);
        (void)m_run(shown);
        return Answer::Ok;
    }
    shown.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    shown.setDefaultButton(QMessageBox::No); // a hasty Enter must lose nothing
    shown.setEscapeButton(QMessageBox::No);
    return m_run(shown) == QMessageBox::Yes ? Answer::Yes : Answer::No;
}

} // namespace zrk
