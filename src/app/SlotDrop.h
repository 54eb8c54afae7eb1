#pragma once

#include <QObject>

#include <functional>

class QMimeData;
class QPoint;
class QWidget;

namespace zrk {

struct LoaderWidgets;

/// The target of an image file that is dropped on a slot's row.
class SlotDrop : public QObject {
    Q_OBJECT

  public:
    /// `accepts` returns whether drops are allowed now; `fill` gets the slot and the file's full path with
    /// the system's separators.
    SlotDrop(const LoaderWidgets& widgets, std::function<bool()> accepts,
             std::function<void(int slot, const QString& path)> fill, QObject* parent);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    [[nodiscard]] int slotAt(const QWidget* frame, QPoint position) const;

    const LoaderWidgets& m_widgets;
    std::function<bool()> m_accepts;
    std::function<void(int, const QString&)> m_fill;
};

/// Returns the one local file of a drag; "" for anything else or more.
[[nodiscard]] QString draggedFile(const QMimeData* data);

} // namespace zrk
