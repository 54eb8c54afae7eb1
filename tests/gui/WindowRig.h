#pragma once

#include "app/ConsoleView.h"
#include "app/MainWindow.h"
#include "app/WaitForCommForm.h"
#include "support/Rig.h"

#include <QTest>
#include <QtWidgets>

namespace zrktest {

/// A window over a loader with a port of this kind, on virtual time.
template <typename Port>
class WindowOver : public ::testing::Test {
  protected:
    WindowOver() {
        loader.startUp.prepare({folder.path(), "loader", 0, 7, 34});
        window.show();
        QApplication::processEvents();
    }

    /// Returns the window's widget or menu entry of that name.
    template <typename W = QWidget>
    [[nodiscard]] W* find(const QString& name) {
        auto* widget = window.findChild<W*>(name);
        if (widget == nullptr)
            ADD_FAILURE() << "no " << name.toStdString();
        return widget;
    }

    /// Returns its property, a text by default.
    [[nodiscard]] QString shown(const QString& name, const char* property = "text") {
        return find<QObject>(name)->property(property).toString();
    }

    void click(const QString& name) { QTest::mouseClick(find(name), Qt::LeftButton); }
    void trigger(const QString& entry) { find<QAction>(entry)->trigger(); }

    /// Writes a file into the folder; returns its path.
    [[nodiscard]] QString image(const QString& name, const QByteArray& content = "12345") {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
    }

    void fill(int slot) { loader.imageSlots.fill(slot, image(QStringLiteral("slot%1.bin").arg(slot))); }

    VirtualEventLoop loop;
    Port port{loop};
    RecordingBoxes boxes;
    FakeFileDialog fileDialog;
    zrk::WindowWaitDialog waitDialog{[this] { return &window; }};
    QTemporaryDir folder;
    int aboutShown = 0;
    zrk::Loader loader{{loop, port, boxes, fileDialog, waitDialog}, folder.path()};
    FakeCatalog catalog;
    zrk::MainWindow window{loader, catalog, folder.filePath("window.conf"), [this] { ++aboutShown; }};
};

using WindowTest = WindowOver<ScriptedPort>;

} // namespace zrktest
