#include "app/App.h"

#include <QtWidgets>

#include <gtest/gtest.h>

namespace {

/// Notes what the window and a message box look like at their first sight, and answers the box.
class FirstSight final : public QObject {
  public:
    FirstSight() { qApp->installEventFilter(this); }

    QStringList seen;

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Show || !watched->isWidgetType())
            return false;
        if (watched->objectName() == "frmLoader")
            seen += watched->findChild<QLabel*>("lblHeader")->text() +
                    QStringLiteral("|%1|").arg(watched->findChild<QComboBox*>("cmbComPort")->count()) +
                    watched->findChild<QLineEdit*>("txtStartAddress_0")->text();
        if (auto* box = qobject_cast<QMessageBox*>(watched)) {
            seen += box->windowTitle() + (box->parentWidget()->isVisible() ? " on the window" : "");
            QMetaObject::invokeMethod(box, "accept", Qt::QueuedConnection);
        }
        return false;
    }
};

TEST(App, ItsWindowIsCompleteAtItsFirstSightAndAMessageBoxComesUpOnIt) {
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
        QFile ini(options.iniPath); // for the next one
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly) && ini.write("[BINFILES]\nPRIMARY=p.bin,0x10\n") > 0);
    }
}

} // namespace
