#include "config/HexConversions.h"

#include "platform/RuntimeFailure.h"

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace zrk {
namespace {

constexpr double kLongMin = std::numeric_limits<std::int32_t>::min();
constexpr double kLongMax = std::numeric_limits<std::int32_t>::max();

bool isHexText(const QString& text) {
    return text.startsWith(QLatin1String("&h"), Qt::CaseInsensitive);
}

bool isDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

/// Returns 0 to 15, or -1 for any other character.
int hexDigit(QChar c) {
    if (isDigit(c))
        return c.unicode() - '0';
    const char16_t lower = c.unicode() | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

[[noreturn]] void failOverflow(const QString& text) {
    throw RuntimeFailure(FailureKind::Overflow,
                         QStringLiteral("Overflow: \"%1\" does not fit in 32 bits.").arg(text));
}

[[noreturn]] void failTypeMismatch(const QString& text) {
    throw RuntimeFailure(
        FailureKind::TypeMismatch,
        QStringLiteral("Type mismatch: \"%1\" is not a number such as 0x80008000 or 4096.").arg(text));
}

/// Returns the length of the decimal number at the start of the text: sign, digits, point, digits and, if
/// allowed, an exponent. Returns 0 if there is no digit.
qsizetype decimalLength(const QString& text, bool allowExponent) {
    qsizetype at = 0;
    const auto digits = [&] {
        const qsizetype first = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at - first;
    };
    const auto sign = [&] {
        if (at < text.size() && (text[at] == QLatin1Char('+') || text[at] == QLatin1Char('-')))
            ++at;
    };
    sign();
    qsizetype digitCount = digits();
    if (at < text.size() && text[at] == QLatin1Char('.')) {
        ++at;
        digitCount += digits();
    }
    if (digitCount == 0)
        return 0;
    const qsizetype mantissa = at;
    if (allowExponent && at < text.size() && text[at].toLower() == QLatin1Char('e')) {
        ++at;
        sign();
        if (digits() == 0)
            at = mantissa;
    }
    return at;
}

double decimalValue(const QString& number) {
    // Not strtod(), whose point depends on the system's language.
    std::istringstream in(number.toStdString());
    in.imbue(std::locale::classic());
    double value = 0.0;
    in >> value; // the largest number if it does not fit
    return value;
}

double roundTiesToEven(double value) {
    return std::nearbyint(value); // the default rounding mode
}

/// Reads the beginning of the text leniently: blanks are skipped, nothing readable is 0.
double lenientReading(const QString& original) {
    QString text = original;
    text.removeIf(
        [](QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n'); });
    if (!isHexText(text))
        return decimalValue(text.left(decimalLength(text, true)));
    std::uint64_t value = 0;
    for (qsizetype i = 2; i < text.size() && hexDigit(text[i]) >= 0; ++i) {
        value = value * 16 + static_cast<std::uint64_t>(hexDigit(text[i]));
        if (value > 0xFFFFFFFFU)
            failOverflow(original);
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

std::uint32_t strictHex(const QString& digits, const QString& original) {
    if (digits.isEmpty())
        failTypeMismatch(original);
    for (const QChar c : digits) {
        if (hexDigit(c) < 0)
            failTypeMismatch(original);
    }
    std::uint64_t value = 0;
    for (const QChar c : digits) {
        value = value * 16 + static_cast<std::uint64_t>(hexDigit(c));
        if (value > 0xFFFFFFFFU)
            failOverflow(original);
    }
    return static_cast<std::uint32_t>(value);
}

std::uint32_t strictDecimal(const QString& number, const QString& original) {
    if (number.isEmpty() || decimalLength(number, false) != number.size())
        failTypeMismatch(original);
    const double rounded = roundTiesToEven(decimalValue(number));
    if (rounded < kLongMin || rounded > kLongMax)
        failOverflow(original);
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(rounded));
}

/// Returns the text without the blanks around it.
QString withoutOuterBlanks(const QString& text) {
    qsizetype first = 0;
    qsizetype end = text.size();
    while (first < end && text[first] == QLatin1Char(' '))
        ++first;
    while (end > first && text[end - 1] == QLatin1Char(' '))
        --end;
    return text.mid(first, end - first);
}

} // namespace

QString NormalizeHex(const QString& text) {
    if (text.startsWith(QLatin1String("0x")) || text.startsWith(QLatin1String("0h")))
        return QStringLiteral("&h") + text.mid(2);
    return text;
}

std::int32_t HexToLong(const QString& text) {
    const double reading = lenientReading(NormalizeHex(text));
    const double rounded = roundTiesToEven(reading);
    if (rounded > kLongMax || rounded < kLongMin)
        failOverflow(text);
    const auto value = static_cast<std::int32_t>(rounded);
    return reading < 0.0 ? 32768 + (value & 0x7FFF) : value;
}

QString strictHexForm(const QString& text) {
    const QString number = withoutOuterBlanks(text);
    const std::uint32_t value =
        isHexText(number) ? strictHex(number.mid(2), text) : strictDecimal(number, text);
    return QString::number(value, 16).toUpper();
}

std::uint8_t HexByte(const QString& text, std::int16_t n) {
    const QString form = QStringLiteral("00000000") + strictHexForm(NormalizeHex(text));
    if (n < 0)
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("Invalid argument: there is no byte %1.").arg(n));
    if (2 * n + 1 > std::numeric_limits<std::int16_t>::max())
        throw RuntimeFailure(FailureKind::Overflow,
                             QStringLiteral("Overflow: byte number %1 is too large.").arg(n));
    return static_cast<std::uint8_t>(form.right(8).mid(qsizetype{2} * n, 2).toUInt(nullptr, 16));
}

std::array<std::uint8_t, 4> lineBytes(const QString& text) {
    return {HexByte(text, 3), HexByte(text, 2), HexByte(text, 1), HexByte(text, 0)};
}

QString DropLastChar(const QString& text) {
    if (text.isEmpty())
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("Invalid argument: the text is empty."));
    return text.chopped(1);
}

} // namespace zrk
