#include "cli/MessageLines.h"

#include "cli/Output.h"
#include "machine/YesNoQuestion.h"

namespace zrk {

Answer MessageLines::show(const MessageBox& box) {
    // The title "Error" adds nothing to "Error communicating with COM1".
    const bool titled = !box.title.isEmpty() && !box.prompt.startsWith(box.title);
    const QString text = titled ? box.title + QStringLiteral(": ") + box.prompt : box.prompt;
    if (box.buttons == MessageButtons::Ok) {
        m_output.tell(text, box.icon == MessageIcon::Information ? Severity::Notice : Severity::Error);
        return Answer::Ok;
    }
    if (!m_mayAsk || !m_question.isPossible()) {
        if (!m_isSilent)
            m_output.tell(text + QStringLiteral(" Yes (no terminal to ask on)"), Severity::Warning);
        return Answer::Yes;
    }
    m_output.ask(text);
    m_asking = true;
    const bool yes = m_question.askYesNo();
    m_asking = false;
    return yes ? Answer::Yes : Answer::No;
}

} // namespace zrk
