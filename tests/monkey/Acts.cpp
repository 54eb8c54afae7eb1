#include "monkey/Acts.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QtWidgets>

namespace zrkmonkey {
namespace {

struct KeyStroke {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

constexpr KeyStroke kKeys[]{{Qt::Key_Return},
                            {Qt::Key_Escape},
                            {Qt::Key_Tab},
                            {Qt::Key_Backtab, Qt::ShiftModifier},
                            {Qt::Key_Space},
                            {Qt::Key_A},
                            {Qt::Key_5},
                            {Qt::Key_Up},
                            {Qt::Key_Down},
                            {Qt::Key_End},
                            {Qt::Key_PageUp, Qt::ShiftModifier},
                            {Qt::Key_Backspace},
                            {Qt::Key_ScrollLock},
                            {Qt::Key_B, Qt::AltModifier},
                            {Qt::Key_F, Qt::AltModifier},
                            {Qt::Key_C, Qt::ControlModifier},
                            {Qt::Key_F, Qt::ControlModifier},
                            {Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier}};

/// The buttons that begin something, those of the last steps most often.
constexpr const char* kStarters[]{"cmdURK", "cmdStartSecondary", "cmdTerminal", "cmdPrgFlash",
                                  "cmdStartPrimary"};

QString nameOf(const QWidget& widget) {
    return widget.objectName().isEmpty() ? QString::fromLatin1(widget.metaObject()->className())
                                         : widget.objectName();
}

/// Returns those of a kind that a user can reach in the window.
template <typename W>
QList<W*> reachable(const QWidget& window) {
    QList<W*> found = window.findChildren<W*>();
    found.removeIf([&window](const W* widget) {
        return !widget->isVisible() || !widget->isEnabled() || widget->window() != &window;
    });
    return found;
}

} // namespace

Acts::Act Acts::ofUser() {
    if (QWidget* popup = QApplication::activePopupWidget())
        return inPopup(*popup);
    QWidget* window = m_room.waitDialog.openWindow();
    const bool waits = window != nullptr;
    if (!waits)
        window = m_room.window.get();
    if (QWidget* keys = m_room.window->findChild<QDialog*>("frmKeys");
        keys != nullptr && !waits && pick(3) == 0)
        return ofDialog(*keys);
    const unsigned what = pick(23);
    if (what < 9)
        return press(*window);
    if (what < 13 || waits)
        return what % 4 == 3 ? ofWindow(*window) : key(*window);
    if (what < 16)
        return entry();
    if (what < 18)
        return address();
    return what < 20 ? ofWindow(*window) : ofMouse();
}

Acts::Act Acts::ofDialog(QWidget& dialog) {
    if (pick(3) == 0)
        return ofWindow(dialog);
    return pick(2) == 0 ? press(dialog) : key(dialog);
}

Acts::Act Acts::inPopup(QWidget& popup) {
    const QPointer<QWidget> kept(&popup);
    static constexpr Qt::Key kInside[]{Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape};
    const Qt::Key key = oneOf(kInside);
    return {QStringLiteral("key %1 in a popup").arg(key, 0, 16), [kept, key] {
                if (kept)
                    QTest::keyClick(kept.data(), key);
            }};
}

Acts::Act Acts::press(QWidget& window) {
    QList<QAbstractButton*> buttons = reachable<QAbstractButton>(window);
    if (!mayMute)
        buttons.removeIf([](const QAbstractButton* button) { return button->objectName() == "cmdOut"; });
    if (buttons.isEmpty())
        return {"nothing to press", [] {}};
    QAbstractButton* button = oneOf(buttons);
    if (pick(2) == 0) // most failures begin with a starter
        button = starterAmong(buttons, button);
    return {"press " + nameOf(*button), [button] { QTest::mouseClick(button, Qt::LeftButton); }};
}

QAbstractButton* Acts::starterAmong(const QList<QAbstractButton*>& buttons, QAbstractButton* otherwise) {
    for (const char* name : kStarters) {
        for (QAbstractButton* button : buttons) {
            if (button->objectName() == QLatin1String(name) && pick(2) == 0)
                return button;
        }
    }
    return otherwise;
}

Acts::Act Acts::key(QWidget& window) {
    QList<QWidget*> targets = reachable<QWidget>(window);
    targets.removeIf([this](const QWidget* widget) {
        const bool mutes = widget->window() == m_room.waitDialog.openWindow() &&
                           (widget->objectName() == "cmdOut" || widget->objectName() == "txtOut");
        return widget->focusPolicy() == Qt::NoFocus || (mutes && !mayMute);
    });
    if (targets.isEmpty())
        return {"no key", [] {}};
    QWidget* target = oneOf(targets);
    const KeyStroke& stroke = oneOf(kKeys);
    return {QStringLiteral("key %1 in %2").arg(stroke.key, 0, 16).arg(nameOf(*target)), [target, stroke] {
                target->setFocus();
                QTest::keyClick(target, stroke.key, stroke.modifiers);
            }};
}

Acts::Act Acts::entry() {
    QList<QAction*> entries = m_room.window->findChildren<QAction*>();
    entries.removeIf([](const QAction* action) {
        return !action->isEnabled() || !action->isVisible() || action->isSeparator() ||
               action->menu() != nullptr || action->text().isEmpty();
    });
    if (entries.isEmpty())
        return {"no entry", [] {}};
    QAction* entry = oneOf(entries);
    return {"entry " + entry->objectName() + entry->text(), [entry] { entry->trigger(); }};
}

Acts::Act Acts::address() {
    static constexpr const char* kTexts[]{"0x80008000", "0x10",       "",   "x",
                                          "4096",       "0xFFFFFFFF", "-1", "0x80100000"};
    const QString box = QStringLiteral("txtStartAddress_%1").arg(pick(7));
    const QString text = QString::fromLatin1(oneOf(kTexts));
    return {box + " = " + text, [this, box, text] {
                auto* edit = m_room.window->findChild<QLineEdit*>(box);
                edit->setFocus();
                edit->selectAll();
                QTest::keyClicks(edit, text + '0');
                QTest::keyClick(edit, Qt::Key_Backspace);
            }};
}

Acts::Act Acts::ofWindow(QWidget& window) {
    switch (pick(3)) {
    case 0:
        return {"close " + nameOf(window), [&window] { window.close(); }};
    case 1: {
        const QSize size(300 + static_cast<int>(pick(900)), 200 + static_cast<int>(pick(700)));
        return {"resize", [this, size] { m_room.window->resize(size); }};
    }
    default:
        if (&window != m_room.window.get())
            return {"nothing", [] {}};
        return {"choose a port", [this, down = pick(2) == 0] {
                    auto* ports = m_room.window->findChild<QComboBox*>("cmbComPort");
                    if (ports->isEnabled())
                        QTest::keyClick(ports, down ? Qt::Key_Down : Qt::Key_Up);
                }};
    }
}

Acts::Act Acts::ofWorld() {
    switch (pick(12)) {
    case 0:
        return {"the adapter is pulled", [this] { m_room.boards.now().hangUp(); }};
    case 1:
    case 2:
        return {"another board", [this] { m_room.boards.plugIn({}, {}); }};
    case 3:
        return {"a bad board", [this, seed = m_random()] { m_room.boards.plugInBadOne(seed); }};
    case 4:
        return {"the board talks", [this, said = QByteArray(1 + int(pick(600)), char(pick(256)))] {
                    m_room.boards.now().receive(said);
                    m_room.loop.wake();
                }};
    case 5:
        return {"the port fails to open or not", [this, fails = pick(2) == 0, refuses = pick(4) == 0] {
                    m_room.boards.now().failsToOpen = fails;
                    m_room.boards.now().failsHandshaking = refuses;
                }};
    case 6:
        return {"an image changes", [this, slot = pick(7), size = int(pick(90))] {
                    (void)m_room.write(QStringLiteral("slot%1.bin").arg(slot), QByteArray(size, 'z'));
                }};
    case 7:
        return {"adapters come and go", [this, there = pick(2) == 0] {
                    zrk::PortEntry adapter;
                    adapter.device = QStringLiteral("/dev/line1");
                    adapter.numbers = {1};
                    adapter.isThere = there;
                    m_room.catalog.entries = {adapter};
                }};
    default:
        return {"power on", [this] { m_room.boards.now().powerOn(); }};
    }
}

QString Acts::file(bool isToBeWritten) {
    static constexpr const char* kFiles[]{"",        "slot0.bin", "slot3.bin",   "none.bin", "board.INI",
                                          "odd.INI", "good.scr",  "endless.scr", "odd.scr",  "saved.txt"};
    static constexpr const char* kToBeWritten[]{"", "saved.txt", "board.INI", "other.txt", "none/saved.txt"};
    const QString name = QString::fromLatin1(isToBeWritten ? oneOf(kToBeWritten) : oneOf(kFiles));
    return name.isEmpty() ? QString() : m_room.folder.filePath(name);
}

} // namespace zrkmonkey
