#include "boot/ImageStore.h"

#include "controls/Controls.h"
#include "files/PrintableText.h"
#include "files/RegularFile.h"
#include "platform/RuntimeFailure.h"

#include <limits>

namespace zrk {

QByteArray readImage(const QString& path) {
    if (path.isEmpty())
        throw RuntimeFailure(FailureKind::File,
                             QStringLiteral("No image file has been chosen. Choose one first."));
    QFile file(path);
    if (const QString why = openForReading(file); !why.isEmpty())
        throw RuntimeFailure(FailureKind::File,
                             QStringLiteral("Cannot open the image file %1: %2. Choose the file again.")
                                 .arg(printableText(path), why));
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw RuntimeFailure(FailureKind::File,
                             QStringLiteral("Cannot read the image file %1: %2. Choose the file again.")
                                 .arg(printableText(path), file.errorString()));
    return content;
}

void requireSendable(const Controls& controls, int slot) {
    constexpr std::int64_t kMostBytes = std::numeric_limits<std::int32_t>::max();
    const auto i = static_cast<std::size_t>(slot);
    const std::int64_t size = controls.sizeInBytes(i).value_or(0);
    if (size > kMostBytes)
        throw RuntimeFailure(FailureKind::File,
                             QStringLiteral("The image for \"%1\" has %2 bytes, more than the %3 that can be "
                                            "sent. Choose another file.")
                                 .arg(controls.slotTitle(i))
                                 .arg(size)
                                 .arg(kMostBytes));
}

QByteArray ImageStore::image(const QString& path) {
    const std::scoped_lock lock(m_mutex);
    const auto known = m_images.constFind(path);
    return known != m_images.cend() ? *known : *m_images.insert(path, readImage(path));
}

} // namespace zrk
