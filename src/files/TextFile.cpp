#include "files/TextFile.h"

#include "files/RegularFile.h"

namespace zrk {

TextFile readTextFile(const QString& path) {
    using Fault = TextFile::Fault;
    QFile file(path);
    if (QString why = openForReading(file); !why.isEmpty())
        return {{}, Fault::NotOpened, std::move(why)};
    QByteArray bytes = file.read(TextFile::kMostBytes + 1); // its size may change meanwhile
    if (file.error() != QFileDevice::NoError)
        return {{}, Fault::NotRead, file.errorString()};
    if (bytes.size() > TextFile::kMostBytes)
        return {{}, Fault::TooLong, QStringLiteral("it has more than 1 MiB")};
    return {std::move(bytes), Fault::None, {}};
}

} // namespace zrk
