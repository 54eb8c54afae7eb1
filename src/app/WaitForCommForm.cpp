#include "app/WaitForCommForm.h"

#include "app/Disclosure.h"
#include "app/LoaderWidgets.h"
#include "boot/WaitDialog.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zrk {

WaitForCommForm::WaitForCommForm(QWidget* parent)
    : QDialog(parent, Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint) {
    setObjectName(QStringLiteral("frmWaitForComm"));
    setWindowTitle(QStringLiteral("Waiting for comm"));

    m_lblMsg = named(new QLabel(this), QStringLiteral("lblMsg"));
    m_lblMsg->setTextFormat(Qt::PlainText);
    m_lblSeen = named(new QLabel(this), QStringLiteral("lblSeen"));
    m_lblSeen->setTextFormat(Qt::PlainText);
    m_lblSeen->setWordWrap(true);
    m_cancelButton = named(new QPushButton(this), QStringLiteral("CancelButton"));
    m_cancelButton->setDefault(true);
    auto* debug = new Disclosure(QStringLiteral("Debug"), this);
    m_cmdOut = named(new QPushButton(debug), QStringLiteral("cmdOut"));
    m_txtOut = named(new QLineEdit(debug), QStringLiteral("txtOut"));
    m_txtOut->setAccessibleName(QStringLiteral("Debug string"));
    debug->addWidget(m_cmdOut);
    debug->addWidget(m_txtOut, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 10);
    layout->setSpacing(12);
    layout->addWidget(m_lblMsg);
    layout->addWidget(m_lblSeen);
    layout->addWidget(m_cancelButton, 0, Qt::AlignHCenter);
    layout->addWidget(debug);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(m_cancelButton, &QPushButton::clicked, this, [this] {
        if (m_dialog != nullptr)
            m_dialog->CancelButton_Click();
    });
    connect(m_cmdOut, &QPushButton::clicked, this, [this] {
        if (m_dialog != nullptr)
            m_dialog->cmdOut_Click();
    });
    connect(m_txtOut, &QLineEdit::returnPressed, m_cmdOut, &QPushButton::click);
    connect(m_txtOut, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (m_dialog != nullptr)
            m_dialog->txtOut.Text = text;
    });
    // Only those that get keys first: they pass unhandled ones to the others.
    for (QWidget* control : findChildren<QWidget*>()) {
        if (control->focusPolicy() != Qt::NoFocus)
            control->installEventFilter(this);
    }
}

void WaitForCommForm::openFor(WaitDialog& dialog) {
    m_dialog = &dialog;
    QString message = dialog.lblMsg.Caption;
    m_lblMsg->setText(message.replace(QLatin1String("\r\n"), QLatin1String("\n")));
    m_cancelButton->setText(dialog.CancelButton.Caption);
    m_cmdOut->setText(dialog.cmdOut.Caption);
    m_cmdOut->setToolTip(QStringLiteral(
        "Sends the text and mutes the protocols: until the program is restarted, only what you "
        "send yourself goes to the board."));
    m_txtOut->setText(dialog.txtOut.Text);
    m_seen = dialog.lblSeen.Caption.addNotifier([this, &dialog] { showSeen(dialog.lblSeen.Caption); });
    showSeen(dialog.lblSeen.Caption);
    m_cancelButton->setFocus();
    open();
}

void WaitForCommForm::showSeen(const QString& text) {
    m_lblSeen->setText(text);
    // A window of a fixed size follows its layout later, and a label that wraps asks for too little.
    m_lblSeen->setMinimumHeight(m_lblSeen->heightForWidth(m_lblMsg->sizeHint().width()));
}

void WaitForCommForm::leave() {
    m_dialog = nullptr;
    m_seen = {};
    hide();
}

void WaitForCommForm::reject() {
    if (m_dialog != nullptr)
        m_dialog->Form_Unload();
    else
        QDialog::reject();
}

bool WaitForCommForm::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress)
        keyDown(*static_cast<QKeyEvent*>(event));
    return QDialog::eventFilter(watched, event);
}

void WaitForCommForm::keyPressEvent(QKeyEvent* event) {
    // Keys of a control were reported already, on their way to it.
    if (focusWidget() == nullptr)
        keyDown(*event);
    // An Enter that the debug box has handled must not reach the default button, which cancels.
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter || focusWidget() != m_txtOut)
        QDialog::keyPressEvent(event);
}

void WaitForCommForm::keyDown(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers();
    if (m_dialog != nullptr)
        m_dialog->Form_KeyDown(event.key(), modifiers.testFlag(Qt::AltModifier),
                               modifiers.testFlag(Qt::ShiftModifier),
                               modifiers.testFlag(Qt::ControlModifier));
}

void WindowWaitDialog::show(WaitDialog& dialog) {
    if (m_window.isNull())
        m_window = new WaitForCommForm(m_parent());
    m_window->openFor(dialog);
}

void WindowWaitDialog::hide() {
    if (!m_window.isNull())
        m_window->leave();
}

QWidget* WindowWaitDialog::openWindow() const {
    return !m_window.isNull() && m_window->isVisible() ? m_window.data() : nullptr;
}

} // namespace zrk
