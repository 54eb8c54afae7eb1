#pragma once

#include <QList>
#include <QString>

namespace zrk {

struct FileFilter {
    QString name;    ///< as shown, for example "Script Files (.scr)"
    QString pattern; ///< for example "*.scr"
};

struct FileRequest {
    QString title;
    QList<FileFilter> filters;
    int filterIndex = 1; ///< the preselected entry, counted from 1
    QString folder;      ///< where the dialog starts
    /// Whether a new file is allowed; an existing one is overwritten once the user has agreed to that.
    bool isToBeWritten = false;
    QString name = {}; ///< proposed for a new file
};

/// A dialog that chooses a file. Modal; it yields while it is open.
class FileDialog {
  public:
    virtual ~FileDialog() = default;

    /// Returns the full path with the system's separators; "" if the dialog was cancelled. Yields.
    [[nodiscard]] virtual QString openFile(const FileRequest& request) = 0;
};

} // namespace zrk
