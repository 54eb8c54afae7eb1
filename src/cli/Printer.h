#pragma once

#include "cli/OutputStreams.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <mutex>
#include <vector>

namespace zrk {

/// The way in which a run prints.
struct PrintStyle {
    enum class Progress { Auto, Always, Never };

    Progress progress = Progress::Auto;
    bool json = false;    ///< one JSON object a line on standard output, and nothing else there
    bool quiet = false;   ///< no notices and no progress
    bool verbose = false; ///< more details
};

/// The printer of a run: the two standard streams and, if standard error is a terminal, the lines of progress
/// below them. Shared by the sessions of a run; each call from any thread prints as a whole.
class Printer {
  public:
    using Weight = OutputStreams::Weight;

    Printer(PrintStyle style, OutputStreams& streams);
    ~Printer() { clearProgress(); }
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    [[nodiscard]] const PrintStyle& style() const { return m_style; }

    /// Print bytes on standard output and standard error, after removing the progress.
    void out(const QByteArray& bytes, Weight weight = Weight::Text);
    void err(const QByteArray& bytes, Weight weight = Weight::Text);

    /// Shows a row of progress for a session; the rows are below each other. `behind` is the part of the
    /// terminal's last line that has to come back when the progress is cleared.
    void setProgress(std::size_t row, const QString& text, const QString& behind = {});
    void clearProgress();

    /// Returns whether progress is shown on a terminal, where it can be overwritten.
    [[nodiscard]] bool overwrites() const { return m_overwrites; }
    /// Returns whether progress is wanted at all.
    [[nodiscard]] bool showsProgress() const { return m_showsProgress; }
    [[nodiscard]] bool outputIsTerminal() const { return m_outputIsTerminal; }

    /// Returns the columns that a line of progress may take now.
    [[nodiscard]] qsizetype columns() const;

    /// Returns whether standard output takes no more: its reader has gone, or its disk is full.
    [[nodiscard]] bool wasLost() const { return m_streams.hasOutputFailed(); }
    /// Returns true while a reader of standard output is far behind.
    [[nodiscard]] bool isBehind() const;

  private:
    void clear();
    void show();
    [[nodiscard]] QStringList visibleRows() const;

    OutputStreams& m_streams;
    const PrintStyle m_style;
    const bool m_overwrites;
    const bool m_showsProgress;
    const bool m_outputIsTerminal;
    std::mutex m_mutex;
    std::vector<QString> m_rows;
    QString m_behind;
    std::vector<qsizetype> m_shown; ///< the length of each row on the terminal
};

} // namespace zrk
