#pragma once

#include "loader/Loader.h"
#include "support/Fakes.h"
#include "support/ScriptedPort.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QByteArray& bytes, std::ostream* out) {
    *out << bytes.toHex(' ').toStdString();
}

namespace zrk {
inline void PrintTo(Outcome outcome, std::ostream* out) {
    *out << "Outcome " << static_cast<int>(outcome);
}
} // namespace zrk

namespace zrktest {

using namespace std::chrono_literals;

/// Returns the bytes of a text like "02 0A 00".
inline QByteArray hex(const char* digits) {
    return QByteArray::fromHex(digits);
}

/// Returns the text with CR LF as a line end and every other control character as its code in angle brackets.
[[nodiscard]] QString readable(const QString& text);

/// A loader with everything around it, prepared as at start-up, over a port.
struct Rig {
    Rig(VirtualEventLoop& eventLoop, LinePort& linePort);

    /// Gives the slot a file with this content, this address, and selects it.
    void fill(int slot, const QByteArray& content, const QString& address);

    /// Writes a file into the image folder; returns its path.
    [[nodiscard]] QString file(const QString& name, const QByteArray& content) const;

    [[nodiscard]] QString console() const { return readable(loader.controls.txtStatus.text()); }

    /// Returns cmdStartPrimary, cmdURK, cmdStartSecondary, cmdPrgFlash: "1" enabled, "0" not.
    [[nodiscard]] QString buttons() const;
    void setButtons(const QString& enabled);

    /// Checks that each byte that was written so far had a write of its own.
    void expectBytesWrittenOneByOne() const;

    /// Checks that the port is closed and shown so, no operation is active, terminal mode is off, the wait
    /// dialog is gone, and nothing comes up later.
    void expectAtRest();

    VirtualEventLoop& loop;
    LinePort& port;
    RecordingBoxes boxes;
    FakeFileDialog fileDialog;
    FakeWaitDialog waitDialog;
    QTemporaryDir folder;
    zrk::Loader loader;
    bool failsBeforeItBegins = false; ///< the operation under test, so nothing shows it as active

  private:
    void lookAround(const QString& text) const;
};

/// Returns a path as the programs' own inputs give it: with the system's separators.
[[nodiscard]] inline QString native(const QString& path) {
    return QDir::toNativeSeparators(path);
}

/// A bench over a scripted port, for tests that need many of them.
struct ScriptedRig {
    VirtualEventLoop loop;
    ScriptedPort port{loop};
    Rig bench{loop, port};
    zrk::Loader& loader = bench.loader;
};

class ScriptedTest : public ::testing::Test, protected ScriptedRig {};

} // namespace zrktest
