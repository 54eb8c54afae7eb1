#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace zrk {

/// The source of a piece of the console's text.
enum class TextOrigin {
    Loader,
    Board, ///< bytes that came over the line, one in each character
};

/// The text of the console. It only grows at its end, where at most its last characters are replaced; so a
/// view follows edits instead of reading the whole text again.
class ConsoleText {
  public:
    [[nodiscard]] const QString& text() const { return m_text; }

    void append(const QString& text, TextOrigin origin = TextOrigin::Loader) { replaceEnd(0, text, origin); }

    /// Replaces the last `removed` characters (0 to the length of the text) by `inserted`.
    void replaceEnd(qsizetype removed, const QString& inserted, TextOrigin origin = TextOrigin::Loader);

    /// Receives an edit at the end: so many characters were removed, then these were added.
    using EditListener = std::function<void(qsizetype removed, const QString& inserted, TextOrigin origin)>;
    /// Calls the listener after every edit that changes the text, until forgetListeners().
    void onEdit(EditListener listener) { m_listeners.push_back(std::move(listener)); }
    void forgetListeners() { m_listeners.clear(); }

    /// Requests the keyboard focus; does nothing without a window.
    void SetFocus() const;
    void onFocusRequested(std::function<void()> listener) { m_focus = std::move(listener); }

  private:
    QString m_text;
    std::vector<EditListener> m_listeners;
    std::function<void()> m_focus;
};

} // namespace zrk
