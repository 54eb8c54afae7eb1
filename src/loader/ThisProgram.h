#pragma once

#include "platform/ProgramFacts.h"

namespace zrk {

/// The running program's folder and the user's configuration folder for it (with the system's separators),
/// name and version. Needs the QCoreApplication.
[[nodiscard]] ProgramFacts programFacts();

/// Where the configuration file is, and where relative image paths and the file dialogs start.
struct IniChoice {
    QString path;
    QString folder;
    QString alsoSought = {}; ///< the user's file, when neither that nor `path` holds anything; else empty
};

/// The file that an option names, which may be relative. With "" the one beside the program, or else the one
/// in the user's configuration folder; where neither holds anything, the path beside the program.
[[nodiscard]] IniChoice chooseIni(const QString& option, const ProgramFacts& facts);

/// The version as users write it, for example "0.7.34".
[[nodiscard]] QString versionText();

} // namespace zrk
