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
#include "script/MemoryCheck.h"
#include "script/ScriptRunner.h"
#include "serial/Link.h"

namespace zrk {

class EventLoop;
class FileDialog;
class MessageBoxes;
class SerialPorts;
class WaitDialogView;

/// What a loader needs from the program around it; all of it must outlive the loader.
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
/// A loader lives on one thread: it is made, used and destroyed there, and its event loop is that thread's.
/// Its operations nest turns of that loop, so of two loaders on one thread the one that waits last would have
/// to end first. Several boards are several threads. A window binds only a loader of its own thread; whoever
/// collects from others has copies posted to it, because controls and state have no locks.
struct Loader : Link {
    /// Relative image paths start at `imageFolder`.
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
    MemoryCheck memoryCheck;

    StartUp startUp;
    Activity activity;
};

} // namespace zrk
