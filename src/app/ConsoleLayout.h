#pragma once

#include <QPlainTextDocumentLayout>

namespace zrk {

/// Lays out a block of the console when it is looked at, and again when the width has changed since. The
/// toolkit's own goes through all blocks at every new width, which takes longer than a glance when a board
/// has printed for hours.
class ConsoleLayout final : public QPlainTextDocumentLayout {
    Q_OBJECT

  public:
    explicit ConsoleLayout(QTextDocument* document) : QPlainTextDocumentLayout(document) {}

    /// Of the view, in pixels.
    void setWidth(int width);

    [[nodiscard]] QRectF blockBoundingRect(const QTextBlock& block) const override;
    [[nodiscard]] QSizeF documentSize() const override;
    /// As wide as the view, within which a selection is painted.
    [[nodiscard]] QRectF frameBoundingRect(QTextFrame* frame) const override;

  protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override;

  private:
    void layOut(QTextBlock block);

    int m_width = 0;
    /// Of the blocks' layouts; a block's user state tells of which one its own is. The first is after
    /// Qt's -1, for none.
    int m_generation = 0;
    bool m_isTelling = false;
};

} // namespace zrk
