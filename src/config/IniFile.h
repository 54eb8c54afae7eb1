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
    std::optional<QString> key; ///< empty where a section begins
    QString value;              ///< whole; empty where a section begins
};

/// A value as the loader uses it.
struct IniValue {
    QString text;
    bool isCut = false; ///< the file holds a longer text
};

/// The configuration file at the time when it was read. An unreadable one counts as empty.
///
/// Lines that begin with ";" or "#" are comments. The byte order mark determines the encoding; without one
/// the text is UTF-8, or in `codePage` if it is not valid UTF-8.
class IniFile {
  public:
    explicit IniFile(const QString& path, CodePage codePage = systemCodePageText);

    /// Returns the value of a key, or "" if the section or the key is missing. Sections and keys match
    /// without regard to case; the first match counts. The value is the text after "=" without surrounding
    /// blanks, without a pair of quotes around the whole, and cut to 254 characters.
    [[nodiscard]] IniValue value(const QString& section, const QString& key) const;

    /// Returns the entries in the order of the file.
    [[nodiscard]] const QList<IniEntry>& entries() const { return m_entries; }

    /// Returns false if the file has bytes that are no text.
    [[nodiscard]] bool isText() const { return m_isText; }
    /// Returns whether the file is longer than TextFile::kMostBytes and was not read.
    [[nodiscard]] bool isTooLong() const { return m_isTooLong; }

  private:
    QList<IniEntry> m_entries;
    bool m_isText = true;
    bool m_isTooLong = false;
};

/// Reads the file for one value and returns its text.
[[nodiscard]] QString GetIniValue(const QString& iniPath, const QString& section, const QString& key);

} // namespace zrk
