#pragma once

class QWidget;

namespace zrk {

struct LoaderWidgets;

/// Builds the frames of the image slots with their rows and start buttons.
void buildSlotFrames(LoaderWidgets& widgets, QWidget* parent);

/// Makes room for so many characters of the files' names.
void showFileNames(const LoaderWidgets& widgets, int characters);

/// Where the names of the files begin: in one line in all frames, or in each directly after its captions.
enum class NamesBegin { InLine, BehindTheirCaptions };

/// Aligns the columns of the frames; run after all captions are set.
void alignSlotColumns(const LoaderWidgets& widgets, NamesBegin names);

} // namespace zrk
