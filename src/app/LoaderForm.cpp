#include "app/LoaderForm.h"

#include "app/ConsoleTools.h"
#include "app/ConsoleView.h"
#include "app/LoaderWidgets.h"
#include "app/SideFrames.h"
#include "app/SlotFrames.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace zrk {
namespace {

constexpr double kHeaderPoints = 12;
constexpr int kConsoleLines = 16;

QLabel* makeHeader(QWidget* parent) {
    auto* header = named(new QLabel(parent), QStringLiteral("lblHeader"));
    QFont font = header->font();
    font.setFamilies({QStringLiteral("MS Sans Serif"), font.family()});
    font.setBold(true);
    font.setPointSizeF(std::max(kHeaderPoints, 1.2 * font.pointSizeF()));
    header->setFont(font);
    return header;
}

} // namespace

LoaderForm::LoaderForm(LoaderWidgets& widgets, QWidget* parent)
    : QWidget(parent), m_controls(new QWidget(this)) {
    widgets.lblHeader = makeHeader(m_controls);
    buildSlotFrames(widgets, m_controls);
    auto* slotColumn = new QVBoxLayout;
    auto* headerLine = new QHBoxLayout;
    headerLine->addWidget(widgets.lblHeader, 1);
    headerLine->addWidget(buildDebugSend(widgets, m_controls));
    slotColumn->addLayout(headerLine);
    slotColumn->addWidget(widgets.fraFlashLdr);
    slotColumn->addWidget(widgets.fraExecutables);
    slotColumn->addWidget(widgets.fraImages);
    auto* sideColumn = new QVBoxLayout;
    sideColumn->addWidget(buildPortFrame(widgets, m_controls));
    sideColumn->addWidget(buildAddressFrame(widgets, m_controls), 1);
    auto* columns = new QHBoxLayout(m_controls);
    columns->addLayout(slotColumn);
    columns->addLayout(sideColumn);

    widgets.fraControl =
        named(new QGroupBox(QStringLiteral("Status / Terminal output"), this), QStringLiteral("fraControl"));
    widgets.txtStatus = named(new ConsoleView(widgets.fraControl), QStringLiteral("txtStatus"));
}

void LoaderForm::placeControls(const LoaderWidgets& widgets) {
    alignSlotColumns(widgets);
    m_controls->ensurePolished();
    m_controls->resize(m_controls->sizeHint());
    m_controls->layout()->activate();

    const int left = style()->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, this);
    const int right = style()->pixelMetric(QStyle::PM_LayoutRightMargin, nullptr, this);
    const int bottom = style()->pixelMetric(QStyle::PM_LayoutBottomMargin, nullptr, this);
    const int gap = bottom / 2;
    // A narrow window's scroll bar finds its room below the console.
    const int room = std::max(bottom, style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this));
    const int lines = kConsoleLines * QFontMetrics(widgets.txtStatus->font()).lineSpacing();

    QGroupBox& frame = *widgets.fraControl;
    frame.resize(m_controls->width() - left - right, lines);
    QMargins border = frame.contentsMargins() + QMargins(gap, gap, gap, gap);
    border.setTop(
        std::max(border.top(), widgets.consoleTools->sizeHint().height() + 1)); // in the title's line
    frame.setGeometry(left, m_controls->height(), frame.width(), lines + border.top() + border.bottom());
    widgets.txtStatus->setGeometry(frame.rect().marginsRemoved(border));
    m_designSize = {m_controls->width(), frame.geometry().bottom() + 1 + room};
    setMinimumWidth(m_controls->width());
}

} // namespace zrk
