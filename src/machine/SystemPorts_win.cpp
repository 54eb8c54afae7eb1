#include "machine/SystemPorts.h"
#include "machine/UsbInstance.h"

#include <algorithm>
#include <array>
#include <windows.h>

// Their macros need the headers above.
#include <cfgmgr32.h>
#include <setupapi.h>

namespace zrk {
namespace {

constexpr GUID kPortInterface = {
    0x86E0D1E0, 0x8089, 0x11D0, {0x9C, 0xE4, 0x08, 0x00, 0x3E, 0x30, 0x1F, 0x73}};
constexpr GUID kPortClass = {0x4D36E978, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};
/// The adapter's own name; a driver's description is the same for all its devices.
constexpr DEVPROPKEY kOwnDescription = {
    {0x540B947E, 0x8B40, 0x45BC, {0xA8, 0xA2, 0x6A, 0x0B, 0x89, 0x4C, 0xBD, 0xA2}}, 4};
constexpr int kMostParents = 2; ///< a driver's bus and the adapter above it

using Text = std::array<wchar_t, 1024>;

/// Returns "COM3" for "\\.\COM3", too.
QString comName(const QString& device) {
    const QString prefix = QStringLiteral("\\\\.\\");
    return (device.startsWith(prefix) ? device.mid(prefix.size()) : device).toUpper();
}

/// The devices of a class, or those with an interface; released at the end.
class DeviceSet {
  public:
    DeviceSet(const GUID& guid, DWORD flags)
        : m_set(SetupDiGetClassDevsW(&guid, nullptr, nullptr, flags | DIGCF_PRESENT)) {}
    ~DeviceSet() {
        if (m_set != INVALID_HANDLE_VALUE)
            SetupDiDestroyDeviceInfoList(m_set);
    }
    DeviceSet(const DeviceSet&) = delete;
    DeviceSet& operator=(const DeviceSet&) = delete;

    /// Adds every port of the set that has a COM name.
    void addTo(std::vector<PortEntry>& ports) const {
        SP_DEVINFO_DATA device{};
        device.cbSize = sizeof device;
        for (DWORD i = 0; SetupDiEnumDeviceInfo(m_set, i, &device) != 0; ++i) {
            const QString name = portName(device);
            const bool isKnown = std::any_of(ports.cbegin(), ports.cend(), [&name](const PortEntry& one) {
                return isSameDevice(one.device, name);
            });
            if (name.startsWith(QLatin1String("COM")) && !isKnown)
                ports.push_back(entry(name, device));
        }
    }

  private:
    [[nodiscard]] QString portName(SP_DEVINFO_DATA& device) const {
        HKEY key = SetupDiOpenDevRegKey(m_set, &device, DICS_FLAG_GLOBAL, 0, DIREG_DEV, KEY_READ);
        if (key == INVALID_HANDLE_VALUE)
            return {};
        Text text{};
        DWORD size = sizeof text - sizeof(wchar_t);
        const auto result = RegQueryValueExW(key, L"PortName", nullptr, nullptr,
                                             reinterpret_cast<LPBYTE>(text.data()), &size);
        RegCloseKey(key);
        return result == ERROR_SUCCESS ? QString::fromWCharArray(text.data()).toUpper() : QString();
    }

    [[nodiscard]] QString property(SP_DEVINFO_DATA& device, DWORD which) const {
        Text text{};
        return SetupDiGetDeviceRegistryPropertyW(m_set, &device, which, nullptr,
                                                 reinterpret_cast<PBYTE>(text.data()),
                                                 sizeof text - sizeof(wchar_t), nullptr) != 0
                   ? QString::fromWCharArray(text.data())
                   : QString();
    }

    [[nodiscard]] QString ownDescription(SP_DEVINFO_DATA& device) const {
        Text text{};
        DEVPROPTYPE type = 0;
        return SetupDiGetDevicePropertyW(m_set, &device, &kOwnDescription, &type,
                                         reinterpret_cast<PBYTE>(text.data()), sizeof text - sizeof(wchar_t),
                                         nullptr, 0) != 0
                   ? QString::fromWCharArray(text.data())
                   : QString();
    }

