#include "app/TextPopup.h"

#include <QKeyEvent>
#include <QLabel>

#include <algorithm>

namespace zrk {
namespace {

constexpr int kTextPopupMargin = 8;

/// A popup that is a label does not close by a key of its own accord.
class TextPopup final : public QLabel {
  public:
    using QLabel::QLabel;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Escape)
            close();
        else
            QLabel::keyPressEvent(event);
    }
};

} // namespace

void showTextAbove(QWidget& widget, const QString& text) {
    if (text.isEmpty())
        return;
    auto* popup = new TextPopup(text, &widget, Qt::Popup);
    popup->setObjectName(QStringLiteral("textPopup"));
    popup->setAttribute(Qt::WA_DeleteOnClose);
    popup->setTextFormat(Qt::PlainText);
    popup->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    popup->setWordWrap(true);
    popup->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    popup->setMargin(kTextPopupMargin);
    const int width = std::max(widget.width(), popup->fontMetrics().averageCharWidth() * 40);
    popup->resize(width, popup->heightForWidth(width));
    popup->move(widget.mapToGlobal(QPoint(0, -popup->height())));
    popup->show();
    popup->setFocus();
}

} // namespace zrk
