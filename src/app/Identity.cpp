#include "app/Identity.h"

namespace zrk {

QString applicationTitle() {
    return QStringLiteral("ZRK6924 Loader");
}

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/icons/zrk-loader-%1.png").arg(size), QSize(size, size));
    return icon;
}

} // namespace zrk
