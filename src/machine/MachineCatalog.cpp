#include "machine/MachineCatalog.h"

#include "machine/NetworkAddress.h"

#include <algorithm>

namespace zrk {
namespace {

PortEntry* entryOf(std::vector<PortEntry>& ports, const QString& device) {
    const auto found = std::find_if(ports.begin(), ports.end(), [&device](const PortEntry& port) {
        return isSameDevice(port.device, device);
    });
    return found == ports.end() ? nullptr : &*found;
}

PortEntry& entryNamed(std::vector<PortEntry>& ports, const QString& device) {
    if (PortEntry* entry = entryOf(ports, device))
        return *entry;
    ports.emplace_back().device = device;
    return ports.back();
}

int rankOf(const PortEntry& port) {
    return port.numbers.empty() ? PortNames::kHighest + 1 : port.numbers.front();
}

} // namespace

MachineCatalog::MachineCatalog(PortNames names, QStringList more, PortPlaces places)
    : m_names(std::move(names)), m_more(std::move(more)), m_places(std::move(places)) {}

std::vector<PortEntry> MachineCatalog::ports() const {
    std::vector<PortEntry> ports = installedPorts(m_places);
    for (int number = PortNames::kLowest; number <= PortNames::kHighest; ++number) {
        const QString device = m_names.device(number);
        if (device.isEmpty())
            continue;
        // A number of a place without a port shows nothing.
        PortEntry* entry = m_names.isNamed(number) ? &entryNamed(ports, device) : entryOf(ports, device);
        if (entry != nullptr)
            entry->numbers.push_back(number);
    }
    for (const QString& device : m_more)
        (void)entryNamed(ports, device);
    std::stable_sort(ports.begin(), ports.end(), [](const PortEntry& one, const PortEntry& other) {
        return rankOf(one) < rankOf(other);
    });
    const auto onNetwork = std::stable_partition(
        ports.begin(), ports.end(), [](const PortEntry& port) { return !isOnNetwork(port.device); });
    std::vector<PortEntry> far(onNetwork, ports.end());
    ports.erase(onNetwork, ports.end());
    inspectPorts(ports, m_places);
    ports.insert(ports.end(), far.begin(), far.end());
    return ports;
}

} // namespace zrk