    static QStringList instanceIds(const SP_DEVINFO_DATA& device) {
        QStringList ids;
        DEVINST instance = device.DevInst;
        Text text{};
        for (int i = 0; i <= kMostParents; ++i) {
            if (CM_Get_Device_IDW(instance, text.data(), static_cast<ULONG>(text.size()), 0) != CR_SUCCESS)
                break;
            ids.append(QString::fromWCharArray(text.data()));
            if (CM_Get_Parent(&instance, instance, 0) != CR_SUCCESS)
                break;
        }
        return ids;
    }

    [[nodiscard]] PortEntry entry(const QString& name, SP_DEVINFO_DATA& device) const {
        const UsbInstance usb = usbInstance(instanceIds(device));
        PortEntry port;
        port.device = QStringLiteral("\\\\.\\") + name;
        port.adapter = ownDescription(device);
        if (port.adapter.isEmpty())
            port.adapter = property(device, SPDRP_DEVICEDESC);
        port.manufacturer = property(device, SPDRP_MFG);
        port.serialNumber = usb.serialNumber;
        port.usbId = usb.usbId;
        return port;
    }

    HDEVINFO m_set;
};

/// Adds ports whose drivers report only their names, as those of virtual ports.
void addNamedPorts(std::vector<PortEntry>& ports) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"HARDWARE\\DEVICEMAP\\SERIALCOMM", 0, KEY_QUERY_VALUE, &key) !=
        ERROR_SUCCESS)
        return;
    Text name{};
    Text value{};
    for (DWORD i = 0;; ++i) {
        auto nameSize = static_cast<DWORD>(name.size());
        DWORD valueSize = sizeof value - sizeof(wchar_t);
        value.fill(L'\0');
        if (RegEnumValueW(key, i, name.data(), &nameSize, nullptr, nullptr,
                          reinterpret_cast<LPBYTE>(value.data()), &valueSize) != ERROR_SUCCESS)
            break;
        PortEntry port;
        port.device = QStringLiteral("\\\\.\\") + QString::fromWCharArray(value.data()).toUpper();
        const bool isKnown = std::any_of(ports.cbegin(), ports.cend(), [&port](const PortEntry& one) {
            return isSameDevice(one.device, port.device);
        });
        if (!isKnown)
            ports.push_back(std::move(port));
    }
    RegCloseKey(key);
}

int numberOf(const PortEntry& port) {
    return comName(port.device).mid(3).toInt();
}

} // namespace

bool PortPlaces::mayReadAndWrite(const QString& /*path*/) {
    return true;
}

std::vector<PortEntry> installedPorts(const PortPlaces& /*places*/) {
    std::vector<PortEntry> ports;
    DeviceSet(kPortInterface, DIGCF_DEVICEINTERFACE).addTo(ports);
    DeviceSet(kPortClass, 0).addTo(ports);
    addNamedPorts(ports);
    std::sort(ports.begin(), ports.end(),
              [](const PortEntry& one, const PortEntry& other) { return numberOf(one) < numberOf(other); });
    return ports;
}

/// Checks little: the system keeps an adapter's COM name, and only opening a port shows whether it is in use.
void inspectPorts(std::vector<PortEntry>& ports, const PortPlaces& places) {
    const std::vector<PortEntry> installed = installedPorts(places);
    for (PortEntry& port : ports) {
        port.isThere = std::any_of(installed.cbegin(), installed.cend(), [&port](const PortEntry& one) {
            return isSameDevice(one.device, port.device);
        });
        port.stableName = comName(port.device);
    }
}

QString otherUserOf(const QString& /*device*/, const PortPlaces& /*places*/) {
    return {};
}

bool isInstalled(const QString& device) {
    std::array<wchar_t, MAX_PATH> target{};
    return QueryDosDeviceW(comName(device).toStdWString().c_str(), target.data(),
                           static_cast<DWORD>(target.size())) != 0;
}

bool isSameDevice(const QString& one, const QString& other) {
    return comName(one) == comName(other);
}

} // namespace zrk
