#include "app/LoaderForm.h"

#include "app/ConsoleTools.h"
#include "app/ConsoleView.h"
#include "app/LoaderWidgets.h"
#include "app/SideFrames.h"
#include "app/SlotFrames.h"
#include "app/terminal/ScreenView.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace zrk {
namespace {

constexpr double kHeaderPoints = 12;
constexpr int kConsoleLines = 26;
constexpr int kFewestFileCharacters = 16;
constexpr int kTidyFileCharacters = 28; // with fewer, the room beside short captions is used, too
constexpr int kMostFileCharacters = 44;
constexpr int kWindowBorders = 16;
constexpr int kSideMargin = 5;
constexpr int kFormSpacing = 3;

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
    slotColumn->setSpacing(kFormSpacing);
    auto* headerLine = new QHBoxLayout;
    headerLine->addWidget(widgets.lblHeader, 1);
    headerLine->addWidget(buildDebugSend(widgets, m_controls));
    slotColumn->addLayout(headerLine);
    slotColumn->addWidget(widgets.fraFlashLdr);
    slotColumn->addWidget(widgets.fraExecutables);
    slotColumn->addWidget(widgets.fraImages);
    auto* sideColumn = new QVBoxLayout;
    sideColumn->setSpacing(kFormSpacing);
    sideColumn->addWidget(buildPortFrame(widgets, m_controls));
    sideColumn->addWidget(buildAddressFrame(widgets, m_controls), 1);
    auto* columns = new QHBoxLayout(m_controls);
    columns->setContentsMargins(kSideMargin, 0, kSideMargin, kFormSpacing);
    columns->setSpacing(kSideMargin);
    columns->addLayout(slotColumn);
    columns->addLayout(sideColumn);

    widgets.fraControl =
        named(new QGroupBox(QStringLiteral("Status / Terminal output"), this), QStringLiteral("fraControl"));
    widgets.txtStatus = named(new ConsoleView(widgets.fraControl), QStringLiteral("txtStatus"));
    widgets.scrStatus = named(new ScreenView(widgets.fraControl), QStringLiteral("scrStatus"));
    widgets.scrStatus->hide();
}

/// Forgets the earlier size hints.
void LoaderForm::settle() {
    for (QGroupBox* frame : m_controls->findChildren<QGroupBox*>())
        frame->updateGeometry();
    m_controls->layout()->invalidate();
    m_controls->layout()->activate();
}

void LoaderForm::placeControls(const LoaderWidgets& widgets, QSize screen) {
    m_controls->ensurePolished();
    showFileNames(widgets, kFewestFileCharacters);
    alignSlotColumns(widgets, NamesBegin::InLine);
    settle();
    const int spare = screen.width() - kWindowBorders - m_controls->sizeHint().width();
    const int more = spare / fontMetrics().horizontalAdvance(QLatin1Char('8'));
    const int characters =
        std::clamp(kFewestFileCharacters + more, kFewestFileCharacters, kMostFileCharacters);
    showFileNames(widgets, characters);
    alignSlotColumns(widgets,
                     characters < kTidyFileCharacters ? NamesBegin::BehindTheirCaptions : NamesBegin::InLine);
    settle();
    m_controls->resize(m_controls->sizeHint());
    m_controls->layout()->activate();

    const int bottom = style()->pixelMetric(QStyle::PM_LayoutBottomMargin, nullptr, this);
    const int gap = bottom / 2;
    // The scroll bar of a narrow window gets its room below the console.
    const int room = std::max(bottom, style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this));
    const int lines = kConsoleLines * QFontMetrics(widgets.txtStatus->font()).lineSpacing();

    QGroupBox& frame = *widgets.fraControl;
    frame.resize(m_controls->width() - 2 * kSideMargin, lines);
    QMargins border = frame.contentsMargins() + QMargins(gap, gap, gap, gap);
    border.setTop(
        std::max(border.top(), widgets.consoleTools->sizeHint().height() + 1)); // in the title's line
    frame.setGeometry(kSideMargin, m_controls->height(), frame.width(),
                      lines + border.top() + border.bottom());
    widgets.txtStatus->setGeometry(frame.rect().marginsRemoved(border));
    widgets.scrStatus->setGeometry(widgets.txtStatus->geometry());
    m_designSize = {m_controls->width(), frame.geometry().bottom() + 1 + room};
    setMinimumWidth(m_controls->width());
}

} // namespace zrk
