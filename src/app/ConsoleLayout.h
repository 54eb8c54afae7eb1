#pragma once

#include <QPlainTextDocumentLayout>

namespace zrk {

/// A layout that lays out a block of the console when it is shown, and again after the width has changed. The
/// toolkit's own lays out all blocks at every new width, which takes too long when a board has printed for
/// hours.
class ConsoleLayout final : public QPlainTextDocumentLayout {
    Q_OBJECT

  public:
    explicit ConsoleLayout(QTextDocument* document) : QPlainTextDocumentLayout(document) {}

    /// Sets the view's width in pixels.
    void setWidth(int width);

    [[nodiscard]] QRectF blockBoundingRect(const QTextBlock& block) const override;
    [[nodiscard]] QSizeF documentSize() const override;
    /// Returns the view's width, since a selection is painted within it.
    [[nodiscard]] QRectF frameBoundingRect(QTextFrame* frame) const override;

  protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override;

  private:
    void layOut(QTextBlock block);

    int m_width = 0;
    /// The generation of the blocks' layouts; a block's user state is its own. The first is after Qt's -1,
    /// which means none.
    int m_generation = 0;
    bool m_isTelling = false;
};

} // namespace zrk
