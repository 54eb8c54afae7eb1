#include "app/SlotFrames.h"

#include "app/FileNameEdit.h"
#include "app/LoaderWidgets.h"
#include "app/TitleRow.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

#include <algorithm>
#include <vector>

namespace zrk {
namespace {

enum Column { kCheck, kFile, kBrowse, kStartCaption, kStart, kSizeCaption, kSize, kColumns };

constexpr int kSideMargin = 5;
constexpr int kActionsInsideRight = 6;
constexpr int kAddressCharacters = 10;
constexpr int kSizeCharacters = 9;
constexpr int kBrowseBorder = 10;
constexpr int kSlotSpacing = 4;
constexpr int kLineSpacing = 2;
constexpr int kAddressRoom = 4; // around an address, so that it does not look cut

/// Returns the width of so many digits inside a line edit's frame.
int editWidth(const QLineEdit& edit, int characters) {
    const int text = edit.fontMetrics().horizontalAdvance(QString(characters, QLatin1Char('8')));
    return edit.sizeHint().width() - edit.fontMetrics().horizontalAdvance(QLatin1Char('x')) * 17 + text;
}

void makeRow(SlotWidgets& row, std::size_t slot, QWidget* frame) {
    row.chkExeURK = named(new QCheckBox(frame), arrayName("chkExeURK", slot));

    row.txtFilNam = named(new FileNameEdit(frame), arrayName("txtFilNam", slot));
    row.lblFileChanged = named(new QLabel(row.txtFilNam), arrayName("lblFileChanged", slot));
    const int side = frame->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, frame);
    row.lblFileChanged->setFixedWidth(side);
    row.txtFilNam->setMark(row.lblFileChanged);

    row.cmdBrowse = named(new QPushButton(frame), arrayName("cmdBrowse", slot));

    row.txtStartAddress = named(new QLineEdit(frame), arrayName("txtStartAddress", slot));
    row.txtStartAddress->setAcceptDrops(false);
    row.txtStartAddress->setFixedWidth(editWidth(*row.txtStartAddress, kAddressCharacters) + kAddressRoom);
    row.lblStart = named(new QLabel(frame), arrayName("lblStart", slot));
    row.lblStart->setBuddy(row.txtStartAddress);

    row.lblSize = named(new QLabel(frame), arrayName("lblSize", slot));
    row.lblCodeSize = named(new QLabel(frame), arrayName("lblCodeSize", slot));
    row.lblCodeSize->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    row.lblCodeSize->setMargin(2);
    row.lblCodeSize->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row.lblCodeSize->setFixedWidth(editWidth(*row.txtStartAddress, kSizeCharacters));
}

QGridLayout* makeFrame(LoaderWidgets& widgets, QGroupBox* frame, SlotFrame which) {
    auto* grid = new QGridLayout(frame);
    grid->setHorizontalSpacing(kSlotSpacing);
    grid->setVerticalSpacing(kLineSpacing);
    int line = 0;
    for (const Slot number : kWindowOrder) {
        const auto slot = static_cast<std::size_t>(number);
        if (kSlots[slot].frame != which)
            continue;
        SlotWidgets& row = widgets.slots[slot];
        makeRow(row, slot, frame);
        QWidget* const cells[] = {row.chkExeURK,       row.txtFilNam, row.cmdBrowse,  row.lblStart,
                                  row.txtStartAddress, row.lblSize,   row.lblCodeSize};
        for (int column = 0; column < kColumns; ++column)
            grid->addWidget(cells[column], line, column, Qt::AlignVCenter);
        ++line;
    }
    return grid;
}

/// Makes the row of a frame's buttons, in the line of its title.
TitleRow* makeActions(QGroupBox* frame) {
    return new TitleRow(frame, kActionsInsideRight);
}

QPushButton* makeAction(TitleRow* row, const char* name) {
    auto* button = named(new QPushButton(row), QLatin1String(name));
    row->addWidget(button);
    return button;
}

int columnWidth(const QGridLayout& grid, int column) {
    int width = 0;
    for (int line = 0; line < grid.rowCount(); ++line) {
        const QLayoutItem* item = grid.itemAtPosition(line, column);
        if (item != nullptr)
            width = std::max({width, item->sizeHint().width(), item->minimumSize().width()});
    }
    return width;
}

} // namespace

void buildSlotFrames(LoaderWidgets& widgets, QWidget* parent) {
    widgets.fraFlashLdr =
        named(new QGroupBox(QStringLiteral("Program Flash"), parent), QStringLiteral("fraFlashLdr"));
    makeFrame(widgets, widgets.fraFlashLdr, SlotFrame::ProgramFlash);
    TitleRow* flash = makeActions(widgets.fraFlashLdr);
    widgets.lblFlashTime = named(new QLabel(flash), QStringLiteral("lblFlashTime"));
    flash->addWidget(widgets.lblFlashTime);
    widgets.chkErase = named(new QCheckBox(flash), QStringLiteral("chkErase"));
    flash->addWidget(widgets.chkErase);
    widgets.cmdPrgFlash = makeAction(flash, "cmdPrgFlash");

    widgets.fraExecutables =
        named(new QGroupBox(QStringLiteral("Executables"), parent), QStringLiteral("fraExecutables"));
    makeFrame(widgets, widgets.fraExecutables, SlotFrame::Executables);
    TitleRow* executables = makeActions(widgets.fraExecutables);
    widgets.cmdStartPrimary = makeAction(executables, "cmdStartPrimary");
    widgets.cmdStartSecondary = makeAction(executables, "cmdStartSecondary");

    widgets.fraImages = named(new QGroupBox(QStringLiteral("Uboot/RootFS/Kernel Images"), parent),
                              QStringLiteral("fraImages"));
    makeFrame(widgets, widgets.fraImages, SlotFrame::Images);
    widgets.cmdURK = makeAction(makeActions(widgets.fraImages), "cmdURK");
}

void showFileNames(const LoaderWidgets& widgets, int characters) {
    for (const SlotWidgets& row : widgets.slots)
        row.txtFilNam->setMinimumWidth(editWidth(*row.txtFilNam, characters));
}

void alignSlotColumns(const LoaderWidgets& widgets, NamesBegin names) {
    // A style's least width for buttons is for those that stand alone.
    for (const SlotWidgets& row : widgets.slots)
        row.cmdBrowse->setFixedWidth(row.cmdBrowse->fontMetrics().horizontalAdvance(row.cmdBrowse->text()) +
                                     2 * kBrowseBorder);
    std::vector<QGridLayout*> grids;
    for (QGroupBox* frame : {widgets.fraFlashLdr, widgets.fraExecutables, widgets.fraImages}) {
        const auto* row = frame->findChild<TitleRow*>();
        frame->layout()->invalidate();
        frame->layout()->setContentsMargins(kSideMargin, roomFor(*row, *frame), kSideMargin, kLineSpacing);
        grids.push_back(static_cast<QGridLayout*>(frame->layout()));
    }
    for (int column = 0; column < kColumns; ++column) {
        const bool inLine = column != kCheck || names == NamesBegin::InLine;
        int widest = 0;
        for (const QGridLayout* grid : grids)
            widest = std::max(widest, columnWidth(*grid, column));
        for (QGridLayout* grid : grids)
            grid->setColumnMinimumWidth(column, inLine ? widest : columnWidth(*grid, column));
    }
}

} // namespace zrk
