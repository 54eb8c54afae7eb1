#include "cli/VisibleText.h"

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

} // namespace zrk
