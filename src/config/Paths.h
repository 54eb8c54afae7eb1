#pragma once

#include <QDir>
#include <QString>

namespace zrk {

/// How the texts of the INI file become paths, and how paths are split for display.
/// Where the separator is "/", a path of the file may use either separator.
class Paths {
  public:
    /// Relative paths start at `folder`. The separator is a parameter so that both kinds of system
    /// can be checked on either.
    explicit Paths(QString folder, QChar separator = QDir::separator());

    [[nodiscard]] const QString& folder() const { return m_folder; }

    /// An absolute path as it stands (a drive letter; where the separator is "/", also a leading "/"),
    /// any other joined to the folder.
    [[nodiscard]] QString ResolvePath(const QString& path) const;

    /// The part behind the last separator, the whole text when there is none.
    [[nodiscard]] QString FileNameOf(const QString& path) const;

    /// The part up to and including the last separator, empty when there is none.
    [[nodiscard]] QString FolderOf(const QString& path) const;

    /// folder + separator + name.
    [[nodiscard]] QString joined(const QString& name) const { return m_folder + m_separator + name; }

  private:
    [[nodiscard]] qsizetype nameStart(const QString& path) const;

    QString m_folder;
    QChar m_separator;
};

/// True when the file can be opened for reading and, if `rejectEmpty`, holds at least one byte.
[[nodiscard]] bool FileExists(const QString& path, bool rejectEmpty);

} // namespace zrk
