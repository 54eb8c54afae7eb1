#include "machine/DetachedStarter.h"

#include <QFileInfo>
#include <QProcess>

namespace zrk {

bool DetachedStarter::start(const QString& path) {
    // A bare name would be searched for along the system's path.
    return QFileInfo(path).isAbsolute() && QProcess::startDetached(path, QStringList());
}

} // namespace zrk
