#include "app/terminal/ScreenSwitch.h"

#include "app/ConsoleTools.h"
#include "app/ConsoleView.h"
#include "app/LoaderWidgets.h"
#include "app/terminal/ScreenView.h"
#include "loader/Loader.h"

#include <QAction>
#include <QSettings>

#include <utility>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kLookInterval = 20ms;
constexpr std::chrono::milliseconds kEchoTime = 500ms;
const QString kScreenKey = QStringLiteral("screenView");
const QString kSmallGridKey = QStringLiteral("screenSmallGrid");
const QString kScreenHint =
    QStringLiteral("The board sends terminal sequences: Screen (Ctrl+Shift+S) carries them out.");

bool isSet(const QString& store, const QString& key) {
    return QSettings(store, QSettings::IniFormat).value(key).toBool();
}

void remember(const QString& store, const QString& key, bool on) {
    QSettings(store, QSettings::IniFormat).setValue(key, on);
}

} // namespace

ScreenSwitch::ScreenSwitch(const LoaderWidgets& widgets, Loader& loader, QString store, QObject* parent)
    : QObject(parent), m_widgets(widgets), m_loader(loader), m_store(std::move(store)),
      m_entry(named(new QAction(QStringLiteral("Screen"), this), QStringLiteral("mnuScreen"))),
      m_whenPortChanges(
          loader.controls.lblState.Caption.onValueChanged(std::function<void()>([this] { followPort(); }))),
      m_look(loader.loop.createTimer([this] {
          m_loader.terminal.passOn();
          if (m_loader.loop.now() >= m_lookUntil)
              m_look->stop();
      })) {
    m_entry->setCheckable(true);
    m_entry->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_S);
    m_entry->setToolTip(
        QStringLiteral("Carries out what the board sends, as a terminal does (Ctrl+Shift+S). The "
                       "text view shows every character."));
    connectScreen();
    m_entry->setChecked(isSet(m_store, kScreenKey));
    show(m_entry->isChecked());
    connect(m_entry, &QAction::toggled, this, [this](bool screen) {
        show(screen);
        remember(m_store, kScreenKey, screen);
    });
    loader.controls.txtStatus.onFocusRequested([this] { shownView()->setFocus(); });
    loader.terminal.onReceived([this](const QByteArray& bytes) { take(bytes); });
    loader.controls.txtStatus.onEdit([this](qsizetype, const QString& inserted, TextOrigin origin) {
        // In terminal mode the board's bytes come by themselves.
        if (origin == TextOrigin::Board && m_loader.state.TerminalMode)
            return;
        m_widgets.scrStatus->screen().print(inserted);
        m_widgets.scrStatus->showChanges();
    });
}

ScreenSwitch::~ScreenSwitch() {
    m_loader.terminal.onReceived({});
}

void ScreenSwitch::connectScreen() {
    ScreenView* view = m_widgets.scrStatus;
    view->setKeysGoToBoard([this] { return m_loader.state.TerminalMode && m_loader.port.isOpen(); });
    connect(view, &ScreenView::keyDown, this, [this](int key, bool alt, bool shift, bool control) {
        m_loader.keys.txtStatus_KeyDown(key, alt, shift, control);
    });
    connect(view, &ScreenView::typed, this, [this](const QByteArray& bytes) {
        m_loader.keys.send(bytes);
        awaitEcho();
    });
    view->setStopPaste([this] { return m_loader.keys.stopPaste(); });
    view->setSmallGrid(isSet(m_store, kSmallGridKey));
    connect(view, &ScreenView::smallGridChosen, this,
            [this](bool on) { remember(m_store, kSmallGridKey, on); });
    connect(view, &ScreenView::pasted, this,
            [this](const QByteArray& bytes) { m_loader.keys.pasteBytes(bytes); });
}

bool ScreenSwitch::isScreen() const {
    return m_entry->isChecked();
}

QWidget* ScreenSwitch::shownView() const {
    return isScreen() ? static_cast<QWidget*>(m_widgets.scrStatus) : m_widgets.txtStatus;
}

void ScreenSwitch::show(bool screen) {
    const bool hasFocus = m_widgets.txtStatus->hasFocus() || m_widgets.scrStatus->hasFocus();
    m_widgets.scrStatus->setVisible(screen);
    m_widgets.txtStatus->setVisible(!screen);
    m_widgets.txtStatus->setAsleep(screen, m_loader.controls.txtStatus.text());
    m_widgets.consoleTools->followShownView();
    if (screen)
        m_loader.state.Remark.text = m_loader.state.Remark.text.remove(kScreenHint).trimmed();
    if (hasFocus)
        shownView()->setFocus();
}

void ScreenSwitch::followPort() {
    const bool isOpen = m_loader.port.isOpen();
    if (isOpen && !m_wasOpen) {
        m_widgets.scrStatus->reset();
        m_endsWithEscape = false;
    }
    m_wasOpen = isOpen;
}

void ScreenSwitch::take(const QByteArray& bytes) {
    using Answers = TerminalScreen::Answers;
    m_widgets.scrStatus->screen().feed(bytes, isScreen() ? Answers::Send : Answers::Drop);
    m_widgets.scrStatus->showChanges();
    tellOfScreen(bytes);
}

/// Once: after that the user knows.
void ScreenSwitch::tellOfScreen(const QByteArray& bytes) {
    const bool hasSequence = bytes.contains("\x1B[") || (m_endsWithEscape && bytes.startsWith('['));
    m_endsWithEscape = bytes.endsWith('\x1B');
    if (!hasSequence || m_hasTold || isScreen())
        return;
    m_hasTold = true;
    QString& remark = m_loader.state.Remark.text;
    remark = remark.isEmpty() ? kScreenHint : remark + QLatin1Char(' ') + kScreenHint;
}

/// The console looks five times a second, which is slow for typing.
void ScreenSwitch::awaitEcho() {
    m_lookUntil = m_loader.loop.now() + kEchoTime;
    if (!m_look->isActive())
        m_look->start(kLookInterval);
}

} // namespace zrk
