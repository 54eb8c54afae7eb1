#pragma once

#include <QString>
#include <QTextDocument>

namespace zrk {

/// The text of a tool tip, shown letter by letter. What a board, an adapter or a file's name says might
/// otherwise be taken for markup, which can fetch pictures.
[[nodiscard]] inline QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text)
               ? QStringLiteral("<span style=\"white-space:pre-wrap\">%1</span>").arg(text.toHtmlEscaped())
               : text;
}

} // namespace zrk
