#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace zrk {

/// The list view with the columns "index", "start" and "size", in ascending order of the start text.
class AddressList {
  public:
    struct Row {
        QString index;
        QString start;
        QString size;
        bool conflicts = false; ///< its range overlaps another one
    };

    [[nodiscard]] const QList<Row>& rows() const { return m_rows; }
    void clear();

    /// Inserts a row at its place, ahead of rows with the same start text: the fixed marker rows are
    /// added last and so come before an image that starts at a marker, which is no overlap.
    void add(Row row);

    /// Marks the row of that index.
    void mark(const QString& index);

    void onChange(std::function<void()> listener) { m_listener = std::move(listener); }

  private:
    void changed() const;

    QList<Row> m_rows;
    std::function<void()> m_listener;
};

} // namespace zrk
