#pragma once

#include <cstdint>
#include <optional>

namespace zrk {

/// A height and a width in twips (1/1440 inch).
struct FormSize {
    double height = 0;
    double width = 0;
};

/// What a resize of the main window does to the console: its frame `fraControl` and the text box
/// `txtStatus` keep their distance from the window's right and bottom edges, and nothing else moves.
/// Pure arithmetic; the window asks and applies.
class FormResize {
  public:
    struct Console {
        FormSize frame; ///< fraControl
        FormSize text;  ///< txtStatus
    };

    struct Step {
        std::optional<Console> place;     ///< the console's new sizes
        std::optional<FormSize> snapBack; ///< the size that the window goes back to
    };

    /// One resize event: the window now has `form`, the console still has `current`.
    /// Neither of both in the result means that there is nothing to do.
    [[nodiscard]] Step frmLoader_Form_Resize(bool minimized, FormSize form, const Console& current);

  private:
    void takeMargins(FormSize form, const Console& current);

    // Wider than the 16 bits that would do up to 32767 twips, which is less than a large screen.
    std::int32_t m_lastGoodHeight = 0;
    std::int32_t m_lastGoodWidth = 0;
    std::int32_t m_frameBottomMargin = 0;
    std::int32_t m_consoleBottomMargin = 0;
    std::int32_t m_frameRightMargin = 0;
    std::int32_t m_consoleRightMargin = 0;
};

} // namespace zrk
