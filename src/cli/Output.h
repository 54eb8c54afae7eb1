#pragma once

#include <QString>

namespace zrk {

/// The one place where a session prints: the console's text on standard output, all else on standard error.
/// On a terminal the last line may show the progress, which is taken away before anything else is printed.
class Output {
  public:
    Output();
    ~Output() { clearProgress(); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// A piece of the console's text, or of a list; CR LF becomes the system's line end.
    void console(const QString& text);

    /// A line on standard error; CR LF in it becomes the system's line end.
    void tell(const QString& text);

    /// A question that is answered on the same line of the terminal.
    void ask(const QString& text);

    /// Shows this progress over the last one, behind the unfinished line of the console if that is on the
    /// same terminal; where progress cannot be overwritten it is a line of its own.
    void progress(const QString& text);
    void clearProgress();

    /// True when standard error is a terminal, where a line may be written over.
    [[nodiscard]] bool overwrites() const { return m_overwrites; }

    /// True when standard output could not be written, so that its text is incomplete.
    [[nodiscard]] bool wasLost() const;

  private:
    bool m_overwrites;
    bool m_shared;        ///< and standard output goes to it as well
    QString m_unfinished; ///< the console's text behind its last line end
    QString m_behind;     ///< the part of it that the shown progress begins with
    qsizetype m_shownLength = 0;
};

} // namespace zrk
