#include "platform/Registry.h"

#include <windows.h>

namespace zrk {
namespace {

constexpr DWORD kBufferSize = 1024;
constexpr REGSAM kAllAccess = 0x2003F;

/// An open key, closed on every way out.
class Key {
  public:
    Key(std::uint32_t rootKey, const QString& path) {
        const auto root = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG>(rootKey)));
        const QByteArray name = path.toLocal8Bit();
        if (RegOpenKeyExA(root, name.constData(), 0, kAllAccess, &m_key) != ERROR_SUCCESS)
            m_key = nullptr;
    }
    ~Key() {
        if (m_key != nullptr)
            RegCloseKey(m_key);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    [[nodiscard]] HKEY handle() const { return m_key; }

  private:
    HKEY m_key = nullptr;
};

class WindowsRegistry final : public Registry {
  public:
    [[nodiscard]] std::optional<RegistryValue> query(std::uint32_t rootKey, const QString& path,
                                                     const QString& value) const override {
        const Key key(rootKey, path);
        if (key.handle() == nullptr)
            return {};
        QByteArray buffer(static_cast<qsizetype>(kBufferSize), '\0');
        DWORD size = kBufferSize;
        DWORD type = 0;
        if (RegQueryValueExA(key.handle(), value.toLocal8Bit().constData(), nullptr, &type,
                             reinterpret_cast<LPBYTE>(buffer.data()), &size) != ERROR_SUCCESS)
            return {};
        return RegistryValue{type, buffer.left(static_cast<qsizetype>(size))};
    }
};

} // namespace

std::unique_ptr<Registry> createRegistry() {
    return std::make_unique<WindowsRegistry>();
}

} // namespace zrk
