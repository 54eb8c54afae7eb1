#include "config/IniFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QStringList>

namespace zrk {
namespace {

constexpr qsizetype kMaxValueLength = 254;

QString readText(const QString& path) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    // Stateless: a character that the end of the file cuts off is an error, not a wait for more.
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    if (utf8.hasError())
        text = QString::fromLatin1(bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

bool isComment(const QString& line) {
    return line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#'));
}

/// "[name]" gives name; anything else a null text.
QString sectionName(const QString& line) {
    if (!line.startsWith(QLatin1Char('[')))
        return {};
    const qsizetype end = line.indexOf(QLatin1Char(']'));
    return end < 0 ? QString() : line.mid(1, end - 1).trimmed();
}

QString withoutQuotes(const QString& value) {
    if (value.size() < 2 || value.front() != value.back())
        return value;
    const bool quoted = value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\'');
    return quoted ? value.mid(1, value.size() - 2) : value;
}

} // namespace

QString GetIniValue(const QString& iniPath, const QString& section, const QString& key) {
    bool inSection = false;
    const QStringList lines = readText(iniPath).split(QLatin1Char('\n'));
    for (const QString& rawLine : lines) {
        const QString line = rawLine.trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            if (inSection)
                return {};
            inSection = sectionName(line).compare(section, Qt::CaseInsensitive) == 0;
            continue;
        }
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (!inSection || isComment(line) || equals < 0)
            continue;
        if (line.left(equals).trimmed().compare(key, Qt::CaseInsensitive) == 0)
            return withoutQuotes(line.mid(equals + 1).trimmed()).left(kMaxValueLength);
    }
    return {};
}

} // namespace zrk
