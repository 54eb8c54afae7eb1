#pragma once

#include <QString>

#include <cstdint>

namespace zrk {

class ProgramStarter;
class Registry;
struct Desk;

/// Finds and starts the System Information program of the desktop.
class SystemInfo {
  public:
    SystemInfo(const Registry& registry, ProgramStarter& starter, Desk& desk)
        : m_registry(registry), m_starter(starter), m_desk(desk) {}

    /// Starts it without waiting for it; a message box tells when that is not possible.
    void StartSysInfo();

    /// Reads one registry value as text: a text without its end mark, a number as "&h" and its bytes in
    /// hexadecimal, highest first. Other types leave `text` as it was. False when there is no such
    /// value; `text` is empty then.
    [[nodiscard]] bool GetKeyValue(std::uint32_t rootKey, const QString& key, const QString& value,
                                   QString& text) const;

  private:
    [[nodiscard]] QString programPath() const;

    const Registry& m_registry;
    ProgramStarter& m_starter;
    Desk& m_desk;
};

} // namespace zrk
