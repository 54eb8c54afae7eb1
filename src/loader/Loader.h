#pragma once

#include "boot/BootRomHandshake.h"
#include "boot/BringUp.h"
#include "boot/ImageCommands.h"
#include "boot/ImageTransfer.h"
#include "config/AddressEntry.h"
#include "config/AddressValidation.h"
#include "config/FileChoice.h"
#include "config/ImageSlots.h"
#include "config/IniLoader.h"
#include "flash/FlashProgramming.h"
#include "loader/Activity.h"
#include "loader/StartUp.h"
#include "script/BoardListener.h"
#include "script/BoardWatch.h"
#include "script/MemoryCheck.h"
#include "script/ScriptRunner.h"
#include "serial/Link.h"

namespace zrk {

class EventLoop;
class FileDialog;
class MessageBoxes;
class SerialPorts;
class WaitDialogView;

/// The parts of the program that a loader needs; all of them must outlive the loader.
struct LoaderSurroundings {
    EventLoop& loop;
    SerialPorts& ports;
    MessageBoxes& boxes;
    FileDialog& fileDialog;
    WaitDialogView& waitDialog;
};

/// One whole loader: state, controls and the handlers that act on them, wired together. A program
/// makes one, binds its window or its options to `controls`, and calls the handlers by their names.
///
///     Loader loader({loop, ports, boxes, fileDialog, waitDialog}, imageFolder);
///     loader.startUp.prepare(programFacts());
///     loader.controls.cmbComPort.ListIndex = 0;          // COM1
///     loader.imageSlots.fill(kPrimaryBoot, path);
///     loader.bringUp.cmdStartPrimary_Click();            // yields until the operation has ended
///     if (loader.operation.outcome() != Outcome::Done)
///         report(loader.operation.failure());
///
/// A loader lives on one thread: it is made, used and destroyed there, and its event loop is that thread's.
/// Its operations nest turns of that loop, so of two loaders on one thread the one that waits last would have
/// to end first. Several boards need several threads. A window binds only a loader of its own thread; other
/// threads get posted copies, because controls and state have no locks.
struct Loader : Link {
    /// Resolves relative image paths from `imageFolder`.
    Loader(const LoaderSurroundings& surroundings, const QString& imageFolder);

    [[nodiscard]] const Paths& paths() const { return imageSlots.paths(); }

    ImageSlots imageSlots;
    AddressEntry addresses;
    AddressValidation validation;
    IniLoader iniLoader;
    FileChoice fileChoice;

    BootRomHandshake handshake;
    ImageTransfer transfer;
    ImageCommands commands;
    BringUp bringUp;
    FlashProgramming flash;
    ScriptRunner script;
    BoardListener listener;
    BoardWatch watch;
    MemoryCheck memoryCheck;

    StartUp startUp;
    Activity activity;
};

} // namespace zrk
