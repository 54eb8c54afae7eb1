#include "loader/ThisProgram.h"

#include "config/Paths.h"
#include "loader/Version.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace zrk {

ProgramFacts programFacts() {
    ProgramFacts facts;
    facts.folder = QDir::toNativeSeparators(QCoreApplication::applicationDirPath());
    facts.name = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    if (!config.isEmpty())
        facts.configFolder = QDir::toNativeSeparators(config + QStringLiteral("/zrk-loader"));
    facts.major = kVersionMajor;
    facts.minor = kVersionMinor;
    facts.revision = kVersionRevision;
    return facts;
}

IniChoice chooseIni(const QString& option, const ProgramFacts& facts) {
    if (!option.isEmpty()) {
        const QFileInfo file(option);
        return {QDir::toNativeSeparators(file.absoluteFilePath()),
                QDir::toNativeSeparators(file.absolutePath())};
    }
    const auto in = [&](const QString& folder) {
        return IniChoice{Paths(folder).joined(facts.name + QStringLiteral(".INI")), folder};
    };
    IniChoice beside = in(facts.folder);
    if (facts.configFolder.isEmpty() || FileExists(beside.path, true))
        return beside;
    IniChoice ofUser = in(facts.configFolder);
    if (FileExists(ofUser.path, true))
        return ofUser;
    beside.alsoSought = ofUser.path;
    return beside;
}

QString versionText() {
    return QString::fromLatin1(kVersionText);
}

} // namespace zrk
