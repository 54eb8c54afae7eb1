#include "app/PanelView.h"

#include <QApplication>

namespace zrk {

PanelView::PanelView(QWidget* panel, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    // Only sideways: the height is the console's affair.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setWidget(panel);
    // However the focus got there, but not under a button that the mouse is about to release.
    connect(qApp, &QApplication::focusChanged, this, [this, panel](QWidget*, QWidget* now) {
        if (now != nullptr && panel->isAncestorOf(now) && QApplication::mouseButtons() == Qt::NoButton)
            ensureWidgetVisible(now);
    });
}

} // namespace zrk
