#include "cli/SentLines.h"

#include "cli/Output.h"
#include "loader/Loader.h"

namespace zrk {

SentLines::SentLines(Loader& loader, Output& output) : m_loader(loader), m_output(output) {
    for (std::size_t slot = 0; slot < loader.state.Sent.size(); ++slot) {
        const std::function<void()> changed = [this, slot] { tell(slot); };
        m_handlers.push_back(loader.state.Sent[slot].onValueChanged(changed));
    }
    const std::function<void()> versionChanged = [this] { tellVersion(); };
    m_handlers.push_back(loader.state.PgSiblVersion.onValueChanged(versionChanged));
}

void SentLines::tellVersion() {
    const QString& version = m_loader.state.PgSiblVersion;
    if (!version.isEmpty())
        m_output.event("pg_sibl", {{QStringLiteral("version"), version}});
}

void SentLines::tell(std::size_t slot) {
    const std::optional<SentImage> sent = m_loader.state.Sent[slot].value();
    if (!sent)
        return;
    const QString title = m_loader.controls.slotTitle(slot);
    m_output.event("sent", {{QStringLiteral("image"), title},
                            {QStringLiteral("slot"), QLatin1String(kSlots[slot].option)},
                            {QStringLiteral("bytes"), sent->bytes},
                            {QStringLiteral("crc32"), sent->crcText()}});
    m_output.notice(
        QStringLiteral("%1: sent %2 bytes, CRC-32 %3").arg(title).arg(sent->bytes).arg(sent->crcText()));
    if (!m_loader.controls.lblFileChanged[slot].Caption.value().isEmpty())
        m_output.tell(QStringLiteral("%1: the file has changed since this run began; the board got its "
                                     "earlier content.")
                          .arg(title),
                      Severity::Warning);
}

} // namespace zrk
