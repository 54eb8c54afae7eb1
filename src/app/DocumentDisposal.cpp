#include "app/DocumentDisposal.h"

#include <QElapsedTimer>
#include <QTextBlock>
#include <QTextCursor>

#include <algorithm>

namespace zrk {
namespace {

constexpr qint64 kDisposalSlice = 8; // ms
constexpr int kBlocks = 500;

} // namespace

DocumentDisposal::DocumentDisposal(QTextDocument* document, QObject* parent)
    : QObject(parent), m_document(document) {
    document->setParent(nullptr);
    connect(&m_next, &QTimer::timeout, this, &DocumentDisposal::goOn);
    m_next.start(0);
}

void DocumentDisposal::goOn() {
    QElapsedTimer slice;
    slice.start();
    while (m_document->blockCount() > 1 && slice.elapsed() < kDisposalSlice) {
        QTextCursor rest(m_document.get());
        rest.setPosition(
            m_document->findBlockByNumber(std::max(0, m_document->blockCount() - 1 - kBlocks)).position());
        rest.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        rest.removeSelectedText();
    }
    if (m_document->blockCount() > 1)
        return;
    m_next.stop();
    deleteLater();
}

} // namespace zrk
