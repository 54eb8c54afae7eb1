#include "cli/RunFacts.h"

#include "boot/ImageStore.h"
#include "loader/Loader.h"
#include "machine/SystemPorts.h"

#include <boost/crc.hpp>

namespace zrk {
namespace {

QJsonObject imageOf(const Controls& controls, Slot slot, ImageStore& store) {
    const auto i = static_cast<std::size_t>(slot);
    const QString path = controls.txtFilNam[i].Tag;
    const QByteArray content = store.image(path);
    SentImage image;
    boost::crc_32_type sum;
    sum.process_bytes(content.constData(), static_cast<std::size_t>(content.size()));
    image.crc32 = sum.checksum();
    return {{QStringLiteral("slot"), QLatin1String(kSlots[i].option)},
            {QStringLiteral("image"), controls.slotTitle(i)},
            {QStringLiteral("file"), path},
            {QStringLiteral("memory"), memoryName(kSlots[i].memory)},
            {QStringLiteral("address"), controls.txtStartAddress[i].Text.value()},
            {QStringLiteral("bytes"), content.size()},
            {QStringLiteral("crc32"), image.crcText()}};
}

} // namespace

QJsonArray imagesOf(const Loader& loader, const std::vector<Slot>& slots, ImageStore& store) {
    QJsonArray images;
    for (const Slot slot : slots)
        images.append(imageOf(loader.controls, slot, store));
    return images;
}

QJsonArray stepsToDo(const StepList& steps) {
    QJsonArray list;
    for (const StepCall& step : steps)
        list.append(QJsonObject{{QStringLiteral("step"), QLatin1String(step.facts->name)},
                                {QStringLiteral("argument"), step.argument}});
    return list;
}

QJsonObject adapterOf(const QString& device) {
    PortEntry found;
    for (const PortEntry& port : device.isEmpty() ? std::vector<PortEntry>() : installedPorts(PortPlaces())) {
        if (isSameDevice(port.device, device))
            found = port;
    }
    return {{QStringLiteral("adapter"), found.adapter}, {QStringLiteral("serial"), found.serialNumber}};
}

QString memoryName(Memory memory) {
    switch (memory) {
    case Memory::Iram:
        return QStringLiteral("IRAM");
    case Memory::Sdram:
        return QStringLiteral("SDRAM");
    case Memory::Nand:
        break;
    }
    return QStringLiteral("NAND flash");
}

} // namespace zrk
