#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>

namespace zrk {

/// The counts of a serial device of damaged and lost bytes. Only differences are meaningful, and they are
/// right across the counters' wrap.
struct LineErrors {
    std::uint32_t framing = 0; ///< a byte without its stop bit: noise, another speed
    std::uint32_t parity = 0;
    std::uint32_t overrun = 0; ///< lost in the adapter or in its driver, which was not emptied in time

    bool operator==(const LineErrors&) const = default;

    friend LineErrors operator-(const LineErrors& a, const LineErrors& b) {
        return {a.framing - b.framing, a.parity - b.parity, a.overrun - b.overrun};
    }

    /// "The adapter counted 3 framing errors on receive: check ground and cable."; "" if there are none.
    [[nodiscard]] QString text() const {
        QStringList counts;
        const auto add = [&counts](std::uint32_t count, QLatin1String what) {
            if (count > 0)
                counts += QStringLiteral("%1 %2 error%3")
                              .arg(count)
                              .arg(what, QLatin1String(count == 1 ? "" : "s"));
        };
        add(framing, QLatin1String("framing"));
        add(parity, QLatin1String("parity"));
        add(overrun, QLatin1String("overrun"));
        if (counts.isEmpty())
            return {};
        const bool noise = framing > 0 || parity > 0;
        return QStringLiteral("The adapter counted %1 on receive: %2.")
            .arg(counts.join(QStringLiteral(" and ")),
                 noise ? QStringLiteral("check ground and cable")
                       : QStringLiteral("the computer was too busy, or the adapter is short of memory"));
    }
};

} // namespace zrk
