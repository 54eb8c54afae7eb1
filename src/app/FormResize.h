#pragma once

#include <cstdint>
#include <optional>

namespace zrk {

/// A height and a width in twips (1/1440 inch).
struct FormSize {
    double height = 0;
    double width = 0;
};

/// The rule for the console when the main window is resized: its frame `fraControl` and the text box
/// `txtStatus` keep their distance from the window's right and bottom edges, and nothing else moves. Pure
/// arithmetic; the window calls it and applies the result.
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

    /// Handles one resize event: the window now has `form`, the console still has `current`. If the result
    /// has neither of both, there is nothing to do.
    [[nodiscard]] Step frmLoader_Form_Resize(bool minimized, FormSize form, const Console& current);

  private:
    void takeMargins(FormSize form, const Console& current);

    // Wider than 16 bits, whose 32767 twips are less than a large screen.
    std::int32_t m_lastGoodHeight = 0;
    std::int32_t m_lastGoodWidth = 0;
    std::int32_t m_frameBottomMargin = 0;
    std::int32_t m_consoleBottomMargin = 0;
    std::int32_t m_frameRightMargin = 0;
    std::int32_t m_consoleRightMargin = 0;
};

} // namespace zrk
