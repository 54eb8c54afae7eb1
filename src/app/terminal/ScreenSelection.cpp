#include "app/terminal/ScreenSelection.h"

#include <QStringList>

namespace zrk {
namespace {

bool isInWord(const ScreenLine& line, int column) {
    if (column < 0 || column >= static_cast<int>(line.size()))
        return false;
    const ScreenCell& cell = line[static_cast<std::size_t>(column)];
    const QString text = cell.text();
    return cell.width == 0 || text[0].isLetterOrNumber() || text[0].isSurrogate() ||
           QStringLiteral("-_./~:@").contains(text[0]);
}

} // namespace

void ScreenSelection::begin(ScreenPoint at) {
    m_anchor = at;
    m_position = at;
}

void ScreenSelection::selectWord(const ScreenLine& line, ScreenPoint at) {
    begin(at);
    while (isInWord(line, m_anchor.column - 1))
        --m_anchor.column;
    while (isInWord(line, m_position.column))
        ++m_position.column;
}

std::pair<int, int> ScreenSelection::columnsIn(qsizetype line, int columns) const {
    if (line < from().line || line > end().line)
        return {0, 0};
    return {line == from().line ? from().column : 0, line == end().line ? end().column : columns};
}

QString ScreenSelection::text(const std::function<ScreenLine(qsizetype)>& line, int columns) const {
    if (isEmpty())
        return {};
    QStringList lines;
    for (qsizetype number = from().line; number <= end().line; ++number) {
        const auto [first, last] = columnsIn(number, columns);
        lines += textOf(line(number), first, last);
    }
    while (lines.size() > 1 && lines.last().isEmpty() && lines[lines.size() - 2].isEmpty())
        lines.removeLast(); // rows below the text
    return lines.join(QLatin1Char('\n'));
}

} // namespace zrk
