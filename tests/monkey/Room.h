#pragma once

#include "app/MainWindow.h"
#include "app/WaitForCommForm.h"
#include "monkey/Boards.h"
#include "support/Rig.h"

namespace zrkmonkey {

/// Shows the wait dialog's window and notes whether it was asked for while it was there.
class WatchedWaitDialog final : public zrk::WaitDialogView {
  public:
    explicit WatchedWaitDialog(std::function<QWidget*()> parent) : m_real(std::move(parent)) {}

    void show(zrk::WaitDialog& dialog) override {
        wasShownTwice = wasShownTwice || m_real.openWindow() != nullptr;
        m_real.show(dialog);
    }
    void hide() override { m_real.hide(); }
    [[nodiscard]] QWidget* openWindow() const { return m_real.openWindow(); }

    bool wasShownTwice = false;

  private:
    zrk::WindowWaitDialog m_real;
};

/// Chooses what it is told to, while the world goes on.
class MonkeyFileDialog final : public zrk::FileDialog {
  public:
    std::function<QString()> choose;
    [[nodiscard]] QString openFile(const zrk::FileRequest& /*request*/) override { return choose(); }
};

/// All that the monkey plays with: the real window on virtual time, boards, files.
struct Room {
    Room();

    /// Writes a file into the folder; returns its path.
    QString write(const QString& name, const QByteArray& content) const;

    /// Gives a slot an image and an address with which it can be sent.
    void fillWell(int slot);

    /// The QObjects that belong to the window and what is open beside it, by their classes.
    [[nodiscard]] std::map<QString, int> objects() const;

    zrksim::VirtualEventLoop loop;
    Boards boards{loop};
    zrktest::RecordingBoxes boxes;
    MonkeyFileDialog fileDialog;
    WatchedWaitDialog waitDialog{[this] { return window.get(); }};
    QTemporaryDir folder;
    zrktest::FakeCatalog catalog;
    zrk::Loader loader{{loop, boards, boxes, fileDialog, waitDialog}, folder.path()};
    std::unique_ptr<zrk::MainWindow> window;
};

} // namespace zrkmonkey
