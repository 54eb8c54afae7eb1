#include "BenchLoader.h"

#include "board/launcher/BoardProcess.h"

#include <QFile>
#include <QProcess>

#include <ctime>
#include <stdexcept>

namespace zrkbench {

class BenchLoader::Silent final : public zrk::MessageBoxes,
                                  public zrk::FileDialog,
                                  public zrk::WaitDialogView {
  public:
    zrk::Answer show(const zrk::MessageBox& box) override {
        said += box.prompt; // and not thrown, for it may be a timer's tick that shows it
        return box.buttons == zrk::MessageButtons::Ok ? zrk::Answer::Ok : zrk::Answer::Yes;
    }
    QString openFile(const zrk::FileRequest& /*request*/) override { return {}; }
    void show(zrk::WaitDialog& /*dialog*/) override {}
    void hide() override {}

    QString said; ///< what a person would have been told
};

BenchLoader::BenchLoader(const QString& device, qsizetype secondarySize, qsizetype flashSize,
                         std::optional<std::uint32_t> lineRate)
    : m_silent(std::make_unique<Silent>()),
      m_ports(m_loop, zrk::PortNames({{1, device}}), {std::chrono::seconds(10), 1 << 20, lineRate}),
      m_loader(std::make_unique<zrk::Loader>(
          zrk::LoaderSurroundings{m_loop, m_ports, *m_silent, *m_silent, *m_silent}, m_folder.path())) {
    QProcess::execute(QString::fromStdString(zrkboard::siblingProgram("zrk-board")),
                      {QStringLiteral("--make-images"), m_folder.path()});
    m_loader->startUp.prepare({});
    const auto make = [this](const QString& name, qsizetype size) {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(size, '\xA5')) != size)
            throw std::runtime_error("cannot write an image file");
        return file.fileName();
    };
    fillSlot(zrk::kPrimaryBoot, m_folder.filePath(QStringLiteral("primary.bin")), QStringLiteral("0x0000"));
    fillSlot(zrk::kPgSibl, m_folder.filePath(QStringLiteral("pg_sibl.bin")), QStringLiteral("0x0000"));
    fillSlot(zrk::kSecondaryExecutable, make(QStringLiteral("secondary"), secondarySize),
             QStringLiteral("0x80000004"));
    fillSlot(zrk::kFlashImage, make(QStringLiteral("flash"), flashSize), QStringLiteral("0x00000000"));
}

BenchLoader::~BenchLoader() = default;

void BenchLoader::fillSlot(int slot, const QString& file, const QString& address) {
    m_loader->imageSlots.fill(slot, file);
    m_loader->controls.txtStartAddress[static_cast<std::size_t>(slot)].Text = address;
}

TransferTimes BenchLoader::timed(const QString& begin, const QString& end, const QString& answer,
                                 const std::function<void()>& operation) {
    TransferTimes times;
    enum class Stage { Before, Sending, Awaiting, Over } stage = Stage::Before;
    std::clock_t cpuBegin = 0;
    m_loader->controls.txtStatus.onEdit([&](qsizetype, const QString&) {
        const QString& text = m_loader->controls.txtStatus.text();
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
    operation();
    if (stage != Stage::Over)
        throw std::runtime_error("the operation failed: " +
                                 (m_loader->controls.txtStatus.text() + m_silent->said).toStdString());
    return times;
}

TransferTimes BenchLoader::bringUp() {
    return timed(QStringLiteral("o ..OK!\r\nSending code .. "), QStringLiteral("done!\r\n"),
                 QStringLiteral("Expect final 't' .. t"),
                 [this] { m_loader->bringUp.cmdStartPrimary_Click(); });
}

TransferTimes BenchLoader::programFlash() {
    return timed(QStringLiteral("Sending NAND FLASH DATA frame .. "), QStringLiteral("get ACK .. "),
                 QStringLiteral("done!\r\n"), [this] { m_loader->flash.cmdPrgFlash_Click(); });
}

} // namespace zrkbench
