#pragma once

#include "platform/EventLoop.h"

#include <QObject>
#include <QProperty>

#include <memory>

class QAction;

namespace zrk {

struct Loader;
struct LoaderWidgets;

/// The console's two views: the text, which shows every character, and the screen, which is a terminal. Feeds
/// the screen with the board's output in terminal mode and with the loader's own lines, and switches between
/// the two. The screen begins empty at each opening of the port.
class ScreenSwitch final : public QObject {
    Q_OBJECT

  public:
    /// Widgets and loader must outlive it; the file `store` remembers the view from one run to the next.
    /// Handles the console's requests for the focus from now on.
    ScreenSwitch(const LoaderWidgets& widgets, Loader& loader, QString store, QObject* parent);
    ~ScreenSwitch() override;

    /// Switches between the views; ticked while the screen is shown.
    [[nodiscard]] QAction* entry() const { return m_entry; }

    /// Returns the view that is shown.
    [[nodiscard]] QWidget* shownView() const;

  private:
    void connectScreen();
    void show(bool screen);
    void followPort();
    void take(const QByteArray& bytes);
    void tellOfScreen(const QByteArray& bytes);
    void awaitEcho();
    [[nodiscard]] bool isScreen() const;

    const LoaderWidgets& m_widgets;
    Loader& m_loader;
    QString m_store;
    QAction* m_entry;
    QPropertyChangeHandler<std::function<void()>> m_whenPortChanges;
    std::unique_ptr<Timer> m_look; ///< for the echo of a key
    EventLoop::TimePoint m_lookUntil;
    bool m_wasOpen = false;
    bool m_endsWithEscape = false; ///< what the board has sent
    bool m_hasTold = false;        ///< that there is the screen
};

} // namespace zrk
