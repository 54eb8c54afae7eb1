#include "app/App.h"
#include "app/AppOptions.h"
#include "app/Identity.h"
#include "app/LoaderStyle.h"
#include "machine/Descriptors.h"
#include "machine/InterruptSignal.h"
#include "machine/StandardStreams.h"

#include <QApplication>
#include <QMessageBox>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <set>
#include <string_view>
#include <utility>

namespace {

int print(const zrk::AppCommandLine& commandLine) {
    if (!zrk::hasStandardOutput()) {
        QMessageBox box;
        box.setWindowTitle(zrk::applicationTitle());
        box.setText(QStringLiteral("<pre>%1</pre>").arg(commandLine.message.toHtmlEscaped()));
        (void)box.exec();
        return commandLine.exitStatus;
    }
    std::fputs(commandLine.message.toLocal8Bit().constData(), commandLine.exitStatus == 0 ? stdout : stderr);
    return commandLine.exitStatus;
}

/// An action that must be done before the process ends.
class LastAct {
  public:
    LastAct() = default;
    ~LastAct() { perform(); }
    LastAct(const LastAct&) = delete;
    LastAct& operator=(const LastAct&) = delete;

    void become(std::function<void()> act) { m_act = std::move(act); }
    void perform() {
        if (const auto act = std::exchange(m_act, nullptr))
            act();
    }

  private:
    std::function<void()> m_act;
};

/// Returns whether help or version is requested, which need no display.
bool asksForText(int argc, char** argv) {
    const std::set<std::string_view> questions{"-h", "--help", "-v", "--version"};
    return std::any_of(argv, argv + argc, [&](const char* argument) { return questions.contains(argument); });
}

} // namespace

int main(int argc, char** argv) {
    zrk::fillMissingStreams();
    if (zrk::hasStandardOutput() && asksForText(argc, argv)) {
        const QCoreApplication application(argc, argv);
        return print(zrk::readCommandLine(QCoreApplication::arguments()));
    }
    zrk::ignoreBrokenPipes();
    zrk::InterruptSignal::hold();
    QApplication application(argc, argv);
    QApplication::setDesktopFileName(QStringLiteral("zrk-loader"));
    QApplication::setStyle(new zrk::LoaderStyle);
    QApplication::setWindowIcon(zrk::applicationIcon());

    const zrk::AppCommandLine commandLine = zrk::readCommandLine(QApplication::arguments());
    if (!commandLine.options)
        return print(commandLine);
    zrk::App app(*commandLine.options);
    QMetaObject::invokeMethod(
        &application, [&app] { app.start(); }, Qt::QueuedConnection);
    // After an exit() in the middle, which Qt calls when the display is gone, only this runs.
    static LastAct lastAct;
    lastAct.become([&app] { app.endRecords(); });
    const int status = QApplication::exec();
    lastAct.perform();
    return status;
}
