#pragma once

class QWidget;

namespace zrk {

struct LoaderWidgets;

/// Builds the frames of the image slots with their rows and start buttons.
void buildSlotFrames(LoaderWidgets& widgets, QWidget* parent);

/// Gives the names of the files room for so many characters.
void showFileNames(const LoaderWidgets& widgets, int characters);

/// Where the names of the files begin: in one line in all frames, or in each as soon as its captions end.
enum class NamesBegin { InLine, BehindTheirCaptions };

/// Brings the columns of the frames into line; run when all captions are set.
void alignSlotColumns(const LoaderWidgets& widgets, NamesBegin names);

} // namespace zrk
