#include "loader/ThisProgram.h"

#include "config/Paths.h"
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

IniChoice chooseIni(const QString& option, const ProgramFacts& facts) {
    if (option.isEmpty())
        return {Paths(facts.folder).joined(facts.name + QStringLiteral(".INI")), facts.folder};
    const QFileInfo file(option);
    return {QDir::toNativeSeparators(file.absoluteFilePath()), QDir::toNativeSeparators(file.absolutePath())};
}

QString versionText() {
    return QString::fromLatin1(kVersionText);
}

} // namespace zrk
