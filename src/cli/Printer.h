#pragma once

#include "cli/OutputStreams.h"

#include <QByteArray>
#include <QString>

#include <mutex>
#include <vector>

namespace zrk {

/// How a run prints.
struct PrintStyle {
    enum class Progress { Auto, Always, Never };

    Progress progress = Progress::Auto;
    bool json = false;    ///< one JSON object a line on standard output, and nothing else there
    bool quiet = false;   ///< no notices and no progress
    bool verbose = false; ///< details too
};

/// The two standard streams and, where standard error is a terminal, the lines of progress below them. Shared
/// by the sessions of a run; each call is a whole, from whatever thread.
class Printer {
  public:
    using Weight = OutputStreams::Weight;

    Printer(PrintStyle style, OutputStreams& streams);
    ~Printer() { clearProgress(); }
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    [[nodiscard]] const PrintStyle& style() const { return m_style; }

    /// Bytes for standard output and standard error; the progress is taken away before them.
    void out(const QByteArray& bytes, Weight weight = Weight::Text);
    void err(const QByteArray& bytes, Weight weight = Weight::Text);

    /// A row of progress for a session; the rows are shown below each other. `behind` is what of the
    /// terminal's last line has to come back when the progress is cleared.
    void setProgress(std::size_t row, const QString& text, const QString& behind = {});
    void clearProgress();

    /// True when progress is shown on a terminal, where it can be written over.
    [[nodiscard]] bool overwrites() const { return m_overwrites; }
    /// True when progress is wanted at all.
    [[nodiscard]] bool showsProgress() const { return m_showsProgress; }
    [[nodiscard]] bool outputIsTerminal() const { return m_outputIsTerminal; }

    /// Columns that a line of progress may take now.
    [[nodiscard]] qsizetype columns() const;

    /// True when standard output takes no more: nobody reads it, or its disk is full.
    [[nodiscard]] bool wasLost() const { return m_streams.hasOutputFailed(); }
    /// True while there is much that a reader of standard output has not taken.
    [[nodiscard]] bool isBehind() const;

  private:
    void clear();
    void show();

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
