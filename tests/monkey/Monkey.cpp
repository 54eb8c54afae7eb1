#include "monkey/Monkey.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include <cstdio>
#include <cstdlib>

namespace zrkmonkey {

using namespace std::chrono_literals;

namespace {

constexpr int kDeepest = 3;    // acts within acts within acts
constexpr int kMostAtOnce = 2; // a question, and what has happened meanwhile
constexpr int kMostPatience = 60;
constexpr auto kLongest = 180s;   // of one act, until the user only cancels
constexpr auto kEnding = 60s;     // from then to its end
constexpr auto kCancelling = 15s; // from a cancel to the end
constexpr auto kCrossing = 2s;    // within which an end may cross a cancel
constexpr qsizetype kMostTold = 40;

/// A count that includes this object as long as it lives.
class Counted {
  public:
    explicit Counted(int& count) : m_count(count) { ++m_count; }
    ~Counted() { --m_count; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

  private:
    int& m_count;
};

} // namespace

Monkey::Monkey(std::uint64_t seed, bool prints) : m_seed(seed), m_prints(prints) {
    m_acts.mayMute = seed % 4 == 3;
    m_room.answer = [this](QMessageBox& box) { return answer(box); };
    m_room.readAbout = [this](QDialog& about) { readAbout(about); };
    m_room.fileDialog.choose = [this](const zrk::FileRequest& request) {
        const Counted open(m_modal);
        m_room.loop.runFor(1ms * m_acts.pick(2000));
        QString file = m_isOver ? QString() : m_acts.file(request.isToBeWritten);
        note("  file: " + file.section('/', -1));
        return file;
    };
    arm();
}

int Monkey::answer(QMessageBox& box) {
    note("  box: " + box.text().left(60));
    const Counted modal(m_modal);
    const Counted open(m_boxes);
    ++m_boxesShown;
    require(m_boxes <= kMostAtOnce, "boxes do not pile up");
    require(box.parentWidget() != nullptr && box.parentWidget()->isVisible(), "a box has a window below it");
    Room::openModal(box);
    // Sometimes the user is away.
    m_room.loop.runFor(m_isOver ? 1ms : 1ms * m_acts.pick(m_acts.pick(4) == 0 ? 30'000 : 4000));
    require(box.isVisible(), "a box stays until it is answered");
    static constexpr Qt::Key kAnswers[]{Qt::Key_Escape, Qt::Key_Return};
    const QList<QAbstractButton*> buttons = box.buttons();
    if (m_isOver) // Yes, if the box asks
        QTest::mouseClick(buttons.first(), Qt::LeftButton);
    else if (m_acts.pick(3) == 0)
        QTest::keyClick(&box, m_acts.oneOf(kAnswers));
    else
        QTest::mouseClick(m_acts.oneOf(buttons), Qt::LeftButton);
    require(!box.isVisible(), "an answered box is gone");
    return box.result();
}

void Monkey::readAbout(QDialog& about) {
    const Counted modal(m_modal);
    Room::openModal(about);
    for (int i = 0; i < 3 && about.isVisible() && !m_isOver; ++i) {
        m_room.loop.runFor(1ms * m_acts.pick(4000));
        const auto [name, act] = m_acts.ofDialog(about);
        note("  " + name);
        act();
    }
    about.close();
}

/// Lets something happen from time to time, also during an act.
void Monkey::arm() {
    m_room.loop.after(1ms * (1 + m_acts.pick(1500)), [this] {
        arm();
        within();
    });
}

void Monkey::within() {
    if (m_depth == 0 || m_depth > kDeepest)
        return;
    if (++m_actsWithin > m_patience)
        m_isOver = true;
    if (m_isOver)
        return rescue();
    if (!m_isCalm || m_acts.pick(8) == 0)
        playOne(m_depth);
    else if (m_room.waitDialog.openWindow() != nullptr)
        m_room.boards.now().powerOn(); // as it requests
}

void Monkey::play(int acts) {
    for (int i = 0; i < acts && m_faults.isEmpty(); ++i) {
        m_actsWithin = 0;
        m_patience = static_cast<int>(m_acts.pick(m_acts.pick(2) == 0 ? 8 : kMostPatience));
        m_isCalm = m_acts.pick(2) == 0;
        m_cancelledAt.reset();
        const auto boxesBefore = m_boxesShown;
        const auto began = m_room.loop.now();
        const auto giveUp = m_room.loop.schedule(began + kLongest, [this] { m_isOver = true; });
        const auto hang = m_room.loop.schedule(began + kLongest + kEnding, [this] {
            // An exception from here would not get past the operation that hangs.
            std::fprintf(stderr, "an act does not end\n%s\n", story().toUtf8().constData());
            std::abort();
        });
        playOne(0);
        settle();
        m_room.loop.cancel(giveUp);
        m_room.loop.cancel(hang);
        m_isOver = false;
        checkCancel();
        require(m_boxesShown - boxesBefore <= 4 + m_actsWithin, "no storm of boxes");
        checkIdle();
        m_room.loop.runFor(1ms * m_acts.pick(1000));
        QApplication::processEvents();
    }
}

/// Plays one act, in which others may happen.
void Monkey::playOne(int depth) {
    const bool byUser = m_modal == 0 && m_acts.pick(4) != 0;
    const auto [name, act] = byUser ? m_acts.ofUser() : m_acts.ofWorld();
    note(QString(qsizetype{2} * depth, ' ') + name);
    const bool running = m_room.loader.operation.isRunning();
    const int opened = m_room.boards.timesOpened();
    const auto sent = m_room.loader.state.BytesSentInAll;
    const Counted deeper(m_depth);
    act();
    require(!running || opened == m_room.boards.timesOpened(), "no second operation opens the port");
    require(!running || sent == m_room.loader.state.BytesSentInAll, "no second operation sends an image");
}

/// Cancels whatever is under way.
void Monkey::rescue() {
    if (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    if (m_modal > 0)
        return;
    if (QWidget* waiting = m_room.waitDialog.openWindow())
        QTest::keyClick(waiting, Qt::Key_Escape);
    else if (m_room.loader.operation.isRunning()) {
        m_cancelledAt = m_cancelledAt.value_or(m_room.loop.now());
        QTest::mouseClick(m_room.window->findChild<QWidget*>("cmdCancel"), Qt::LeftButton);
    }
}

/// Closes an open popup and shows a closed window again, as in another run of the program.
void Monkey::settle() {
    if (m_depth == 0 && !m_room.window->isVisible())
        m_room.window->show();
}

void Monkey::checkCancel() {
    if (!m_cancelledAt)
        return;
    const auto later = m_room.loop.now() - *m_cancelledAt;
    require(later <= kCancelling, "what is cancelled ends soon");
    require(later <= kCrossing || m_room.loader.operation.outcome() != zrk::Outcome::Done,
            "what is cancelled is no success");
}

void Monkey::checkIdle() {
    require(!m_room.loader.operation.isRunning(), "an act that is over leaves no operation");
    require(m_room.waitDialog.openWindow() == nullptr, "nor the wait dialog");
    require(!m_room.boards.wasOpenedTwice(), "a port is opened once");
    require(!m_room.waitDialog.wasShownTwice, "one wait at a time");
    require(!m_room.loader.state.Asking, "no question is left");
}

std::map<QString, int> Monkey::objects() {
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    for (QDialog* dialog : m_room.window->findChildren<QDialog*>())
        dialog->close();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
    return m_room.objects();
}

void Monkey::bringUp() {
    if (!m_faults.isEmpty() || m_room.loader.state.DebugMode) // then it sends nothing, as it should
        return;
    m_isOver = true;
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    m_room.boards.plugIn({}, {});
    for (int slot = 0; slot < 7; ++slot) {
        m_room.fillWell(slot);
        m_room.loader.controls.chkExeURK[static_cast<std::size_t>(slot)].Value = slot < 5 ? 1 : 0;
    }
    note("a good bring-up");
    m_room.loop.runFor(1s); // detects the pulled adapter
    m_room.loop.after(1s, [this] { m_room.boards.now().powerOn(); });
    auto* button = m_room.window->findChild<QWidget*>("cmdStartPrimary");
    require(button->isEnabled(), "a bring-up can be started");
    QTest::mouseClick(button, Qt::LeftButton);
    require(m_room.loader.operation.outcome() == zrk::Outcome::Done, "a good board is brought up");
    require(m_room.boards.now().board.sdram().read(0x80008000, 4) == std::vector<std::uint8_t>(4, 'B'),
            "and has its image");
    checkIdle();
    m_isOver = false;
}

void Monkey::note(const QString& what) {
    const auto time = std::chrono::duration<double>(m_room.loop.elapsed());
    m_told += QStringLiteral("%1 %2").arg(time.count(), 9, 'f', 3).arg(what);
    if (m_prints)
        std::fprintf(stderr, "%s\n", m_told.last().toUtf8().constData());
    if (m_told.size() > kMostTold)
        m_told.removeFirst();
}

void Monkey::require(bool holds, const char* what) {
    if (holds || m_faults.contains(QLatin1String(what)))
        return;
    note(QStringLiteral("*** does not hold: ") + what);
    m_faults += QString::fromLatin1(what);
}

QString Monkey::story() const {
    return QStringLiteral("again: ZRK_MONKEY_SEED=%1 ZRK_MONKEY_ROUNDS=1\n").arg(m_seed) + m_told.join('\n') +
           "\nconsole: " + zrktest::readable(m_room.loader.controls.txtStatus.text()).right(400);
}

} // namespace zrkmonkey
