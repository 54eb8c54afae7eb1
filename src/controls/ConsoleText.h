#pragma once

#include <QString>

#include <functional>

namespace zrk {

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

    /// The one who shows the text; called after every edit that changes something.
    void onEdit(EditListener listener) { m_listener = std::move(listener); }

    /// Asks for the keyboard focus; without a window nothing happens.
    void SetFocus() const;
    void onFocusRequested(std::function<void()> listener) { m_focus = std::move(listener); }

  private:
    QString m_text;
    EditListener m_listener;
    std::function<void()> m_focus;
};

} // namespace zrk
