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
};

/// Lets a person choose an existing file. Modal; the event loop runs while it is open.
class FileDialog {
  public:
    virtual ~FileDialog() = default;

    /// The full path with the system's separators; "" when the dialog was cancelled.
    [[nodiscard]] virtual QString openFile(const FileRequest& request) = 0;
};

} // namespace zrk
