#include "Soak.h"
#include "boot/WaitDialog.h"
#include "boot/WaitDialogView.h"
#include "loader/Loader.h"
#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"
#include "simulation/BoardPort.h"

#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

namespace zrkbench {
namespace {

using namespace std::chrono_literals;
using zrksim::Duration;
using zrksim::TimePoint;

constexpr auto kPowerOnLimit = 60s;
constexpr auto kAnswerLimit = 20s; // of the flash programmer, which has none of its own
// A run needs no more: its bytes take a second, its replies five each, its delays three.
constexpr auto kRunLimit = 400s;
constexpr auto kVirtualEndingLimit = 10s; // from a cancel to the end

/// Far from the run's images.
constexpr std::uint32_t kElsewhere = 0x03FF'F000;

/// A user who closes each box, switches the board on on request, and cancels after a minute.
class Person final : public zrk::MessageBoxes, public zrk::FileDialog, public zrk::WaitDialogView {
  public:
    Person(zrksim::VirtualEventLoop& loop, std::function<void()> powerOn, Duration powerOnAfter)
        : m_loop(loop), m_powerOn(std::move(powerOn)), m_powerOnAfter(powerOnAfter) {}

    zrk::Answer show(const zrk::MessageBox& box) override {
        return box.buttons == zrk::MessageButtons::Ok ? zrk::Answer::Ok : zrk::Answer::Yes;
    }
    QString openFile(const zrk::FileRequest& /*request*/) override { return {}; }
    void show(zrk::WaitDialog& dialog) override {
        m_dialog = &dialog;
        m_loop.after(m_powerOnAfter, m_powerOn);
        m_loop.after(kPowerOnLimit, [this] {
            if (m_dialog != nullptr)
                m_dialog->giveUp(zrk::Outcome::LimitReached);
        });
    }
    void hide() override { m_dialog = nullptr; }

  private:
    zrksim::VirtualEventLoop& m_loop;
    std::function<void()> m_powerOn;
    Duration m_powerOnAfter;
    zrk::WaitDialog* m_dialog = nullptr;
};

template <typename MemoryType>
bool holds(const MemoryType& memory, const SoakImage& image, std::uint8_t around) {
    // A byte on either side shows whether more was written than there is.
    const bool hasBefore = image.address % 0x1000 != 0;
    const auto size = static_cast<std::size_t>(image.bytes.size());
    const auto read = memory.read(image.address - (hasBefore ? 1 : 0), size + 1 + (hasBefore ? 1 : 0));
    QByteArray expected = image.bytes + static_cast<char>(around);
    if (hasBefore)
        expected.prepend(static_cast<char>(around));
    return QByteArrayView(expected) ==
           QByteArrayView(reinterpret_cast<const char*>(read.data()), static_cast<qsizetype>(read.size()));
}

class VirtualRun {
  public:
    explicit VirtualRun(const SoakPlan& plan)
        : m_plan(plan), m_port(m_loop, {}, zrkboard::parseWireFaults(plan.faults)),
          m_person(
              m_loop, [this] { m_port.powerOn(); }, plan.powerOnAfter),
          m_loader(zrk::LoaderSurroundings{m_loop, m_port, m_person, m_person, m_person}, m_folder.path()) {
        m_port.wire.onFault([this](bool toBoard, std::uint64_t position, std::uint8_t /*byte*/,
                                   zrkboard::WireFault kind) { meet(toBoard, position, kind); });
        m_loader.startUp.prepare({m_folder.path(), QStringLiteral("loader"), 0, 7, 34});
        m_loader.flash.limitAnswers(kAnswerLimit);
        m_loader.controls.chkErase.Value = plan.erases ? 1 : 0;
        if (plan.flashes) {
            fill(zrk::kPgSibl, plan.primary);
            fill(zrk::kFlashImage, plan.flash);
        } else {
            fill(zrk::kPrimaryBoot, plan.primary);
            fill(zrk::kSecondaryExecutable, plan.secondary);
            fill(zrk::kUBoot, plan.uboot);
        }
        m_port.board.nand().program(kElsewhere, std::vector<std::uint8_t>(1, 0x5A));
    }

