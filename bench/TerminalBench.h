#pragma once

#include <functional>
#include <memory>
#include <string>

namespace zrkbench {

class QuietLoader;

/// Measures what a tick's worth of the line's text costs in the terminal with 0, 1 and 10 MB of text before
/// it, as rows of the table. `shown` runs after each piece.
void benchChunks(QuietLoader& quiet, const std::string& where, const std::function<void()>& shown);

/// Measures the speed of text from a device without a line into the console. `makeViewer` is called with the
/// loader and may return an object that shows its text as long as it lives.
void benchTerminalSpeed(const std::string& where,
                        const std::function<std::shared_ptr<void>(QuietLoader& quiet)>& makeViewer);

} // namespace zrkbench
