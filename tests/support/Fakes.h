#pragma once

#include "boot/WaitDialog.h"
#include "boot/WaitDialogView.h"
#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"
#include "platform/PortCatalog.h"

#include <QStringList>

#include <functional>

namespace zrktest {

/// Message boxes that are answered by the test.
class RecordingBoxes final : public zrk::MessageBoxes {
  public:
    /// Acts for the user in the n-th box (from 1), as far as the event loop allows.
    std::function<zrk::Answer(int n)> user;

    /// The boxes as "[title] ! prompt", with "!", "i" or "?" for the icon, "yes/no" after it for such a box.
    QStringList shown;

    zrk::Answer show(const zrk::MessageBox& box) override {
        static constexpr const char* kIcons[]{"!", "i", "?"};
        const bool yesNo = box.buttons == zrk::MessageButtons::YesNo;
        shown += QStringLiteral("[%1] %2%3 %4")
                     .arg(box.title, QLatin1String(kIcons[static_cast<int>(box.icon)]),
                          QLatin1String(yesNo ? " yes/no" : ""),
                          QString(box.prompt).replace(QLatin1String("\r\n"), QLatin1String("\n")));
        if (user)
            return user(static_cast<int>(shown.size()));
        return yesNo ? zrk::Answer::No : zrk::Answer::Ok;
    }
};

class FakeFileDialog final : public zrk::FileDialog {
  public:
    QString choice; ///< what the user picks; empty: cancelled
    QList<zrk::FileRequest> requests;

    [[nodiscard]] QString openFile(const zrk::FileRequest& request) override {
        requests += request;
        return choice;
    }
};

class FakeWaitDialog final : public zrk::WaitDialogView {
  public:
    std::function<void(zrk::WaitDialog&)> whenShown;
    zrk::WaitDialog* open = nullptr;
    int timesShown = 0;
    bool counts = true;
    std::optional<std::chrono::milliseconds> reopening = {};

    [[nodiscard]] std::optional<std::chrono::milliseconds> reopeningLimit(const QString&) override {
        return reopening;
    }
    [[nodiscard]] bool countsBootId() const override { return counts; }
    void show(zrk::WaitDialog& dialog) override {
        open = &dialog;
        ++timesShown;
        if (whenShown)
            whenShown(dialog);
    }
    void hide() override { open = nullptr; }
};

/// A machine whose adapters the test plugs in and pulls.
struct FakeCatalog final : zrk::PortCatalog {
    std::vector<zrk::PortEntry> entries;
    [[nodiscard]] std::vector<zrk::PortEntry> ports() const override { return entries; }
};

} // namespace zrktest
