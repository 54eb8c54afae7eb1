#include "app/ConsoleLog.h"

#include "controls/ConsoleText.h"

#include <utility>

namespace zrk {

ConsoleLog::ConsoleLog(EventLoop& loop, ConsoleText& console) : m_loop(loop) {
    console.onEdit([this](qsizetype removed, const QString& inserted, TextOrigin origin) {
        if (!m_file)
            return;
        for (; removed > 0; --removed)
            m_file->takeBack();
        m_file->append(origin == TextOrigin::Loader ? inserted.toUtf8() : inserted.toLatin1());
    });
}

void ConsoleLog::start(const RecordFile& record, FileWriter::Told failed) {
    stop();
    m_file = std::make_unique<LogFile>(record, m_loop, std::move(failed));
    m_file->setTimeStamps(m_hasTimeStamps);
}

void ConsoleLog::stop() {
    // First, since `failed` may start the next log.
    const auto ended = std::exchange(m_file, nullptr);
}

void ConsoleLog::setTimeStamps(bool on) {
    m_hasTimeStamps = on;
    if (m_file)
        m_file->setTimeStamps(on);
}

} // namespace zrk
