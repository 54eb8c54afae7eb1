#pragma once

#include <QString>

namespace zrk {

/// The program's own name, version and folders.
struct ProgramFacts {
    QString folder; ///< as the platform gives it, normally without a trailing separator
    QString name;   ///< file name without extension
    int major = 0;
    int minor = 0;
    int revision = 0;
    QString configFolder = {}; ///< the user's, for this program; empty: missing
};

} // namespace zrk
