#include "app/StatusPanels.h"

#include "app/Binder.h"
#include "app/ElidedLabel.h"
#include "app/LoaderWidgets.h"
#include "controls/Controls.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QProgressBar>
#include <QStatusBar>

namespace zrk {
namespace {

void sink(QFrame* panel) {
    panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
}

/// A widget that likes to be so wide, and can be narrower.
template <typename W>
class Roomy final : public W {
  public:
    Roomy(int width, QWidget* parent) : W(parent), m_width(width) {}

    [[nodiscard]] QSize sizeHint() const override { return W::sizeHint().expandedTo(QSize(m_width, 0)); }

  private:
    int m_width;
};

} // namespace

void buildStatusBar(LoaderWidgets& widgets, QMainWindow& window) {
    widgets.staStatus = named(new QStatusBar(&window), QStringLiteral("staStatus"));
    widgets.firstPanel = named(new ElidedLabel(widgets.staStatus), QStringLiteral("staStatus_0"));
    const QFontMetrics metrics = widgets.staStatus->fontMetrics();
    const int digit = metrics.horizontalAdvance(QLatin1Char('8'));
    // What goes on is told there, and the last to give way in a narrow window.
    widgets.firstPanel->setMinimumWidth(20 * digit);
    const int counters = metrics.horizontalAdvance(QStringLiteral(" bytes sent 67108864 / 67108864 "));
    widgets.secondPanel =
        named(new Roomy<QLabel>(counters, widgets.staStatus), QStringLiteral("staStatus_1"));
    auto* thirdPanel = named(new QFrame(widgets.staStatus), QStringLiteral("staStatus_2"));
    for (QFrame* panel :
         {static_cast<QFrame*>(widgets.firstPanel), static_cast<QFrame*>(widgets.secondPanel), thirdPanel})
        sink(panel);

    widgets.pgbDownload =
        named(new Roomy<QProgressBar>(26 * digit, thirdPanel), QStringLiteral("pgbDownload"));
    widgets.pgbDownload->setRange(0, 100);
    widgets.pgbDownload->setFixedHeight(metrics.height());
    widgets.pgbDownload->setMinimumWidth(8 * digit);
    auto* panelLayout = new QHBoxLayout(thirdPanel);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->addWidget(widgets.pgbDownload);

    widgets.staStatus->addWidget(widgets.firstPanel, 1);
    widgets.staStatus->addPermanentWidget(widgets.secondPanel);
    widgets.staStatus->addPermanentWidget(thirdPanel);
    window.setStatusBar(widgets.staStatus);
}

void bindStatusBar(Binder& binder, const LoaderWidgets& widgets, Controls& controls) {
    binder.caption(controls.staStatus.FirstPanel, widgets.firstPanel);
    binder.caption(controls.staStatus.SecondPanel, widgets.secondPanel);
    binder.follow(controls.pgbDownload.Value, [bar = widgets.pgbDownload, &controls] {
        bar->setValue(static_cast<int>(controls.pgbDownload.Value));
    });
}

} // namespace zrk
