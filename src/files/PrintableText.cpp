#include "files/PrintableText.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <utility>

namespace zrk {
namespace {

/// Returns whether a letter or mark leaves no trace on the screen; no category separates them from others.
bool isInvisibleLetter(char32_t c) {
    static constexpr std::array<std::pair<char32_t, char32_t>, 13> kRanges{{{0x034F, 0x034F},
                                                                            {0x115F, 0x1160},
                                                                            {0x17B4, 0x17B5},
                                                                            {0x180B, 0x180F},
                                                                            {0x2060, 0x206F},
                                                                            {0x2800, 0x2800},
                                                                            {0x3164, 0x3164},
                                                                            {0xFE00, 0xFE0F},
                                                                            {0xFEFF, 0xFEFF},
                                                                            {0xFFA0, 0xFFA0},
                                                                            {0xFFF0, 0xFFFB},
                                                                            {0x1D173, 0x1D17A},
                                                                            {0xE0000, 0xE0FFF}}};
    return std::any_of(kRanges.begin(), kRanges.end(),
                       [c](const auto& range) { return c >= range.first && c <= range.second; });
}

bool isReadable(char32_t c) {
    constexpr char32_t kWideSpace = 0x3000; // the usual one between ideographs
    switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    case QChar::Separator_Space:
        return c == U' ' || c == kWideSpace;
    default:
        return !isInvisibleLetter(c);
    }
}

QString signOf(char32_t c) {
    constexpr char32_t kDelete = 0x7F;
    constexpr char32_t kLastControl = 0x9F;
    if (c < U' ' || c == kDelete)
        return QLatin1Char('^') + QChar(static_cast<char16_t>(c ^ 0x40));
    if (c > kDelete && c <= kLastControl)
        return QStringLiteral("\\x%1").arg(QString::number(c, 16).toUpper());
    return QStringLiteral("<U+%1>").arg(QString::number(c, 16).toUpper().rightJustified(4, QLatin1Char('0')));
}

} // namespace

QString printableText(const QString& name) {
    QString shown;
    shown.reserve(name.size());
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isPair = name[i].isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate();
        const char32_t c = isPair ? QChar::surrogateToUcs4(name[i], name[i + 1]) : name[i].unicode();
        if (isReadable(c))
            shown += QStringView(name).mid(i, isPair ? 2 : 1);
        else
            shown += signOf(c);
        i += isPair ? 1 : 0;
    }
    return shown;
}

QString realFileBehindLinks(const QString& path) {
#ifdef Q_OS_WIN
    constexpr Qt::CaseSensitivity kCase = Qt::CaseInsensitive;
#else
    constexpr Qt::CaseSensitivity kCase = Qt::CaseSensitive;
#endif
    const QFileInfo file(path);
    const QString real = file.canonicalFilePath(); // empty where there is no file
    const bool isItself = real.compare(QDir::cleanPath(file.absoluteFilePath()), kCase) == 0;
    return isItself ? QString() : printableText(QDir::toNativeSeparators(real));
}

QString printableFile(const QString& path) {
    const QString real = realFileBehindLinks(path);
    return real.isEmpty() ? printableText(path)
                          : QStringLiteral("%1 (the real file is %2)").arg(printableText(path), real);
}

} // namespace zrk
