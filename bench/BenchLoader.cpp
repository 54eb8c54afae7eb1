#include "BenchLoader.h"

#include "board/launcher/BoardProcess.h"

#include <QProcess>
#include <QScopeGuard>

#include <ctime>
#include <stdexcept>

namespace zrkbench {
namespace {

constexpr char kCodeByte = '\xA5';

} // namespace

BenchLoader::BenchLoader(const QString& device, const ImageSizes& sizes,
                         std::optional<std::uint32_t> lineRate)
    : m_quiet(device, lineRate) {
    QProcess::execute(QString::fromStdString(zrkboard::siblingProgram("zrk-board")),
                      {QStringLiteral("--make-images"), m_quiet.folder()});
    const auto sample = [this](const char* name) { return m_quiet.folder() + QLatin1String(name); };
    const auto make = [this](const QString& name, qsizetype size) {
        return m_quiet.file(name, QByteArray(size, kCodeByte));
    };
    fillSlot(zrk::kPrimaryBoot, sample("/primary.bin"), QStringLiteral("0x0000"));
    fillSlot(zrk::kPgSibl, sample("/pg_sibl.bin"), QStringLiteral("0x0000"));
    fillSlot(zrk::kSecondaryExecutable, make(QStringLiteral("secondary"), sizes.secondary),
             QStringLiteral("0x80000004"));
    fillSlot(zrk::kUBoot, make(QStringLiteral("uboot"), sizes.uboot), QStringLiteral("0x82800000"));
    fillSlot(zrk::kFlashImage, make(QStringLiteral("flash"), sizes.flash), QStringLiteral("0x00000000"));
}

void BenchLoader::fillSlot(int slot, const QString& file, const QString& address) {
    loader().imageSlots.fill(slot, file);
    loader().controls.txtStartAddress[static_cast<std::size_t>(slot)].Text = address;
}

TransferTimes BenchLoader::timed(const QString& begin, const QString& end, const QString& answer,
                                 const std::function<void()>& operation) {
    TransferTimes times;
    enum class Stage { Before, Sending, Awaiting, Over } stage = Stage::Before;
    std::clock_t cpuBegin = 0;
    zrk::ConsoleText& console = loader().controls.txtStatus;
    console.onEdit([&](qsizetype, const QString&, zrk::TextOrigin) {
        const QString& text = console.text();
        const auto now = std::chrono::steady_clock::now();
        if (stage == Stage::Before && text.endsWith(begin)) {
            stage = Stage::Sending;
            times.first = now;
            cpuBegin = std::clock();
        } else if (stage == Stage::Sending && text.endsWith(end)) {
            stage = Stage::Awaiting;
            times.handedOver = now;
            times.cpuSeconds = static_cast<double>(std::clock() - cpuBegin) / CLOCKS_PER_SEC;
        } else if (stage == Stage::Awaiting && text.endsWith(answer)) {
            stage = Stage::Over;
            times.answered = now;
        }
    });
    const auto forget = qScopeGuard([&console] { console.forgetListeners(); });
    operation();
    if (stage != Stage::Over)
        throw std::runtime_error("the operation failed: " + (console.text() + m_quiet.said()).toStdString());
    return times;
}

TransferTimes BenchLoader::bringUp() {
    return timed(QStringLiteral("o ..OK!\r\nSending code .. "), QStringLiteral("done!\r\n"),
                 QStringLiteral("Expect final 't' .. t"),
                 [this] { loader().bringUp.cmdStartPrimary_Click(); });
}

TransferTimes BenchLoader::download() {
    return timed(QStringLiteral("o ..OK!\r\nSending code .. "), QStringLiteral("done!\r\n"),
                 QStringLiteral("Expect final 't' .. t"), [this] { loader().commands.cmdURK_Click(); });
}

TransferTimes BenchLoader::programFlash() {
    return timed(QStringLiteral("Sending NAND FLASH DATA frame .. "), QStringLiteral("get ACK .. "),
                 QStringLiteral("done!\r\n"), [this] { loader().flash.cmdPrgFlash_Click(); });
}

} // namespace zrkbench
