#pragma once

#include "files/SystemCodePage.h"

#include <QList>
#include <QString>

#include <optional>

namespace zrk {

/// A line of the configuration file that begins a section or gives a key.
struct IniEntry {
    int line = 0;               ///< 1 for the first
    QString section;            ///< empty in front of the first section
    std::optional<QString> key; ///< none where a section begins
    QString value;              ///< whole; empty where a section begins
};

/// A value as the loader takes it.
struct IniValue {
    QString text;
    bool isCut = false; ///< the file holds a longer text
};

/// The configuration file as it was when it was read. One that cannot be read counts as empty.
///
/// Lines that begin with ";" or "#" are comments. The text is what its byte order mark says; without one it
/// is UTF-8, or `codePage` reads it where it is not valid UTF-8.
class IniFile {
  public:
    explicit IniFile(const QString& path, CodePage codePage = systemCodePageText);

    /// The value of a key, or "" when the section or the key is missing. Sections and keys match without
    /// regard to case; the first match counts. The value is the text behind "=" without surrounding blanks,
    /// without a pair of quotes around the whole, and cut to 254 characters.
    [[nodiscard]] IniValue value(const QString& section, const QString& key) const;

    /// In the order of the file.
    [[nodiscard]] const QList<IniEntry>& entries() const { return m_entries; }

    /// False when the file holds characters that no text has.
    [[nodiscard]] bool isText() const { return m_isText; }
    /// The file is longer than TextFile::kMostBytes and was not read.
    [[nodiscard]] bool isTooLong() const { return m_isTooLong; }

  private:
    QList<IniEntry> m_entries;
    bool m_isText = true;
    bool m_isTooLong = false;
};

/// The text of one value of a file that is read for it.
[[nodiscard]] QString GetIniValue(const QString& iniPath, const QString& section, const QString& key);

} // namespace zrk
