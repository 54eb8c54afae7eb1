#include "cli/OutputStreams.h"

#include "cli/TimeText.h"
#include "machine/Descriptors.h"

#include <QString>

#include <system_error>

namespace zrk {

OutputStreams::OutputStreams(bool json, const Target& target) : m_json(json), m_target(target) {
    const auto writer = [this] {
        return std::make_shared<StreamWriter>(
            [this](int descriptor, const StreamWriter::Losses& losses) { return note(descriptor, losses); },
            m_target.most);
    };
    m_errorWriter = writer();
    m_outputWriter = leadToOneFile(m_target.output, m_target.error) ? m_errorWriter : writer();
}

void OutputStreams::out(const QByteArray& bytes, Weight weight) {
    m_outputWriter->put({m_target.output, bytes}, weight);
}

void OutputStreams::err(const QByteArray& bytes, Weight weight) {
    m_errorWriter->put({m_target.error, bytes}, weight);
}

bool OutputStreams::drainOutput(std::optional<StreamWriter::TimePoint> until) {
    return m_outputWriter->drain(until);
}

bool OutputStreams::drainError(std::optional<StreamWriter::TimePoint> until) {
    return m_errorWriter->drain(until);
}

void OutputStreams::giveUp() {
    m_outputWriter->giveUp();
    if (m_errorWriter != m_outputWriter)
        m_errorWriter->giveUp();
}

QByteArray OutputStreams::outputFailure() const {
    const int error = m_outputWriter->failureOf(m_target.output);
    return error == 0 ? QByteArray() : QByteArray::fromStdString(std::generic_category().message(error));
}

/// Composes the note of a loss; runs inside a call of the descriptor's writer. The text of a console is a
/// record, so the note must not be in it.
std::optional<StreamWriter::Piece> OutputStreams::note(int descriptor, const StreamWriter::Losses& losses) {
    const bool isOutput = descriptor == m_target.output;
    if (isOutput && m_json)
        return StreamWriter::Piece{descriptor,
                                   QStringLiteral("{\"event\":\"dropped\",\"time\":\"%1\",\"events\":%2}\n")
                                       .arg(utcText())
                                       .arg(losses.pieces)
                                       .toUtf8()};
    StreamWriter::Piece line{
        m_target.error,
        QStringLiteral("%1: %2 bytes are left out, because the reader did not keep up.\n")
            .arg(isOutput ? QStringLiteral("Standard output") : QStringLiteral("Standard error"))
            .arg(losses.bytes)
            .toUtf8()};
    if (!isOutput || m_outputWriter == m_errorWriter)
        return line;
    m_errorWriter->put(std::move(line), Weight::Result);
    return {};
}

} // namespace zrk
