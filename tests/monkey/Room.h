#pragma once

#include "app/ConsoleLog.h"
#include "app/MainWindow.h"
#include "app/SystemInfo.h"
#include "app/WaitForCommForm.h"
#include "app/WindowMessageBoxes.h"
#include "machine/TracedPorts.h"
#include "monkey/Boards.h"
#include "platform/ProgramStarter.h"
#include "platform/Registry.h"
#include "support/Rig.h"

#include <QDialog>
#include <QMessageBox>
#include <QPointer>

namespace zrkmonkey {

/// A view of the wait dialog that records a second request while it is shown.
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

/// A file dialog that chooses a given file, while other events go on.
class MonkeyFileDialog final : public zrk::FileDialog {
  public:
    std::function<QString(const zrk::FileRequest& request)> choose;
    [[nodiscard]] QString openFile(const zrk::FileRequest& request) override { return choose(request); }
};

/// A desktop without a System Information program.
class BareDesktop final : public zrk::Registry, public zrk::ProgramStarter {
  public:
    [[nodiscard]] std::optional<zrk::RegistryValue> query(std::uint32_t /*root*/, const QString& /*key*/,
                                                          const QString& /*value*/) const override {
        return {};
    }
    [[nodiscard]] bool start(const QString& /*path*/) override { return false; }
};

/// The room of the monkey: the real window and its real boxes on virtual time, boards, files.
struct Room {
    Room();

    /// Writes a file into the folder; returns its path.
    QString write(const QString& name, const QByteArray& content) const;

    /// Gives a slot an image and an address that can be sent.
    void fillWell(int slot);

    /// Counts the QObjects of the window and of what is open beside it, by class.
    [[nodiscard]] std::map<QString, int> objects() const;

    /// Opens a dialog as exec() does, and returns at once.
    static void openModal(QDialog& dialog);

    std::function<int(QMessageBox&)> answer; ///< opens a box, and returns the button that ended it
    std::function<void(QDialog&)> readAbout; ///< opens the About box, until it is closed

    zrksim::VirtualEventLoop loop;
    Boards boards{loop};
    zrk::TracedPorts tracedPorts{loop, boards};
    zrk::WindowMessageBoxes boxes{[this] { return topWindow(); },
                                  [this](QMessageBox& box) { return answer(box); }};
    MonkeyFileDialog fileDialog;
    WatchedWaitDialog waitDialog{[this] { return window.get(); }};
    QTemporaryDir folder;
    zrktest::FakeCatalog catalog;
    zrk::Loader loader{{loop, tracedPorts, boxes, fileDialog, waitDialog}, folder.path()};
    zrk::ConsoleLog log{loop, loader.controls.txtStatus};
    BareDesktop desktop;
    zrk::SystemInfo systemInfo{desktop, desktop, loader};
    std::unique_ptr<zrk::MainWindow> window;

  private:
    [[nodiscard]] QWidget* topWindow() const;
    void showAbout();
    void endRecords();

    QPointer<QWidget> m_about; ///< while it is open
};

} // namespace zrkmonkey
