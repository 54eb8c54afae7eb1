#include "app/StatusPanels.h"

#include "app/Binder.h"
#include "app/ElidedLabel.h"
#include "app/LoaderWidgets.h"
#include "loader/Loader.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QProgressBar>
#include <QStatusBar>

namespace zrk {
namespace {

constexpr int kFullProgress = 100;

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
    widgets.pgbDownload->setFixedHeight(metrics.height());
    widgets.pgbDownload->setMinimumWidth(8 * digit);
    auto* panelLayout = new QHBoxLayout(thirdPanel);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->addWidget(widgets.pgbDownload);

    // The first two share one width, so that a longer counter does not push the progress bar.
    widgets.textPanels = new QWidget(widgets.staStatus);
    auto* texts = new QHBoxLayout(widgets.textPanels);
    texts->setContentsMargins(0, 0, 0, 0);
    texts->addWidget(widgets.firstPanel, 1);
    texts->addWidget(widgets.secondPanel);
    widgets.staStatus->addWidget(widgets.textPanels, 1);
    widgets.staStatus->addWidget(thirdPanel);
    window.setStatusBar(widgets.staStatus);
}

void keepPanelWidths(const LoaderWidgets& widgets) {
    for (QWidget* panel : {widgets.textPanels, widgets.pgbDownload->parentWidget()})
        panel->setMaximumWidth(panel->width());
}

void bindStatusBar(Binder& binder, const LoaderWidgets& widgets, Loader& loader) {
    Controls& controls = loader.controls;
    binder.caption(controls.staStatus.FirstPanel, widgets.firstPanel);
    binder.caption(controls.staStatus.SecondPanel, widgets.secondPanel);
    const auto show = [bar = widgets.pgbDownload, &loader] {
        const bool waits = loader.state.OperationActive && !loader.state.WaitingFor.isEmpty();
        bar->setRange(0, waits ? 0 : kFullProgress);
        if (!waits)
            bar->setValue(static_cast<int>(loader.controls.pgbDownload.Value));
    };
    binder.follow(controls.pgbDownload.Value, show);
    binder.follow(loader.state.OperationActive, show);
    // What is waited for comes and goes with the text of the first panel.
    binder.follow(controls.staStatus.FirstPanel, show);
}

} // namespace zrk
