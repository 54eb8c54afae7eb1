#pragma once

#include "fuzz/Fuzz.h"
#include "loader/Loader.h"
#include "support/Fakes.h"
#include "support/ScriptedPort.h"

#include <QTemporaryDir>

#include <functional>

namespace zrkfuzz {

/// Returns a folder of this process, which is removed at its end.
[[nodiscard]] const QTemporaryDir& folder();

/// Writes a file into it; returns its path.
QString writeFile(const char* name, const QByteArray& content);

/// A whole loader on virtual time over a scripted port, with a user who closes every box.
struct LoaderUnderFuzz {
    LoaderUnderFuzz();

    /// Gives a slot a file with this content, and this address.
    void fill(int slot, const QByteArray& content, const QString& address);

    /// Runs an action that must end by itself or after a cancel at `cancelAt`, throw nothing and leave
    /// nothing running.
    void carryOut(const std::function<void()>& what, zrksim::Duration cancelAt);

    zrksim::VirtualEventLoop loop;
    zrktest::ScriptedPort port{loop};
    zrktest::RecordingBoxes boxes;
    zrktest::FakeFileDialog fileDialog;
    zrktest::FakeWaitDialog waitDialog;
    zrk::Loader loader{{loop, port, boxes, fileDialog, waitDialog}, folder().path()};
};

} // namespace zrkfuzz
