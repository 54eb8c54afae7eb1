#pragma once

#include "platform/ProgramFacts.h"

namespace zrk {

/// Returns the running program's folder and the user's configuration folder for it (with the system's
/// separators), name and version. Needs the QCoreApplication.
[[nodiscard]] ProgramFacts programFacts();

/// The configuration file, and the start of relative image paths and file dialogs.
struct IniChoice {
    QString path;
    QString folder;
    QString alsoSought = {}; ///< the user's file, if both it and `path` are missing or empty; else empty
};

/// Chooses the file that an option names, which may be relative. With "" it chooses the one beside the
/// program, else the one in the user's configuration folder; if both are missing or empty, the former.
[[nodiscard]] IniChoice chooseIni(const QString& option, const ProgramFacts& facts);

/// Returns the version as users write it, for example "0.7.34".
[[nodiscard]] QString versionText();

} // namespace zrk
