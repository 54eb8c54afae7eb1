#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace zrk {

/// Who said a piece of the console's text.
enum class TextOrigin {
    Loader,
    Board,  ///< as it came over the line, one byte in each character
    Answer, ///< the same, printed by the loader as it is; NUL where none came
    Anew,   ///< not a further piece, but all of the text in place of what was there
};

/// The text of the console. It only grows at its end, where at most its last characters are replaced;
/// so one who shows it follows edits instead of reading the whole again.
class ConsoleText {
  public:
    /// An edit at the end: so many characters went away, then these came.
    using EditListener = std::function<void(qsizetype removed, const QString& inserted)>;

    [[nodiscard]] const QString& text() const { return m_text; }

    void append(const QString& text) { replaceEnd(0, text); }

    /// Replaces the last `removed` characters (0 to the length of the text) by `inserted`.
    void replaceEnd(qsizetype removed, const QString& inserted);

    /// Appends what the board answered in a protocol.
    void appendAnswer(const QString& answer);

    /// Does so because of what the board sent.
    void receive(const QString& asReceived, qsizetype removed, const QString& inserted);

    /// The one who shows the text; called after every edit that changes something.
    void onEdit(EditListener listener) { m_listener = std::move(listener); }

    /// Pieces of the text by who said them, for those who show or record them as they came. A listener stays
    /// until forgetPieceListeners().
    using PieceListener = std::function<void(const QString& piece, TextOrigin origin)>;
    void onPiece(PieceListener listener) { m_pieceListeners.push_back(std::move(listener)); }
    void forgetPieceListeners() { m_pieceListeners.clear(); }

    /// Asks for the keyboard focus; without a window nothing happens.
    void SetFocus() const;
    void onFocusRequested(std::function<void()> listener) { m_focus = std::move(listener); }

  private:
    void edit(qsizetype removed, const QString& inserted);
    void tell(const QString& piece, TextOrigin origin) const;

    QString m_text;
    EditListener m_listener;
    std::vector<PieceListener> m_pieceListeners;
    std::function<void()> m_focus;
};

} // namespace zrk
