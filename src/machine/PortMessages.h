#pragma once

#include <QString>

#include <chrono>

namespace zrk {

struct LineSettings;
struct OpenResult;

/// Messages about a port: each says what failed, why, and what to do.
namespace port_messages {

/// Returns "COM1 (/dev/ttyUSB0)", the port's name in the other texts.
[[nodiscard]] QString portName(int number, const QString& device);

[[nodiscard]] QString noSuchNumber(int number);
[[nodiscard]] QString noDevice(int number);
/// Before it is opened: the number means the machine's own port, since there is no adapter.
[[nodiscard]] QString fallback(int number, const QString& device);
/// Another program has it open as well.
[[nodiscard]] QString alsoUsed(const QString& port, const QString& user);
/// `problem` is a sentence that begins with the name.
[[nodiscard]] QString badName(int number, const QString& problem);
[[nodiscard]] QString cannotOpen(const QString& port, const OpenResult& result);
[[nodiscard]] QString settingsRefused(const QString& port, const LineSettings& settings);
[[nodiscard]] QString noModemLine(const QString& port);
[[nodiscard]] QString noDtr(const QString& port);
[[nodiscard]] QString gone(const QString& port, const QString& reason);
[[nodiscard]] QString stalled(const QString& port, std::chrono::milliseconds limit);

} // namespace port_messages
} // namespace zrk
