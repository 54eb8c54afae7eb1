#pragma once

#include "machine/StreamWriter.h"

#include <QByteArray>

#include <memory>

namespace zrk {

/// The program's standard output and standard error, which never delay a run: see StreamWriter. If both lead
/// to one file they share a writer, which keeps their order; else a slow reader delays only its stream. Any
/// thread may call all functions.
class OutputStreams {
  public:
    using Weight = StreamWriter::Weight;

    /// The files that both lead to, and how much may wait for each.
    struct Target {
        int output = 1;
        int error = 2;
        qsizetype most = StreamWriter::kMostWaiting;
    };

    /// With `json`, reports losses of standard output there, as an event; else on standard error.
    explicit OutputStreams(bool json) : OutputStreams(json, Target()) {}
    OutputStreams(bool json, const Target& target);

    void out(const QByteArray& bytes, Weight weight = Weight::Text);
    void err(const QByteArray& bytes, Weight weight = Weight::Text);

    /// Block until all is written, until the time, or until giveUp(). Return true if all is written.
    [[nodiscard]] bool drainOutput(std::optional<StreamWriter::TimePoint> until);
    [[nodiscard]] bool drainError(std::optional<StreamWriter::TimePoint> until);
    /// Ends present drains, or else the next ones.
    void giveUp();

    /// Returns the bytes that wait for a reader.
    [[nodiscard]] qsizetype waitingOutput() const { return m_outputWriter->waiting(); }
    [[nodiscard]] qsizetype waitingError() const { return m_errorWriter->waiting(); }

    /// Returns whether standard output takes no more.
    [[nodiscard]] bool hasOutputFailed() const { return m_outputWriter->hasFailed(m_target.output); }
    /// The system's reason for that; "" when there is none.
    [[nodiscard]] QByteArray outputFailure() const;
    /// Returns whether that is so or text was left out.
    [[nodiscard]] bool isOutputIncomplete() const {
        return hasOutputFailed() || m_outputWriter->hasLostText(m_target.output);
    }

  private:
    [[nodiscard]] std::optional<StreamWriter::Piece> note(int descriptor, const StreamWriter::Losses& losses);

    const bool m_json;
    const Target m_target;
    std::shared_ptr<StreamWriter> m_errorWriter;
    std::shared_ptr<StreamWriter> m_outputWriter; ///< destroyed first: the other reports its losses
};

} // namespace zrk
