#pragma once

#include "cli/Printer.h"
#include "cli/Transcript.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace zrk {

/// The result of a step or a run.
struct Ending {
    int status = 0;
    QString reason;
    QString step;
    double seconds = 0.0;
    qint64 bytes = 0;   ///< image bytes sent
    QString limit = {}; ///< the option whose limit ran out, without dashes; "" for none
    QString text = {};  ///< the errors in one line; of a good run what was done
};

/// Returns the end in one line: "Done in 9.1 s: 53248 bytes sent."
[[nodiscard]] QString closingText(const Ending& ending);

/// Counts of the boards of one port that have ended.
struct Tally {
    int good = 0;
    int bad = 0;
};

/// The importance of a message.
enum class Severity { Error, Warning, Notice, Detail };

/// The one output of a session: the console's text and the board's on standard output, all else on standard
/// error, or all of it as JSON. With several boards every line begins with the board's name, and lines never
/// mix.
class Output {
  public:
    /// The place of one of several sessions: its row, its name in front of lines, and its port.
    struct Place {
        std::size_t row = 0;
        QString name; ///< "" for lines without a name, as those of one board without a label
        QString port;
        QString label; ///< its name in events
    };

    Output(Printer& printer, Place place) : m_printer(printer), m_place(std::move(place)) {}
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    [[nodiscard]] const Place& place() const { return m_place; }
    [[nodiscard]] Printer& printer() const { return m_printer; }
    /// Returns whether events are printed; else event() does nothing.
    [[nodiscard]] bool isJson() const { return m_printer.style().json; }

    /// Keeps a transcript of all that is printed from now on, in a file that is not touched before
    /// beginTranscript(); see Transcript::begin() for that.
    void keepTranscript(const QString& path) { m_transcript.emplace(path); }
    void beginTranscript(const QStringList& inputs);

    /// Prints a piece of the console's text, or of a list; CR LF becomes the system's line end.
    void console(const QString& text, TextOrigin origin = TextOrigin::Loader);

    /// Prints bytes of the board, as they are; on a terminal its control characters are made visible.
    void board(const QByteArray& bytes);

    /// Prints bytes of the board for a user who has asked for a raw terminal.
    void raw(const QByteArray& bytes);

    /// Prints a line on standard error; CR LF in it becomes the system's line end. A notice of a quiet run
    /// goes only to the transcript, a detail only to a verbose run. Errors are kept for the end of the run.
    void tell(const QString& text, Severity severity = Severity::Error);
    void notice(const QString& text);
    void detail(const QString& text);

    /// Prints a line in the transcript alone.
    void recordMessage(const QString& text);

    /// Forgets the errors and the limit of the board before.
    void beginBoard();

    /// Notes that the limit of this option ("wait") has run out; the first one counts.
    void noteLimit(const QString& option) {
        if (m_limit.isEmpty())
            m_limit = option;
    }
    [[nodiscard]] const QString& limit() const { return m_limit; }
    /// Returns the errors since beginBoard(), in one line.
    [[nodiscard]] QString errors() const { return m_errors.join(QLatin1Char(' ')); }

    /// Prints a question that is answered on the same line of the terminal.
    void ask(const QString& text);

    /// Shows this progress instead of the last one, after the unfinished line of the console if that is on
    /// the same terminal and leaves room; where progress cannot be overwritten it is a line of its own.
    void progress(const QString& text);
    void clearProgress();
    /// Returns the columns for the next progress.
    [[nodiscard]] qsizetype progressColumns() const;
    [[nodiscard]] bool overwrites() const { return m_printer.overwrites(); }

    /// Prints an object with this event, its time, the board's label and port for a machine.
    void event(const char* name, QJsonObject fields = {});

    /// Adds the result to a record of the report: status, reason, label, port and the like.
    void addTo(QJsonObject& record, const Ending& ending) const;

    void stepBegins(const QString& step);
    void stepEnds(const Ending& ending);
    void result(const Ending& ending, const Tally& tally);

  private:
    void put(QByteArray bytes);
    void finishLine();
    [[nodiscard]] QString progressName() const;
    void record(const QString& text, TextOrigin origin);
    [[nodiscard]] QByteArray named(const QByteArray& line) const;

    Printer& m_printer;
    Place m_place;
    std::optional<Transcript> m_transcript;
    QStringList m_errors;
    QString m_limit;
    QByteArray m_unfinished; ///< the text after its last line end; with several boards, what is held back
    bool m_progressShown = false;
};

} // namespace zrk
