#include "cli/VisibleText.h"

#include <QJsonDocument>

namespace zrk {

QString withVisibleControls(const QString& text) {
    QString shown;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        const bool lineEnd =
            c == u'\n' || (c == u'\r' && i + 1 < text.size() && text[i + 1] == QLatin1Char('\n'));
        if (lineEnd || c == u'\t' || (c >= 0x20 && c < 0x7F) || c >= 0xA0)
            shown += text[i];
        else if (c < 0x20 || c == 0x7F)
            shown += QLatin1Char('^') + QChar(static_cast<char16_t>(c ^ 0x40));
        else
            shown += QStringLiteral("\\x") + QString::number(c, 16).toUpper();
    }
    return shown;
}

QByteArray jsonLine(const QJsonObject& object) {
    constexpr int kDelete = 0x7F;
    constexpr int kLeader = 0xC2; // of the codes 0x80 to 0xBF in UTF-8
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    QByteArray line;
    line.reserve(text.size());
    for (const char* at = text.constData(); at != text.constData() + text.size(); ++at) {
        if (*at == '\\') {
            // Half a pair comes as an escape; whole ones and all other characters come in UTF-8.
            const bool isSurrogate = at[1] == 'u' && at[2] == 'd' && at[3] >= '8';
            line += isSurrogate ? QByteArray("\\ufffd") : QByteArray(at, 2);
            at += isSurrogate ? 5 : 1;
            continue;
        }
        const int byte = static_cast<unsigned char>(*at);
        const int next = static_cast<unsigned char>(at[1]); // a NUL follows the last one
        const bool isHigh = byte == kLeader && next < 0xA0;
        if (byte == kDelete || isHigh)
            line += "\\u00" + QByteArray::number(isHigh ? next : byte, 16);
        else
            line += *at;
        at += isHigh ? 1 : 0;
    }
    return line;
}

} // namespace zrk
