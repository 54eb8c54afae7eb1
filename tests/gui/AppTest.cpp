#include "app/App.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

/// Notes what the window and a message box look like at their first sight, and answers the box.
class FirstSight final : public QObject {
  public:
    FirstSight() { qApp->installEventFilter(this); }

    QStringList seen;

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::Show || widget == nullptr || !widget->isWindow())
            return false;
        if (widget->objectName() == QLatin1String("frmLoader"))
            seen += QStringLiteral("%1|%2|%3|%4")
                        .arg(widget->findChild<QLabel*>(QStringLiteral("lblHeader"))->text())
                        .arg(widget->findChild<QComboBox*>(QStringLiteral("cmbComPort"))->count())
                        .arg(widget->findChild<QWidget*>(QStringLiteral("cmdURK"))->isEnabled())
                        .arg(widget->findChild<QLineEdit*>(QStringLiteral("txtStartAddress_0"))->text());
        if (auto* box = qobject_cast<QMessageBox*>(widget)) {
            const bool onWindow = box->parentWidget()->isVisible();
            seen += box->windowTitle() + (onWindow ? QStringLiteral(" on the window") : QString());
            QMetaObject::invokeMethod(box, "accept", Qt::QueuedConnection);
        }
        return false;
    }
};

TEST(App, ItsWindowIsCompleteAtItsFirstSightAndAMessageBoxComesUpOnIt) {
    QTemporaryDir folder;
    const QString iniPath = folder.filePath(QStringLiteral("a.INI"));
    for (const bool withIni : {false, true}) {
        if (withIni) {
            QFile image(folder.filePath(QStringLiteral("p.bin")));
            QFile ini(iniPath);
            ASSERT_TRUE(image.open(QIODevice::WriteOnly) && image.write("12345") == 5);
            ASSERT_TRUE(ini.open(QIODevice::WriteOnly) && ini.write("[BINFILES]\nPRIMARY=p.bin,0x10\n") > 0);
        }
        FirstSight first;
        zrk::AppOptions options;
        options.iniPath = iniPath;
        zrk::App app(options);
        app.start();
        const QString window = QStringLiteral("ZRK6957 loader, V0.7 (rev 34)|8|0|");
        EXPECT_EQ(first.seen, withIni ? QStringList{window + "0x0010"}
                                      : QStringList({window + "0x0", "No file on the window"}));
    }
}

} // namespace
