#include "controls/ConsoleText.h"

namespace zrk {

void ConsoleText::replaceEnd(qsizetype removed, const QString& inserted) {
    if (removed == 0 && inserted.isEmpty())
        return;
    edit(removed, inserted);
    if (removed == 0)
        tell(inserted, TextOrigin::Loader);
    else
        tell(m_text, TextOrigin::Anew);
}

void ConsoleText::appendAnswer(const QString& answer) {
    edit(0, answer);
    tell(answer, TextOrigin::Answer);
}

void ConsoleText::receive(const QString& asReceived, qsizetype removed, const QString& inserted) {
    if (removed != 0 || !inserted.isEmpty())
        edit(removed, inserted);
    tell(asReceived, TextOrigin::Board);
}

void ConsoleText::edit(qsizetype removed, const QString& inserted) {
    m_text.chop(removed);
    m_text.append(inserted);
    if (m_listener)
        m_listener(removed, inserted);
}

void ConsoleText::tell(const QString& piece, TextOrigin origin) const {
    for (const PieceListener& listener : m_pieceListeners)
        listener(piece, origin);
}

void ConsoleText::SetFocus() const {
    if (m_focus)
        m_focus();
}

} // namespace zrk
