#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <utility>

namespace zrk {

/// Which device the port numbers 1 to 8 stand for: an explicit override, else what the environment
/// variable ZRK_COM<n> names, else the system's own device of that number.
class PortNames {
  public:
    static constexpr int kLowest = 1;
    static constexpr int kHighest = 8;

    using Overrides = std::map<int, QString>;

    /// What is asked of the machine; tests put their own in place.
    struct Machine {
        std::function<QString(const QString& variable)> environment; ///< "" when not set
        std::function<bool(const QString& device)> exists;

        [[nodiscard]] static Machine real();
    };

    explicit PortNames(Overrides overrides = {}, Machine machine = Machine::real());

    /// The device of port `number`; "" when the number has none or is none.
    [[nodiscard]] QString device(int number) const;

    /// True when the user, not the system, says which device port `number` is.
    [[nodiscard]] bool isNamed(int number) const;

    /// True when the port is one that is built into the machine, because no adapter is there for `number` and
    /// the user has named none.
    [[nodiscard]] bool isFallback(int number) const;

    /// The device for what a user names: a port ("COM3", "com3:") or the device itself.
    /// "" when it is a port that has no device.
    [[nodiscard]] QString deviceNamed(const QString& name) const;

    /// The device that the value of the option --port names, as deviceNamed.
    /// Throws RuntimeFailure (InvalidArgument) where that has none.
    [[nodiscard]] QString optionDevice(const QString& name) const;

    /// The system's own devices for a port number, in the order in which they are looked for.
    [[nodiscard]] static QStringList candidates(int number);

    /// The environment variable that names the device of a port number.
    [[nodiscard]] static QString variable(int number);

    /// Reads "n=DEVICE", the value of the option --com, into an entry of Overrides.
    /// Throws RuntimeFailure (InvalidArgument) that says what is wrong with it.
    [[nodiscard]] static std::pair<int, QString> parseOverride(const QString& text);

  private:
    Overrides m_overrides;
    Machine m_machine;
};

} // namespace zrk
