#include "app/App.h"

#include <QtWidgets>

#include <gtest/gtest.h>

#ifndef _WIN32
#include <csignal>
#include <unistd.h>
#endif

namespace {

/// Records the window and a message box when they are first shown, and answers the box; closes the About box;
/// takes `file` in a file dialog.
class FirstSight final : public QObject {
  public:
    FirstSight() { qApp->installEventFilter(this); }

    QStringList seen;
    QString file;
    QWidget* window = nullptr;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Show || !watched->isWidgetType())
            return false;
        if (auto* dialog = qobject_cast<QFileDialog*>(watched)) {
            dialog->selectFile(file);
            QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
        }
        if (watched->objectName() == "frmLoader") {
            window = static_cast<QWidget*>(watched);
            seen += watched->findChild<QLabel*>("lblHeader")->text() +
                    QStringLiteral("|%1|").arg(watched->findChild<QComboBox*>("cmbComPort")->count()) +
                    watched->findChild<QLineEdit*>("txtStartAddress_0")->text();
        }
        if (watched->objectName() == "frmAbout") {
            seen += static_cast<QWidget*>(watched)->windowTitle();
            QMetaObject::invokeMethod(watched, "accept", Qt::QueuedConnection);
        }
        if (auto* box = qobject_cast<QMessageBox*>(watched)) {
            seen += box->windowTitle() + (box->parentWidget()->isVisible() ? " on the window" : "");
            QMetaObject::invokeMethod(box, "accept", Qt::QueuedConnection);
        }
        return false;
    }
};

TEST(App, ItsWindowIsCompleteWhenFirstShownAndAMessageBoxComesUpOnIt) {
    QTemporaryDir folder;
    QFile image(folder.filePath("p.bin"));
    ASSERT_TRUE(image.open(QIODevice::WriteOnly) && image.write("12345") == 5);
    image.close();
    zrk::AppOptions options;
    options.iniPath = folder.filePath("a.INI");
    const QString window = "ZRK6957 loader, V0.7 (rev 34)|8|";
    for (const QStringList& expected :
         {QStringList{window + "0x0", "No file on the window"}, QStringList{window + "0x0010"}}) {
        FirstSight first;
        zrk::App app(options);
        app.start();
        EXPECT_EQ(first.seen, expected);
        first.window->findChild<QAction*>("mnuAbout")->trigger();
        EXPECT_EQ(first.seen.last(), "About ZRK6924 Loader");
        for (const QWidget* shown : QApplication::topLevelWidgets()) {
            if (shown->objectName() == "frmLoader") {
                EXPECT_TRUE(shown->screen()->availableGeometry().contains(shown->frameGeometry()));
            }
        }
        QFile ini(options.iniPath); // for the next one
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly) && ini.write("[BINFILES]\nPRIMARY=p.bin,0x10\n") > 0);
    }
}

#ifndef _WIN32
TEST(App, EndsOnRequestWithACompleteLog) {
    QTemporaryDir folder;
    zrk::AppOptions options;
    options.iniPath = folder.filePath("a.INI");
    QFile ini(options.iniPath);
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
    FirstSight first;
    first.file = folder.filePath("a.log");
    QFile log(first.file);
    zrk::App app(options);
    QTimer::singleShot(0, [&] {
        app.start();
        first.window->findChild<QAction*>("mnuLogToFile")->trigger();
        first.window->findChild<QPushButton*>("cmdCancel")->click();
        ::kill(::getpid(), SIGTERM);
    });
    EXPECT_EQ(QApplication::exec(), 130);
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll(), "\r\n--- Closing port ---\r\n");
}
#endif

} // namespace
