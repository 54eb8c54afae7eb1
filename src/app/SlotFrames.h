#pragma once

class QWidget;

namespace zrk {

struct LoaderWidgets;

/// Builds the frames of the image slots with their rows and start buttons. The columns of all frames
/// stand in line, and the rows say to assistive tools which slot they belong to once their captions
/// are known (nameSlots).
void buildSlotFrames(LoaderWidgets& widgets, QWidget* parent);

/// Brings the columns of the frames into line; run when all captions are set.
void alignSlotColumns(const LoaderWidgets& widgets);

/// Gives every control of a slot an accessible name that tells the slot.
void nameSlots(const LoaderWidgets& widgets);

} // namespace zrk
