#include "files/RegularFile.h"

#include <algorithm>

namespace zrk {

QString appendToRecord(QFile& file, const QByteArray& bytes) {
    const qint64 before = file.size();
    qint64 taken = file.write(bytes);
    if (taken > 0 && taken < bytes.size()) // after a short write the next one has the reason
        taken += std::max<qint64>(file.write(bytes.sliced(taken)), 0);
    if (taken == bytes.size())
        return {};
    QString why = file.errorString();
    const qint64 written = file.size() - before; // also where a failed write has written something
    if (written > 0)
        file.resize(before + bytes.lastIndexOf('\n', written - 1) + 1);
    return why;
}

} // namespace zrk
