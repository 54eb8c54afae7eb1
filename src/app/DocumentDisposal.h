#pragma once

#include <QTextDocument>
#include <QTimer>

#include <memory>

namespace zrk {

/// Takes a long document apart some milliseconds at a time, so that its end does not stop the window; then
/// deletes itself.
class DocumentDisposal final : public QObject {
    Q_OBJECT

  public:
    /// The document must have no view any more.
    DocumentDisposal(QTextDocument* document, QObject* parent);

  private:
    void goOn();

    std::unique_ptr<QTextDocument> m_document;
    QTimer m_next;
};

} // namespace zrk
