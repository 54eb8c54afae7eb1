#pragma once

#include <QString>

#include <cstdint>

namespace zrk {

class ProgramStarter;
class Registry;
struct Desk;

/// The desktop's System Information program.
class SystemInfo {
  public:
    SystemInfo(const Registry& registry, ProgramStarter& starter, Desk& desk)
        : m_registry(registry), m_starter(starter), m_desk(desk) {}

    /// Starts it without waiting for it; a message box reports a failure. Yields for that.
    void StartSysInfo();

    /// Reads one registry value as text: a text without its end mark, a number as "&h" and its bytes in
    /// hexadecimal, highest first. Other types leave `text` unchanged. Returns false if there is no such
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
