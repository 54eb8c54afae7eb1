#pragma once

#include <QDir>
#include <QString>

namespace zrk {

/// The rules that make paths of the INI file's texts, and split paths for display. Where the separator is
/// "/", a path of the file may use either separator.
class Paths {
  public:
    /// Resolves relative paths from `folder`. The separator is a parameter so that both kinds of system can
    /// be checked on either.
    explicit Paths(QString folder, QChar separator = QDir::separator());

    [[nodiscard]] const QString& folder() const { return m_folder; }

    /// Returns an absolute path as it is (a drive letter; where the separator is "/", also a leading "/"),
    /// and joins any other to the folder.
    [[nodiscard]] QString ResolvePath(const QString& path) const;

    /// Returns the part after the last separator, the whole text if there is none.
    [[nodiscard]] QString FileNameOf(const QString& path) const;

    /// Returns the part up to and including the last separator, empty if there is none.
    [[nodiscard]] QString FolderOf(const QString& path) const;

    /// Returns folder + separator + name.
    [[nodiscard]] QString joined(const QString& name) const { return m_folder + m_separator + name; }

  private:
    [[nodiscard]] qsizetype nameStart(const QString& path) const;

    QString m_folder;
    QChar m_separator;
};

/// Returns whether the file can be opened for reading and, if `rejectEmpty`, holds at least one byte.
[[nodiscard]] bool FileExists(const QString& path, bool rejectEmpty);

} // namespace zrk
