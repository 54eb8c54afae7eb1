#include "app/PastePause.h"

#include "app/LoaderWidgets.h"
#include "serial/ConsoleKeys.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QSettings>

#include <chrono>

namespace zrk {
namespace {

const QString kPauseKey = QStringLiteral("pastePause"); // in milliseconds

struct PauseChoice {
    int milliseconds;
    const char* text;
};
constexpr PauseChoice kPauses[]{
    {0, "&None"}, {10, "&10 ms"}, {50, "&50 ms"}, {200, "&200 ms"}, {1000, "1 &s"}};

} // namespace

QMenu* makePastePauseMenu(ConsoleKeys& keys, const QString& store, QWidget* parent) {
    auto* menu = named(new QMenu(QStringLiteral("Pa&use after each pasted line"), parent),
                       QStringLiteral("mnuPastePause"));
    auto* group = new QActionGroup(menu);
    const int remembered = QSettings(store, QSettings::IniFormat).value(kPauseKey).toInt();
    for (const PauseChoice& pause : kPauses) {
        QAction* entry = group->addAction(menu->addAction(QLatin1String(pause.text)));
        entry->setCheckable(true);
        const auto choose = [&keys, pause] {
            keys.setPastePause(std::chrono::milliseconds(pause.milliseconds));
        };
        QObject::connect(entry, &QAction::triggered, menu, [choose, store, pause] {
            choose();
            QSettings(store, QSettings::IniFormat).setValue(kPauseKey, pause.milliseconds);
        });
        if (pause.milliseconds == remembered) {
            entry->setChecked(true);
            choose();
        }
    }
    return menu;
}

} // namespace zrk
