#pragma once

#include <QObject>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTimer>

namespace zrk {

/// A search for a text in a view, some milliseconds at a time, so that a long text does not stop the window.
/// Ignores letter case. Continues at the other end when one is reached.
class ConsoleSearch final : public QObject {
    Q_OBJECT

  public:
    explicit ConsoleSearch(QPlainTextEdit* view);

    enum class Direction { Forward, Backward };
    /// Begins a search at the caret or the selection, instead of the one that is under way.
    void start(const QString& text, Direction direction);
    void stop() { m_next.stop(); }

  Q_SIGNALS:
    void found(const QTextCursor& selection);
    void notFound();

  private:
    void goOn();
    [[nodiscard]] qsizetype findIn(const QString& line) const;
    void moveOn();

    QPlainTextEdit* m_view;
    QTimer m_next;
    QString m_text;
    Direction m_direction = Direction::Forward;
    QTextBlock m_block;
    int m_column = -1; ///< where the search begins in the block; -1: at its first end
    int m_blocksLeft = 0;
};

} // namespace zrk
