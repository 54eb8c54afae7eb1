#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace zrk {

/// Where a piece of the console's text comes from.
enum class TextOrigin {
    Loader,
    Board, ///< bytes that came over the line, one in each character
};

/// The text of the console. It only grows at its end, where at most its last characters are replaced;
/// so one who shows it follows edits instead of reading the whole again.
class ConsoleText {
  public:
    [[nodiscard]] const QString& text() const { return m_text; }

    void append(const QString& text, TextOrigin origin = TextOrigin::Loader) { replaceEnd(0, text, origin); }

    /// Replaces the last `removed` characters (0 to the length of the text) by `inserted`.
    void replaceEnd(qsizetype removed, const QString& inserted, TextOrigin origin = TextOrigin::Loader);

    /// An edit at the end: so many characters went away, then these came.
    using EditListener = std::function<void(qsizetype removed, const QString& inserted, TextOrigin origin)>;
    /// The listener is called after every edit that changes something, until forgetListeners().
    void onEdit(EditListener listener) { m_listeners.push_back(std::move(listener)); }
    void forgetListeners() { m_listeners.clear(); }

    /// Asks for the keyboard focus; without a window nothing happens.
    void SetFocus() const;
    void onFocusRequested(std::function<void()> listener) { m_focus = std::move(listener); }

  private:
    QString m_text;
    std::vector<EditListener> m_listeners;
    std::function<void()> m_focus;
};

} // namespace zrk
