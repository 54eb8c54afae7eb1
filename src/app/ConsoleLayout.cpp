#include "app/ConsoleLayout.h"

#include <QScopedValueRollback>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextLayout>

#include <algorithm>
#include <utility>

namespace zrk {
namespace {

constexpr int kNone = -1;

} // namespace

void ConsoleLayout::setWidth(int width) {
    if (std::exchange(m_width, width) != width)
        ++m_generation;
}

QSizeF ConsoleLayout::documentSize() const {
    return {static_cast<qreal>(m_width), QPlainTextDocumentLayout::documentSize().height()};
}

QRectF ConsoleLayout::frameBoundingRect(QTextFrame* frame) const {
    QRectF all = QPlainTextDocumentLayout::frameBoundingRect(frame);
    all.setWidth(m_width);
    return all;
}

QRectF ConsoleLayout::blockBoundingRect(const QTextBlock& block) const {
    if (block.isValid() && block.userState() != m_generation)
        const_cast<ConsoleLayout*>(this)->layOut(block); // as the base class does
    return QPlainTextDocumentLayout::blockBoundingRect(block);
}

void ConsoleLayout::layOut(QTextBlock block) {
    QTextLayout* layout = block.layout();
    layout->setTextOption(document()->defaultTextOption());
    const qreal margin = document()->documentMargin();
    qreal height = 0;
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(m_width - 2 * margin);
        line.setPosition({margin, height});
        height += line.height();
    }
    layout->endLayout();
    block.setUserState(m_generation);
    const int before = block.lineCount();
    block.setLineCount(layout->lineCount());
    if (before == layout->lineCount() || m_isTelling)
        return;
    const QScopedValueRollback telling(m_isTelling, true);
    Q_EMIT documentSizeChanged(documentSize());
}

void ConsoleLayout::documentChanged(int from, int charsRemoved, int charsAdded) {
    const QTextBlock last = document()->findBlock(std::max(0, from + charsRemoved + charsAdded - 1));
    if (from == 0 && !last.next().isValid()) { // all of it, such as with another font
        ++m_generation;
    } else {
        for (QTextBlock block = document()->findBlock(from); block.isValid(); block = block.next()) {
            if (block.userState() != kNone)
                block.clearLayout();
            block.setUserState(kNone);
            if (block == last)
                break;
        }
    }
    Q_EMIT documentSizeChanged(documentSize());
    Q_EMIT update();
}

} // namespace zrk
