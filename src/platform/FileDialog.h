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
    /// A new file will do, and one that is there is written over once the person has agreed to that.
    bool isToBeWritten = false;
};

/// Lets a person choose a file. Modal; the event loop runs while it is open.
class FileDialog {
  public:
    virtual ~FileDialog() = default;

    /// The full path with the system's separators; "" when the dialog was cancelled.
    [[nodiscard]] virtual QString openFile(const FileRequest& request) = 0;
};

} // namespace zrk
