#include "loader/ThisProgram.h"

#include "loader/Version.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace zrk {

ProgramFacts programFacts() {
    ProgramFacts facts;
    facts.folder = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
    facts.name = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    facts.major = kVersionMajor;
    facts.minor = kVersionMinor;
    facts.revision = kVersionRevision;
    return facts;
}

QString versionText() {
    return QString::fromLatin1(kVersionText);
}

} // namespace zrk
