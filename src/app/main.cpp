#include "app/App.h"
#include "app/AppOptions.h"
#include "app/Identity.h"
#include "app/LoaderStyle.h"
#include "machine/StandardStreams.h"

#include <QApplication>
#include <QMessageBox>

#include <algorithm>
#include <cstdio>
#include <set>
#include <string_view>

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

/// Help and version are to be had without a display.
bool asksForText(int argc, char** argv) {
    const std::set<std::string_view> questions{"-h", "--help", "-v", "--version"};
    return std::any_of(argv, argv + argc, [&](const char* argument) { return questions.contains(argument); });
}

} // namespace

int main(int argc, char** argv) {
    if (zrk::hasStandardOutput() && asksForText(argc, argv)) {
        const QCoreApplication application(argc, argv);
        return print(zrk::readCommandLine(QCoreApplication::arguments()));
    }
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
    return QApplication::exec();
}
