#pragma once

#include "app/MainWindow.h"
#include "app/WaitForCommForm.h"
#include "support/Rig.h"

#include <QApplication>

namespace zrktest {

/// A window over a loader with a scripted port, on virtual time.
struct WindowRig {
    WindowRig() {
        loader.startUp.prepare({folder.path(), QStringLiteral("loader"), 0, 7, 34});
        window.show();
        QApplication::processEvents();
    }

    /// The window's widget or menu entry of that name.
    template <typename W>
    [[nodiscard]] W* find(const QString& name) {
        auto* widget = window.findChild<W*>(name);
        if (widget == nullptr)
            ADD_FAILURE() << "no " << name.toStdString();
        return widget;
    }

    void fill(int slot) {
        QFile file(folder.filePath(QStringLiteral("slot%1.bin").arg(slot)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write("12345") == 5);
        file.close();
        loader.imageSlots.fill(slot, file.fileName());
    }

    VirtualEventLoop loop;
    ScriptedPort port{loop};
    RecordingBoxes boxes;
    FakeFileDialog fileDialog;
    zrk::WindowWaitDialog waitDialog{[this] { return &window; }};
    QTemporaryDir folder;
    int aboutShown = 0;
    zrk::Loader loader{{loop, port, boxes, fileDialog, waitDialog}, folder.path()};
    zrk::MainWindow window{loader, [this] { ++aboutShown; }};
};

class WindowTest : public ::testing::Test, protected WindowRig {};

} // namespace zrktest
