#include "app/FormScroller.h"

#include <QApplication>
#include <QScrollBar>

#include <algorithm>

namespace zrk {

FormScroller::FormScroller(QWidget* panel, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    // Only sideways: the console takes the height.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(panel);
    // However the focus got there, but not under a button that the mouse is about to release.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (QApplication::mouseButtons() == Qt::NoButton)
            showWhole(now);
    });
}

/// Its controls lose the focus when the base class destroys them, when this is no longer a FormScroller.
FormScroller::~FormScroller() {
    disconnect(qApp, nullptr, this, nullptr);
}

bool FormScroller::focusNextPrevChild(bool next) {
    const bool moved = QScrollArea::focusNextPrevChild(next);
    showWhole(QApplication::focusWidget());
    return moved;
}

/// Scrolls to the whole control; the base class would do so only for the input cursor.
void FormScroller::showWhole(const QWidget* control) {
    if (control == nullptr || !widget()->isAncestorOf(control))
        return;
    constexpr int kMargin = 8;
    const QRect place(control->mapTo(widget(), QPoint()), control->size());
    QScrollBar& bar = *horizontalScrollBar();
    const int rightmost = std::max(bar.value(), place.right() + 1 + kMargin - viewport()->width());
    bar.setValue(std::min(rightmost, place.left() - kMargin));
}

} // namespace zrk
