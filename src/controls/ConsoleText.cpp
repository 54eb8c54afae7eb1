#include "controls/ConsoleText.h"

namespace zrk {

void ConsoleText::replaceEnd(qsizetype removed, const QString& inserted, TextOrigin origin) {
    if (removed == 0 && inserted.isEmpty())
        return;
    m_text.chop(removed);
    m_text.append(inserted);
    for (const EditListener& listener : m_listeners)
        listener(removed, inserted, origin);
}

void ConsoleText::SetFocus() const {
    if (m_focus)
        m_focus();
}

} // namespace zrk
