#include "controls/ConsoleText.h"

namespace zrk {

void ConsoleText::replaceEnd(qsizetype removed, const QString& inserted) {
    if (removed == 0 && inserted.isEmpty())
        return;
    m_text.chop(removed);
    m_text.append(inserted);
    if (m_listener)
        m_listener(removed, inserted);
}

void ConsoleText::SetFocus() const {
    if (m_focus)
        m_focus();
}

} // namespace zrk
