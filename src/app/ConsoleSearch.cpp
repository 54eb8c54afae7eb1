#include "app/ConsoleSearch.h"

#include "app/ConsoleDisplay.h"

#include <QElapsedTimer>

namespace zrk {
namespace {

constexpr qint64 kSearchSlice = 8; // ms

} // namespace

ConsoleSearch::ConsoleSearch(QPlainTextEdit* view) : QObject(view), m_view(view) {
    connect(&m_next, &QTimer::timeout, this, &ConsoleSearch::goOn);
}

void ConsoleSearch::start(const QString& text, Direction direction) {
    m_text = text;
    for (QChar& character : m_text) // as the view shows it
        character = visibleSign(character);
    m_direction = direction;
    const QTextCursor caret = m_view->textCursor();
    const int from = direction == Direction::Forward ? caret.selectionEnd() : caret.selectionStart();
    m_block = m_view->document()->findBlock(from);
    m_column = from - m_block.position();
    m_blocksLeft = m_view->blockCount() + 1; // the first one twice: after the caret, and before it
    if (text.isEmpty())
        return m_next.stop();
    m_next.start(0);
}

void ConsoleSearch::goOn() {
    QElapsedTimer slice;
    slice.start();
    while (slice.elapsed() < kSearchSlice) {
        if (!m_block.isValid() || m_blocksLeft-- <= 0) {
            m_next.stop();
            Q_EMIT notFound();
            return;
        }
        const qsizetype column = findIn(m_block.text());
        if (column >= 0) {
            m_next.stop();
            QTextCursor selection(m_block);
            selection.setPosition(m_block.position() + static_cast<int>(column));
            selection.setPosition(selection.position() + static_cast<int>(m_text.size()),
                                  QTextCursor::KeepAnchor);
            Q_EMIT found(selection);
            return;
        }
        moveOn();
    }
}

qsizetype ConsoleSearch::findIn(const QString& line) const {
    if (m_direction == Direction::Forward)
        return line.indexOf(m_text, qMax(m_column, 0), Qt::CaseInsensitive);
    const qsizetype last = m_column < 0 ? line.size() : m_column - m_text.size();
    return last < 0 ? -1 : line.lastIndexOf(m_text, last, Qt::CaseInsensitive);
}

void ConsoleSearch::moveOn() {
    m_column = -1;
    if (m_direction == Direction::Forward)
        m_block = m_block.next().isValid() ? m_block.next() : m_view->document()->firstBlock();
    else
        m_block = m_block.previous().isValid() ? m_block.previous() : m_view->document()->lastBlock();
}

} // namespace zrk
