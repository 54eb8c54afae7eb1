#include "files/SystemCodePage.h"

namespace zrk {

QString systemCodePageText(const QByteArray& bytes) {
    return QString::fromLatin1(bytes);
}

} // namespace zrk