    SoakEnd run() {
        if (m_plan.cancelAfter)
            m_loop.after(*m_plan.cancelAfter, [this] { stop(zrk::Outcome::Cancelled); });
        m_loop.after(kRunLimit, [this] { stop(zrk::Outcome::LimitReached); });
        try {
            operate();
            m_end.status = zrk::outcomeName(m_loader.operation.outcome());
        } catch (const zrksim::StuckLoop&) {
            m_end.status = QStringLiteral("hung");
        }
        if (m_stopped && m_loop.now() - *m_stopped > kVirtualEndingLimit)
            m_end.status = QStringLiteral("hung");
        m_end.sent = m_port.written;
        m_end.refusalHeard = m_port.heard.contains('E');
        m_end.intact = isIntact();
        if (m_loader.operation.isRunning())
            m_end.leftBehind += QStringLiteral("an active operation");
        // A board that is up keeps its port for the next operation.
        const bool keepsPort = !m_plan.flashes && m_loader.operation.outcome() == zrk::Outcome::Done;
        if (m_port.isOpen() && !keepsPort)
            m_end.leftBehind += QStringLiteral("an open port");
        return m_end;
    }

  private:
    void operate() {
        if (m_plan.flashes)
            return m_loader.flash.cmdPrgFlash_Click();
        m_loader.bringUp.cmdStartPrimary_Click();
        if (m_loader.operation.outcome() == zrk::Outcome::Done)
            m_loader.commands.cmdURK_Click();
    }

    void stop(zrk::Outcome why) {
        if (!m_loader.operation.isRunning())
            return;
        m_end.cancelled = m_end.cancelled || why == zrk::Outcome::Cancelled;
        m_end.mustBeCancelled = m_end.mustBeCancelled || (why == zrk::Outcome::Cancelled &&
                                                          m_loader.state.StopReason == zrk::Outcome::Done);
        m_end.limited = m_end.limited || why == zrk::Outcome::LimitReached;
        m_stopped = m_loop.now();
        m_loader.state.noteStop(why);
        m_loader.portControl.cmdCancel_Click();
    }

    void meet(bool toBoard, std::uint64_t position, zrkboard::WireFault kind) {
        const zrkboard::State state = m_port.board.state();
        const bool saysVersion = m_plan.versionAsked != 0 && m_port.written.size() == m_plan.versionAsked;
        const bool tolerant = state == zrkboard::State::Announcing || saysVersion;
        m_end.faults.push_back({kind, toBoard, position, !toBoard && !tolerant});
    }

    [[nodiscard]] bool isIntact() const {
        const zrkboard::Board& board = m_port.board;
        if (!holds(board.iram(), m_plan.primary, 0))
            return false;
        if (!m_plan.flashes)
            return holds(board.sdram(), m_plan.secondary, 0) && holds(board.sdram(), m_plan.uboot, 0);
        const SoakImage elsewhere{QByteArray(1, m_plan.erases ? '\xFF' : '\x5A'), kElsewhere};
        return holds(board.nand(), m_plan.flash, 0xFF) && holds(board.nand(), elsewhere, 0xFF);
    }

    void fill(int slot, const SoakImage& image) {
        QFile file(m_folder.filePath(QStringLiteral("slot%1.bin").arg(slot)));
        if (!file.open(QIODevice::WriteOnly) || file.write(image.bytes) != image.bytes.size())
            throw std::runtime_error("cannot write an image file");
        file.close();
        m_loader.imageSlots.fill(slot, file.fileName());
        m_loader.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text =
            QStringLiteral("0x%1").arg(image.address, 8, 16, QLatin1Char('0'));
    }

    const SoakPlan& m_plan;
    QTemporaryDir m_folder;
    zrksim::VirtualEventLoop m_loop;
    zrksim::BoardPort m_port;
    Person m_person;
    zrk::Loader m_loader;
    SoakEnd m_end;
    std::optional<TimePoint> m_stopped;
};

} // namespace

SoakEnd runVirtually(const SoakPlan& plan) {
    return VirtualRun(plan).run();
}

} // namespace zrkbench
