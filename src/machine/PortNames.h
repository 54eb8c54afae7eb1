#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <utility>

namespace zrk {

/// The devices of the port numbers 1 to 8: an explicit override, else the value of the environment variable
/// ZRK_COM<n>, else the system's own device of that number.
class PortNames {
  public:
    static constexpr int kLowest = 1;
    static constexpr int kHighest = 8;

    using Overrides = std::map<int, QString>;

    /// Queries of the machine; tests replace them.
    struct Machine {
        std::function<QString(const QString& variable)> environment; ///< "" when not set
        std::function<bool(const QString& device)> exists;

        [[nodiscard]] static Machine real();
    };

    explicit PortNames(Overrides overrides = {}, Machine machine = Machine::real());

    /// Returns the device of port `number`; "" if the number has none or is not 1 to 8.
    [[nodiscard]] QString device(int number) const;

    /// Returns whether the user, not the system, has chosen the device of port `number`.
    [[nodiscard]] bool isNamed(int number) const;

    /// Returns whether the port is built into the machine, because there is no adapter for `number` and the
    /// user has named none.
    [[nodiscard]] bool isFallback(int number) const;

    /// Returns the device for a name that the user gives: a port ("COM3", "com3:") or the device itself. ""
    /// for a port that has no device.
    [[nodiscard]] QString deviceNamed(const QString& name) const;

    /// Returns the device that the value of the option --port names, as deviceNamed(). Throws RuntimeFailure
    /// (InvalidArgument) if it has none.
    [[nodiscard]] QString optionDevice(const QString& name) const;

    /// Returns the system's own devices for a port number, in the order of the search.
    [[nodiscard]] static QStringList candidates(int number);

    /// Returns the environment variable that names the device of a port number.
    [[nodiscard]] static QString variable(int number);

    /// Reads "n=DEVICE", the value of the option --com, into an entry of Overrides.
    /// Throws RuntimeFailure (InvalidArgument) that says what is wrong with it.
    [[nodiscard]] static std::pair<int, QString> parseOverride(const QString& text);

  private:
    Overrides m_overrides;
    Machine m_machine;
};

} // namespace zrk
