#pragma once

#include "controls/Controls.h"

#include <array>

class QAction;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QStatusBar;
class QToolButton;

namespace zrk {

class AddressTree;
class ConsoleTools;
class ConsoleView;
class ElidedLabel;
class FileNameEdit;
class PortList;
class ScreenView;

/// The controls of one slot, in a row.
struct SlotWidgets {
    QCheckBox* chkExeURK = nullptr;
    QLabel* lblFileChanged = nullptr;
    FileNameEdit* txtFilNam = nullptr;
    QPushButton* cmdBrowse = nullptr;
    QLabel* lblStart = nullptr;
    QLineEdit* txtStartAddress = nullptr;
    QLabel* lblSize = nullptr;
    QLabel* lblCodeSize = nullptr;
};

/// The main window's widgets by their controls' names; the window owns them.
struct LoaderWidgets {
    QLabel* lblHeader = nullptr;
    QGroupBox* fraFlashLdr = nullptr;
    QGroupBox* fraExecutables = nullptr;
    QGroupBox* fraImages = nullptr;
    std::array<SlotWidgets, kSlotCount> slots;

    QPushButton* cmdPrgFlash = nullptr;
    QCheckBox* chkErase = nullptr;
    QLabel* lblFlashTime = nullptr; ///< bytes and seconds of programming the chosen image
    QPushButton* cmdStartPrimary = nullptr;
    QPushButton* cmdStartSecondary = nullptr;
    QPushButton* cmdURK = nullptr;

    QGroupBox* fraComPort = nullptr;
    PortList* cmbComPort = nullptr;
    QLabel* lblState = nullptr;
    QPushButton* cmdTerminal = nullptr;
    QPushButton* cmdCancel = nullptr;

    AddressTree* lvwAdrs = nullptr;
    QPushButton* cmdValidateAdrs = nullptr;
    QToolButton* tglDebug = nullptr; ///< unfolds the debug send pair
    QPushButton* cmdOutput = nullptr;
    QLineEdit* txtOut = nullptr;

    QGroupBox* fraControl = nullptr;
    ConsoleView* txtStatus = nullptr;
    ScreenView* scrStatus = nullptr; ///< in its place while the terminal is shown
    ConsoleTools* consoleTools = nullptr;

    QStatusBar* staStatus = nullptr;
    ElidedLabel* firstPanel = nullptr;
    QLabel* secondPanel = nullptr;
    QLabel* lblMuted = nullptr; ///< at the end of the first panel, in DebugMode
    QProgressBar* pgbDownload = nullptr;

    QAction* mnuLoadIni = nullptr;
    QAction* mnuWriteIni = nullptr;
    QAction* mnuExecScript = nullptr;
    QAction* mnuExit = nullptr;
    QAction* mnuOpenIni = nullptr;
    QAction* mnuRecentIni = nullptr;
    QAction* mnuSaveIniAs = nullptr;
    QAction* mnuLogToFile = nullptr;
    QAction* mnuLogTimes = nullptr;
    QAction* mnuRecordTrace = nullptr;
    QAction* mnuAbout = nullptr;
    QAction* mnuFile = nullptr;
};

/// Makes a widget with its control's name, by which tests and accessibility tools find it.
template <typename W>
W* named(W* widget, const QString& objectName) {
    widget->setObjectName(objectName);
    return widget;
}

/// Returns the name of a control of an array, for example "chkExeURK_0".
inline QString arrayName(const char* name, std::size_t index) {
    return QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(index);
}

} // namespace zrk
