#include "config/IniFile.h"

#include "files/RegularFile.h"

#include <QStringDecoder>
#include <QStringList>

namespace zrk {
namespace {

constexpr qsizetype kMaxValueLength = 254;

QString readText(const QString& path, CodePage codePage) {
    QFile file(path);
    if (!openForReading(file).isEmpty())
        return {};
    const QByteArray bytes = file.readAll();
    // Stateless: a character that the end of the file cuts off is an error, not a wait for more.
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8), QStringConverter::Flag::Stateless);
    QString text = decoder(bytes);
    if (!marked && decoder.hasError())
        text = codePage(bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

bool isComment(const QString& line) {
    return line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#'));
}

QString withoutQuotes(const QString& value) {
    if (value.size() < 2 || value.front() != value.back())
        return value;
    const bool quoted = value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\'');
    return quoted ? value.mid(1, value.size() - 2) : value;
}

/// A line that means something, and the value of a key.
struct Entry {
    IniName name;
    QString value;
};

QList<Entry> entriesOf(const QString& text) {
    QList<Entry> entries;
    QString section;
    int number = 0;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& rawLine : lines) {
        ++number;
        const QString line = rawLine.trimmed();
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (line.startsWith(QLatin1Char('['))) {
            const qsizetype end = line.indexOf(QLatin1Char(']'));
            section = end < 0 ? line : line.mid(1, end - 1).trimmed(); // without its end it is no known one
            entries.append({{number, section, std::nullopt}, QString()});
        } else if (!isComment(line) && equals >= 0) {
            entries.append({{number, section, line.left(equals).trimmed()},
                            withoutQuotes(line.mid(equals + 1).trimmed())});
        }
    }
    return entries;
}

} // namespace

IniNames readIniNames(const QString& iniPath, CodePage codePage) {
    const QString text = readText(iniPath, codePage);
    IniNames found;
    found.isText = !text.contains(QChar(u'\0'));
    const QList<Entry> entries = entriesOf(text);
    for (const Entry& entry : entries)
        found.names.append(entry.name);
    return found;
}

IniValue readIniValue(const QString& iniPath, const QString& section, const QString& key, CodePage codePage) {
    bool inSection = false;
    const QList<Entry> entries = entriesOf(readText(iniPath, codePage));
    for (const Entry& entry : entries) {
        if (!entry.name.key) {
            if (inSection)
                return {};
            inSection = entry.name.section.compare(section, Qt::CaseInsensitive) == 0;
        } else if (inSection && entry.name.key->compare(key, Qt::CaseInsensitive) == 0) {
            return {entry.value.left(kMaxValueLength), entry.value.size() > kMaxValueLength};
        }
    }
    return {};
}

QString GetIniValue(const QString& iniPath, const QString& section, const QString& key) {
    return readIniValue(iniPath, section, key).text;
}

} // namespace zrk
