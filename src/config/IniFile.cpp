#include "config/IniFile.h"

#include "files/TextFile.h"

#include <QStringDecoder>
#include <QStringList>

namespace zrk {
namespace {

constexpr qsizetype kMaxValueLength = 254;

QString textOf(const QByteArray& bytes, CodePage codePage) {
    // Stateless: an incomplete character at the end of the file is an error, not a wait for more.
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

} // namespace

IniFile::IniFile(const QString& path, CodePage codePage) {
    const TextFile file = readTextFile(path);
    m_isTooLong = file.fault == TextFile::Fault::TooLong;
    const QString text = textOf(file.bytes, codePage);
    m_isText = !text.contains(QChar(u'\0'));
    QString section;
    int number = 0;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& rawLine : lines) {
        ++number;
        const QString line = rawLine.trimmed();
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (line.startsWith(QLatin1Char('['))) {
            const qsizetype end = line.indexOf(QLatin1Char(']'));
            section = end < 0 ? line : line.mid(1, end - 1).trimmed(); // a section without its end is unknown
            m_entries.append({number, section, std::nullopt, QString()});
        } else if (!isComment(line) && equals >= 0) {
            m_entries.append({number, section, line.left(equals).trimmed(),
                              withoutQuotes(line.mid(equals + 1).trimmed())});
        }
    }
}

IniValue IniFile::value(const QString& section, const QString& key) const {
    bool inSection = false;
    for (const IniEntry& entry : m_entries) {
        if (!entry.key) {
            if (inSection)
                return {};
            inSection = entry.section.compare(section, Qt::CaseInsensitive) == 0;
        } else if (inSection && entry.key->compare(key, Qt::CaseInsensitive) == 0) {
            return {entry.value.left(kMaxValueLength), entry.value.size() > kMaxValueLength};
        }
    }
    return {};
}

QString GetIniValue(const QString& iniPath, const QString& section, const QString& key) {
    return IniFile(iniPath).value(section, key).text;
}

} // namespace zrk
