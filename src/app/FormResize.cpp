#include "app/FormResize.h"

#include <cmath>

namespace zrk {
namespace {

std::int32_t rounded(double twips) {
    return static_cast<std::int32_t>(std::lround(twips));
}

bool fits(FormSize size) {
    return size.height >= 0 && size.width >= 0;
}

} // namespace

FormResize::Step FormResize::frmLoader_Form_Resize(bool minimized, FormSize form, const Console& current) {
    if (minimized)
        return {};
    // A frame that reaches the window's bottom edge has no margin, so all are measured again each time.
    if (m_frameBottomMargin == 0)
        takeMargins(form, current);
    const Console console{{form.height - m_frameBottomMargin, form.width - m_frameRightMargin},
                          {form.height - m_consoleBottomMargin, form.width - m_consoleRightMargin}};
    if (!fits(console.frame) || !fits(console.text))
        return {{}, FormSize{double(m_lastGoodHeight), double(m_lastGoodWidth)}};
    m_lastGoodHeight = rounded(form.height);
    m_lastGoodWidth = rounded(form.width);
    return {console, {}};
}

void FormResize::takeMargins(FormSize form, const Console& current) {
    m_frameBottomMargin = rounded(form.height - current.frame.height);
    m_consoleBottomMargin = rounded(form.height - current.text.height);
    m_frameRightMargin = rounded(form.width - current.frame.width);
    m_consoleRightMargin = rounded(form.width - current.text.width);
}

} // namespace zrk
