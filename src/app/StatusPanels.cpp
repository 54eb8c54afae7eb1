#include "app/StatusPanels.h"

#include "app/Binder.h"
#include "app/ElidedLabel.h"
#include "app/LoaderStyle.h"
#include "app/LoaderWidgets.h"
#include "app/TextPopup.h"
#include "controls/Controls.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QMainWindow>
#include <QProgressBar>
#include <QSizeGrip>
#include <QStatusBar>
#include <QStyle>

#include <algorithm>
#include <utility>

namespace zrk {
namespace {

constexpr int kGap = 6;               // between two panels
constexpr int kFirstPanelDigits = 20; // at least
constexpr int kBarDigits = 26;
constexpr int kLeastBarDigits = 8;

QIcon iconOf(RemarkSeverity severity, const QStyle& style) {
    switch (severity) {
    case RemarkSeverity::Note:
        return {};
    case RemarkSeverity::Done:
        return style.standardIcon(QStyle::SP_DialogApplyButton);
    case RemarkSeverity::Warning:
        return style.standardIcon(QStyle::SP_MessageBoxWarning);
    case RemarkSeverity::Failed:
        return style.standardIcon(QStyle::SP_MessageBoxCritical);
    }
    return {};
}

void showSeverity(ElidedLabel& panel, RemarkSeverity severity) {
    panel.setIcon(iconOf(severity, *panel.style()));
    QPalette colours; // the application's
    if (severity == RemarkSeverity::Failed)
        colours.setColor(QPalette::WindowText, warningColor(colours));
    panel.setPalette(colours);
}

void sink(QFrame* panel) {
    panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
}

/// Shows the mark, for which the panel's text leaves room.
void showMuted(const LoaderWidgets& widgets, bool muted) {
    widgets.lblMuted->setVisible(muted);
    QFont bold = widgets.firstPanel->font();
    bold.setBold(true);
    widgets.lblMuted->setFont(bold);
    QPalette colors = widgets.firstPanel->palette();
    colors.setColor(QPalette::WindowText, warningColor(colors));
    widgets.lblMuted->setPalette(colors);
    if (!muted)
        return; // a frame's own margins are among those of the contents
    QMargins margins = widgets.firstPanel->contentsMargins();
    margins.setRight(margins.right() + widgets.lblMuted->sizeHint().width() + kGap);
    widgets.firstPanel->setContentsMargins(margins);
}

} // namespace

void buildStatusBar(LoaderWidgets& widgets, QMainWindow& window) {
    widgets.staStatus = named(new QStatusBar(&window), QStringLiteral("staStatus"));
    // The status bar's own layout would move the panels with the width of the window and of their texts.
    auto* panels = new QWidget(widgets.staStatus);
    widgets.firstPanel = named(new ElidedLabel(panels), QStringLiteral("staStatus_0"));
    widgets.lblMuted =
        named(new QLabel(QStringLiteral("Protocols muted"), widgets.firstPanel), QStringLiteral("lblMuted"));
    widgets.lblMuted->setToolTip(
        QStringLiteral("The wait dialog's debug button was pressed: the protocols send nothing. Restart the "
                       "program to end this."));
    widgets.secondPanel = named(new ElidedLabel(panels), QStringLiteral("staStatus_1"));
    auto* thirdPanel = named(new QFrame(panels), QStringLiteral("staStatus_2"));
    for (QFrame* panel :
         {static_cast<QFrame*>(widgets.firstPanel), static_cast<QFrame*>(widgets.secondPanel), thirdPanel})
        sink(panel);
    panels->setFixedHeight(widgets.firstPanel->sizeHint().height());

    widgets.pgbDownload = named(new QProgressBar(thirdPanel), QStringLiteral("pgbDownload"));
    widgets.pgbDownload->setRange(0, 100);
    widgets.pgbDownload->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored); // it fills its panel
    auto* panelLayout = new QHBoxLayout(thirdPanel);
    panelLayout->setContentsMargins(0, 0, 0, 0);
    panelLayout->addWidget(widgets.pgbDownload);

    widgets.staStatus->addWidget(panels, 1);
    window.setStatusBar(widgets.staStatus);
}

void placeStatusPanels(const LoaderWidgets& widgets, int windowWidth) {
    const QFontMetrics metrics = widgets.firstPanel->fontMetrics();
    const int digit = metrics.horizontalAdvance(QLatin1Char('8'));
    const int counters = metrics.horizontalAdvance(QStringLiteral("  bytes sent 2147483647 / 2147483647  "));
    const int grip = widgets.staStatus->findChild<QSizeGrip*>()->sizeHint().width();
    const int least = kFirstPanelDigits * digit;
    const int room = windowWidth - grip - counters - 4 * kGap;
    const int bar = std::clamp(room - least, kLeastBarDigits * digit, kBarDigits * digit);

    int left = 0;
    QWidget* thirdPanel = widgets.pgbDownload->parentWidget();
    for (const auto& [panel, width] :
         {std::pair<QWidget*, int>{widgets.firstPanel, std::max(room - bar, least)},
          {widgets.secondPanel, counters},
          {thirdPanel, bar}}) {
        panel->setGeometry(left, 0, width, panel->parentWidget()->height());
        left += width + kGap;
    }
    QLabel& mark = *widgets.lblMuted;
    const QSize size = mark.sizeHint();
    mark.setGeometry(widgets.firstPanel->width() - size.width() - kGap, 0, size.width(),
                     widgets.firstPanel->height());
}

void bindStatusBar(Binder& binder, const LoaderWidgets& widgets, Controls& controls, QProperty<bool>& muted) {
    binder.follow(muted, [&widgets, &muted] { showMuted(widgets, muted); });
    binder.caption(controls.staStatus.FirstPanel, widgets.firstPanel);
    binder.follow(controls.staStatus.FirstPanelSeverity, [panel = widgets.firstPanel, &controls] {
        showSeverity(*panel, controls.staStatus.FirstPanelSeverity);
    });
    QObject::connect(widgets.firstPanel, &ElidedLabel::clicked, widgets.firstPanel,
                     [panel = widgets.firstPanel] { showTextAbove(*panel, panel->text()); });
    binder.caption(controls.staStatus.SecondPanel, widgets.secondPanel);
    binder.follow(controls.pgbDownload.Value, [bar = widgets.pgbDownload, &controls] {
        bar->setValue(static_cast<int>(controls.pgbDownload.Value));
    });
}

} // namespace zrk
