#pragma once

#include "support/Exchanges.h"

namespace zrktest {

inline const QByteArray kAck = hex("02 0A 00 00 00 06 06 17 00 03");
inline const QByteArray kVersion = hex("02 10 00 00 00 99") + "sim 1.0" + hex("12 34 56");
inline const QByteArray kPgSibl = hex("00 00 00 00  04 00 00 00  50 00 47 FF");
inline const QByteArray kVersionRequest = hex("02 0A 00 00 00 A6 A6 00 00 03");
inline const QByteArray kHeader =
    hex("02 18 00 00 00 AE  00 00 02 00  05 00 00 00  03 00 00 00  01 00 01  00 00 03");
inline const QByteArray kImage = hex("02 03 00 FF AF");
inline const QByteArray kData = hex("02 0E 00 00 00 AF") + kImage + hex("00 00 03");
inline const QByteArray kEndOfData = hex("02 0C 00 00 00 A3 A3 00 00 00 00 03");
inline const QByteArray kComplete = hex("02 0A 00 00 00 B1 B1 00 00 03");

/// A rig with both flash slots filled, full erase ticked, and a board without faults.
struct FlashRig : ScriptedRig {
    FlashRig() {
        bench.fill(6, kPgSibl.mid(8), QStringLiteral("0x0000"));
        bench.fill(5, kImage, QStringLiteral("0x00020000"));
        loader.controls.chkErase.Value = 1;
        bench.setButtons(QStringLiteral("1111"));
        port.steps = {{"", "5"},
                      {"A", "5"},
                      {"U3", "R"},
                      {kPgSibl + "F", "F"},
                      {"S" + kVersionRequest, kVersion},
                      {kHeader, kAck},
                      {kData, kAck},
                      {kEndOfData, kAck},
                      {kComplete, kAck}};
    }

    void start() { loader.flash.cmdPrgFlash_Click(); }
    [[nodiscard]] zrk::Outcome outcome() const { return loader.operation.outcome(); }

    /// Returns what the loader writes up to the answer of a step.
    [[nodiscard]] QByteArray sentUpTo(std::size_t step) const {
        QByteArray sent;
        for (std::size_t i = 0; i <= step; ++i)
            sent += port.steps[i].when;
        return sent;
    }

    /// Returns what the console shows while the answer of a step is awaited; 9 is the end.
    [[nodiscard]] static QString textsUpTo(qsizetype step) {
        const QStringList texts =
            bringUpTexts().mid(0, 3) +
            QStringList{("R .. found!\nSending startaddress .. done!\nSending size .. done!\n"
                         "Sending code .. done!\nSending 'F' .. done!\nExpect 'F' .. "),
                        ("F .. found!\nSending 'S' .. done!\nSending VERSION REQUEST .. done!\n"
                         "Reading VERSION INFORMATION frame .. "),
                        ("<2>>sim 1.0< done!\nSending NAND FLASH HEADER frame .. "
                         "(ERASING FLASH) .. get ACK .. "),
                        "done!\nSending NAND FLASH DATA frame .. get ACK .. ",
                        "done!\nSending END-OF-DATA frame .. get ACK .. ",
                        "done!\nSending NAND FLASH COMPLETE.. get ACK .. ",
                        "done!\n"};
        return texts.mid(0, step + 1).join(QString());
    }

    /// Checks the end of a failed run.
    void expectAborted(bool flashUnknown) {
        EXPECT_TRUE(bench.console().endsWith(kAborted));
        EXPECT_EQ(bench.buttons(), "1111");
        EXPECT_EQ(loader.state.FlashStateUnknown, flashUnknown);
        bench.expectAtRest();
        EXPECT_EQ(loader.controls.staStatus.FirstPanel.value().startsWith(
                      "The flash contents are in an unknown state: program the flash again. "),
                  flashUnknown)
            << "the worst comes first";
        if (flashUnknown) {
            EXPECT_EQ(loader.controls.staStatus.FirstPanelSeverity, zrk::RemarkSeverity::Failed);
        }
    }
};

} // namespace zrktest
