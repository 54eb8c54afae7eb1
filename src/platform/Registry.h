#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace zrk {

/// The handle of the root key HKEY_LOCAL_MACHINE.
inline constexpr std::uint32_t kLocalMachine = 0x80000002;

/// A value as the registry stores it.
struct RegistryValue {
    static constexpr std::uint32_t kText = 1;   ///< REG_SZ
    static constexpr std::uint32_t kNumber = 4; ///< REG_DWORD

    std::uint32_t type = 0;
    QByteArray data; ///< at most 1024 bytes; a text may end in NUL
};

/// The system's registry, if it has one.
class Registry {
  public:
    virtual ~Registry() = default;

    /// Returns the value; empty if the key or the value is missing, cannot be opened or is longer than 1024
    /// bytes, and always empty on a system without a registry.
    [[nodiscard]] virtual std::optional<RegistryValue> query(std::uint32_t rootKey, const QString& key,
                                                             const QString& value) const = 0;
};

/// Creates the registry of this system.
[[nodiscard]] std::unique_ptr<Registry> createRegistry();

} // namespace zrk
