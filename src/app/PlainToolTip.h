#pragma once

#include <QString>
#include <QTextDocument>

namespace zrk {

/// Returns a tool tip that shows the text letter by letter. The text of a board, an adapter or a file's name
/// could otherwise act as markup, which can fetch pictures.
[[nodiscard]] inline QString plainToolTip(const QString& text) {
    return Qt::mightBeRichText(text)
               ? QStringLiteral("<span style=\"white-space:pre-wrap\">%1</span>").arg(text.toHtmlEscaped())
               : text;
}

} // namespace zrk
