#include "app/SlotFrames.h"

#include "app/LoaderWidgets.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>

#include <algorithm>

namespace zrk {
namespace {

enum Column {
    kCheck,
    kMark,
    kFile,
    kBrowse,
    kStartCaption,
    kStart,
    kSizeCaption,
    kSize,
    kGap,
    kAction,
    kColumns
};

constexpr int kFileNameCharacters = 16;
constexpr int kAddressCharacters = 11;
constexpr int kGapWidth = 4;

/// Room for so many wide digits inside a line edit's frame.
int editWidth(const QLineEdit& edit, int characters) {
    const int text = edit.fontMetrics().horizontalAdvance(QString(characters, QLatin1Char('8')));
    return edit.sizeHint().width() - edit.fontMetrics().horizontalAdvance(QLatin1Char('x')) * 17 + text;
}

void makeRow(SlotWidgets& row, std::size_t slot, QWidget* frame) {
    row.chkExeURK = named(new QCheckBox(frame), arrayName("chkExeURK", slot));

    row.lblFileChanged = named(new QLabel(frame), arrayName("lblFileChanged", slot));
    const int side = frame->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, frame);
    row.lblFileChanged->setFixedWidth(side);
    QSizePolicy kept = row.lblFileChanged->sizePolicy();
    kept.setRetainSizeWhenHidden(true);
    row.lblFileChanged->setSizePolicy(kept);

    row.txtFilNam = named(new QLineEdit(frame), arrayName("txtFilNam", slot));
    row.txtFilNam->setReadOnly(true);
    row.txtFilNam->setAcceptDrops(false); // a dropped file is the row's affair
    row.txtFilNam->setMinimumWidth(editWidth(*row.txtFilNam, kFileNameCharacters));

    row.cmdBrowse = named(new QPushButton(frame), arrayName("cmdBrowse", slot));

    row.txtStartAddress = named(new QLineEdit(frame), arrayName("txtStartAddress", slot));
    row.txtStartAddress->setAcceptDrops(false);
    row.txtStartAddress->setFixedWidth(editWidth(*row.txtStartAddress, kAddressCharacters));
    row.lblStart = named(new QLabel(frame), arrayName("lblStart", slot));
    row.lblStart->setBuddy(row.txtStartAddress);

    row.lblSize = named(new QLabel(frame), arrayName("lblSize", slot));
    row.lblCodeSize = named(new QLabel(frame), arrayName("lblCodeSize", slot));
    row.lblCodeSize->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    row.lblCodeSize->setMargin(2);
    row.lblCodeSize->setTextInteractionFlags(Qt::TextSelectableByMouse);
    row.lblCodeSize->setFixedWidth(row.txtStartAddress->width());
}

QGridLayout* makeFrame(LoaderWidgets& widgets, QGroupBox* frame, SlotFrame which) {
    auto* grid = new QGridLayout(frame);
    grid->setHorizontalSpacing(6);
    grid->setVerticalSpacing(5);
    int line = 0;
    for (const Slot number : kWindowOrder) {
        const auto slot = static_cast<std::size_t>(number);
        if (kSlots[slot].frame != which)
            continue;
        SlotWidgets& row = widgets.slots[slot];
        makeRow(row, slot, frame);
        QWidget* const cells[] = {row.chkExeURK, row.lblFileChanged,  row.txtFilNam, row.cmdBrowse,
                                  row.lblStart,  row.txtStartAddress, row.lblSize,   row.lblCodeSize};
        for (int column = 0; column < kGap; ++column)
            grid->addWidget(cells[column], line, column, Qt::AlignVCenter);
        ++line;
    }
    return grid;
}

QPushButton* makeAction(QGridLayout* grid, int line, QGroupBox* frame, const char* name) {
    auto* button = named(new QPushButton(frame), QLatin1String(name));
    grid->addWidget(button, line, kAction);
    return button;
}

} // namespace

void buildSlotFrames(LoaderWidgets& widgets, QWidget* parent) {
    widgets.fraFlashLdr =
        named(new QGroupBox(QStringLiteral("Program Flash"), parent), QStringLiteral("fraFlashLdr"));
    QGridLayout* flash = makeFrame(widgets, widgets.fraFlashLdr, SlotFrame::ProgramFlash);
    widgets.cmdPrgFlash = makeAction(flash, 0, widgets.fraFlashLdr, "cmdPrgFlash");
    widgets.chkErase = named(new QCheckBox(widgets.fraFlashLdr), QStringLiteral("chkErase"));
    flash->addWidget(widgets.chkErase, 1, kAction);
    widgets.lblFlashTime = named(new QLabel(widgets.fraFlashLdr), QStringLiteral("lblFlashTime"));
    flash->addWidget(widgets.lblFlashTime, 2, kFile, 1, kSize - kFile + 1);

    widgets.fraExecutables =
        named(new QGroupBox(QStringLiteral("Executables"), parent), QStringLiteral("fraExecutables"));
    QGridLayout* executables = makeFrame(widgets, widgets.fraExecutables, SlotFrame::Executables);
    widgets.cmdStartPrimary = makeAction(executables, 0, widgets.fraExecutables, "cmdStartPrimary");
    widgets.cmdStartSecondary = makeAction(executables, 1, widgets.fraExecutables, "cmdStartSecondary");

    widgets.fraImages = named(new QGroupBox(QStringLiteral("Uboot/RootFS/Kernel Images"), parent),
                              QStringLiteral("fraImages"));
    QGridLayout* images = makeFrame(widgets, widgets.fraImages, SlotFrame::Images);
    widgets.cmdURK = makeAction(images, 0, widgets.fraImages, "cmdURK");
}

void alignSlotColumns(const LoaderWidgets& widgets) {
    const QGroupBox* const frames[] = {widgets.fraFlashLdr, widgets.fraExecutables, widgets.fraImages};
    for (int column = 0; column < kColumns; ++column) {
        int width = column == kGap ? kGapWidth : 0;
        for (const QGroupBox* frame : frames) {
            const auto* grid = static_cast<const QGridLayout*>(frame->layout());
            for (int line = 0; line < grid->rowCount(); ++line) {
                const QLayoutItem* item = grid->itemAtPosition(line, column);
                const bool spans = item != nullptr && item == grid->itemAtPosition(line, column + 1);
                if (item != nullptr && !spans)
                    width = std::max({width, item->sizeHint().width(), item->minimumSize().width()});
            }
        }
        for (const QGroupBox* frame : frames)
            static_cast<QGridLayout*>(frame->layout())->setColumnMinimumWidth(column, width);
    }
}

} // namespace zrk
