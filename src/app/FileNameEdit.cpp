#include "app/FileNameEdit.h"

#include "app/LoaderStyle.h"
#include "app/PlainToolTip.h"

#include <QHelpEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolTip>

namespace zrk {
namespace {

const QString kMissing = QStringLiteral("CAN'T FIND: ");
constexpr int kTextMargin = 2; // of a line edit's text on either side

} // namespace

FileNameEdit::FileNameEdit(QWidget* parent) : QLineEdit(parent) {
    setReadOnly(true);
    setAcceptDrops(false); // the row handles a dropped file
}

bool FileNameEdit::tellsOfMissing(const QString& text) {
    return text.startsWith(kMissing);
}

void FileNameEdit::setMissing(bool missing) {
    m_isMissing = missing;
    colour();
}

QString FileNameEdit::fitted(int width) const {
    const QFontMetrics metrics = fontMetrics();
    if (!tellsOfMissing(text()))
        return metrics.elidedText(text(), Qt::ElideMiddle, width);
    return kMissing + metrics.elidedText(text().mid(kMissing.size()), Qt::ElideMiddle,
                                         width - metrics.horizontalAdvance(kMissing));
}

QRect FileNameEdit::textRoom(QStyleOptionFrame& frame) const {
    initStyleOption(&frame);
    return style()
        ->subElementRect(QStyle::SE_LineEditContents, &frame, this)
        .marginsRemoved(textMargins())
        .adjusted(kTextMargin, 0, -kTextMargin, 0);
}

bool FileNameEdit::event(QEvent* event) {
    QStyleOptionFrame frame;
    if (event->type() != QEvent::ToolTip || fitted(textRoom(frame).width()) == text())
        return QLineEdit::event(event);
    const QString told = toolTip().isEmpty() ? text() : toolTip() + QLatin1Char('\n') + text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(told), this);
    return true;
}

void FileNameEdit::paintEvent(QPaintEvent* event) {
    QStyleOptionFrame frame;
    const QRect room = textRoom(frame);
    const QString shown = fitted(room.width());
    // A field that has the focus shows the whole text, so that the caret can move through it.
    if (shown == text() || hasFocus())
        return QLineEdit::paintEvent(event);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, this);
    style()->drawItemText(&painter, room, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(), shown,
                          QPalette::Text);
}

void FileNameEdit::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange)
        colour();
}

void FileNameEdit::setMark(QLabel* mark) {
    m_mark = mark;
    mark->setParent(this);
    mark->installEventFilter(this);
    placeMark();
}

void FileNameEdit::resizeEvent(QResizeEvent* event) {
    QLineEdit::resizeEvent(event);
    placeMark();
}

bool FileNameEdit::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent)
        placeMark();
    return QLineEdit::eventFilter(watched, event);
}

void FileNameEdit::placeMark() {
    if (m_mark == nullptr)
        return;
    const int width = m_mark->width();
    m_mark->setGeometry(this->width() - width - 2 * kTextMargin, 0, width, height());
    setTextMargins(0, 0, m_mark->isHidden() ? 0 : width + kTextMargin, 0);
}

void FileNameEdit::colour() {
    QPalette colours;
    if (m_isMissing)
        colours.setColor(QPalette::Active, QPalette::Text, warningColor(colours));
    colours.setColor(QPalette::Inactive, QPalette::Text, colours.color(QPalette::Active, QPalette::Text));
    setPalette(colours);
}

} // namespace zrk
