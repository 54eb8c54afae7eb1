#include "app/terminal/ScreenView.h"

#include "app/ConsoleView.h"

#include <QFocusEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace zrk {
namespace {

constexpr GridSize kLeast{24, 80};
constexpr int kMargin = 3; // around the grid

} // namespace

ScreenView::ScreenView(QWidget* parent)
    : QAbstractScrollArea(parent), m_screen([this](const QByteArray& bytes) { Q_EMIT typed(bytes); }) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled); // dead keys and composing
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, ScreenPainter::kGround);
    viewport()->setPalette(colors);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setFont(consoleFont());
    m_painter.setFont(font());
    fitBars();
}

void ScreenView::reset() {
    m_screen.reset();
    m_selection.clear();
    m_firstLine = 0;
    setHeld(false);
    viewport()->update();
}

void ScreenView::showChanges() {
    const TerminalScreen::Damage damage = m_screen.takeDamage();
    if (damage.scrolled || rowsInView() < m_screen.size().rows) {
        fitBars();
        viewport()->update();
    } else if (!m_heldAt) {
        updateRows(damage.firstRow, damage.endRow);
    }
    if (isHeld() && !m_hasMore && (damage.scrolled || damage.firstRow != damage.endRow)) {
        m_hasMore = true;
        tellHold();
    }
}

int ScreenView::rowsInView() const {
    return std::max(1, (viewport()->height() - 2 * kMargin) / m_painter.cell().height());
}

void ScreenView::fitGrid() {
    const QSize cell = m_painter.cell();
    const GridSize room{rowsInView(), (viewport()->width() - 2 * kMargin) / cell.width()};
    m_screen.resize(m_hasSmallGrid
                        ? kLeast
                        : GridSize{std::max(kLeast.rows, room.rows), std::max(kLeast.columns, room.columns)});
    (void)m_screen.takeDamage();
    fitBars();
    viewport()->update();
}

void ScreenView::setSmallGrid(bool on) {
    m_hasSmallGrid = on;
    fitGrid();
}

/// Keeps the shown lines where they are while the view does not follow the end.
void ScreenView::fitBars() {
    const QScopedValueRollback fitting(m_isFitting, true);
    const qsizetype top = topLine();
    m_firstLine = m_screen.firstLine();
    const int rows = rowsInView();
    const qsizetype lines = endOfView() - m_firstLine;
    QScrollBar& bar = *verticalScrollBar();
    bar.setRange(0, std::max(0, static_cast<int>(lines) - rows));
    bar.setPageStep(rows);
    bar.setValue(stands() ? static_cast<int>(std::max(qsizetype{0}, top - m_firstLine)) : endValue());
    QScrollBar& sideways = *horizontalScrollBar();
    const int width = m_screen.size().columns * m_painter.cell().width() + 2 * kMargin;
    sideways.setRange(0, std::max(0, width - viewport()->width()));
    sideways.setPageStep(viewport()->width());
    sideways.setSingleStep(m_painter.cell().width());
}

/// Returns the bar's value that shows the end: of a view that is lower than the grid, the part with the cursor.
int ScreenView::endValue() const {
    const int rows = rowsInView();
    const int hidden = m_screen.size().rows - rows;
    const int maximum = verticalScrollBar()->maximum();
    return hidden <= 0 ? maximum : maximum - hidden + std::clamp(m_screen.cursor().row + 1 - rows, 0, hidden);
}

qsizetype ScreenView::topLine() const {
    return m_firstLine + verticalScrollBar()->value();
}

qsizetype ScreenView::endOfView() const {
    return m_heldAt ? m_heldAt->gridTop + qsizetype(m_heldAt->grid.size()) : m_screen.endLine();
}

ScreenLine ScreenView::lineToShow(qsizetype number) const {
    if (!m_heldAt || number < m_heldAt->gridTop)
        return m_screen.line(number);
    const auto row = static_cast<std::size_t>(number - m_heldAt->gridTop);
    return row < m_heldAt->grid.size() ? m_heldAt->grid[row] : ScreenLine{};
}

void ScreenView::setHeld(bool held) {
    if (held && !m_heldAt) {
        Stop stop;
        stop.gridTop = m_screen.gridTop();
        for (qsizetype line = m_screen.gridTop(); line < m_screen.endLine(); ++line)
            stop.grid.push_back(m_screen.line(line));
        m_heldAt = std::move(stop);
    } else if (!held) {
        m_heldAt.reset();
        m_isScrolledUp = false;
        m_hasMore = false;
        fitBars();
        viewport()->update();
    }
    tellHold();
}

void ScreenView::tellHold() {
    Q_EMIT holdChanged(isHeld(), isHeld() && m_hasMore);
}

void ScreenView::scrollContentsBy(int /*dx*/, int /*dy*/) {
    viewport()->update();
    if (m_isFitting)
        return;
    const bool up = verticalScrollBar()->value() < endValue();
    if (std::exchange(m_isScrolledUp, up) == up)
        return;
    if (!isHeld())
        m_hasMore = false;
    tellHold();
}

void ScreenView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    fitGrid();
}

void ScreenView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_painter.setFont(font());
        fitGrid();
    }
}

/// Returns the place of the first line that is shown.
QPoint ScreenView::origin() const {
    return {kMargin - horizontalScrollBar()->value(), kMargin};
}

/// Repaints rows of the grid.
void ScreenView::updateRows(int firstRow, int endRow) {
    const int height = m_painter.cell().height();
    const int top = static_cast<int>(m_screen.gridTop() - topLine()) + firstRow;
    viewport()->update(0, origin().y() + top * height, viewport()->width(), (endRow - firstRow) * height);
}

void ScreenView::updateCursor() {
    updateRows(m_screen.cursor().row, m_screen.cursor().row + 1);
}

void ScreenView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QRect area = event->rect();
    painter.fillRect(area, ScreenPainter::kGround);
    const int height = m_painter.cell().height();
    const int columns = m_screen.size().columns;
    const ScreenCursor& cursor = m_screen.cursor();
    const int firstRow = std::max(0, (area.top() - origin().y()) / height);
    const int lastRow = (area.bottom() - origin().y()) / height;
    for (int row = firstRow; row <= lastRow && topLine() + row < endOfView(); ++row) {
        const qsizetype line = topLine() + row;
        ScreenPainter::Marks marks;
        marks.selected = m_selection.columnsIn(line, columns);
        if (!m_heldAt && cursor.isVisible && line == m_screen.gridTop() + cursor.row)
            marks.cursor = cursor;
        marks.cursorIsFilled = hasFocus();
        m_painter.paintLine(painter, origin() + QPoint(0, row * height), lineToShow(line), columns, marks);
    }
}

ScreenPoint ScreenView::pointAt(QPoint position) const {
    const QSize cell = m_painter.cell();
    const QPoint inGrid = position - origin();
    const int row = std::clamp(inGrid.y() / cell.height(), 0, rowsInView() - 1);
    const int column = (inGrid.x() + cell.width() / 2) / cell.width();
    return {topLine() + row, std::clamp(column, 0, m_screen.size().columns)};
}

QRect ScreenView::cursorRect() const {
    const QSize cell = m_painter.cell();
    const qsizetype row = m_screen.gridTop() + m_screen.cursor().row - topLine();
    return {origin() + QPoint(m_screen.cursor().column * cell.width(), static_cast<int>(row) * cell.height()),
            cell};
}

} // namespace zrk
