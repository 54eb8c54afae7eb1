#pragma once

#include <QTextDocument>
#include <QTimer>

#include <memory>

namespace zrk {

/// A deletion of a long document, some milliseconds at a time, so that it does not stop the window; deletes
/// itself at its end.
class DocumentDisposal final : public QObject {
    Q_OBJECT

  public:
    /// The document must no longer have a view.
    DocumentDisposal(QTextDocument* document, QObject* parent);

  private:
    void goOn();

    std::unique_ptr<QTextDocument> m_document;
    QTimer m_next;
};

} // namespace zrk
