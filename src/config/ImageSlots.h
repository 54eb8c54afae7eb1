#pragma once

#include "config/Paths.h"
#include "controls/Desk.h"

#include <QDateTime>
#include <QPropertyChangeHandler>

#include <functional>
#include <vector>

namespace zrk {

/// The seven image slots. Their controls hold their state; this keeps it consistent: a slot without a file is
/// never selected.
class ImageSlots {
  public:
    /// Resolves relative paths with `paths`.
    ImageSlots(Desk& desk, Paths paths);

    [[nodiscard]] const Paths& paths() const { return m_paths; }

    /// Resolves relative paths from this folder from now on.
    void resolveFrom(const QString& folder) { m_paths = Paths(folder); }

    /// Makes `path` the slot's file: name, path, tool tip and size, then selects the slot; slot 0
    /// enables cmdStartPrimary. A length that cannot be read leaves the size label as it was.
    void fill(int slot, const QString& path);

    /// Unticks the box of a slot without a file; runs whenever the value of chkExeURK(slot) changes.
    void chkExeURK_Click(int slot);

    /// Marks every slot, or one, whose file is gone or has another size or time than when it was chosen. Does
    /// not update the size label.
    void checkFiles();
    void checkFile(int slot);

    /// Returns "0x" and the length in upper-case hexadecimal.
    [[nodiscard]] static QString sizeText(std::int64_t length);

  private:
    void refuseTick(std::size_t slot);

    /// A file's size and time when it was chosen.
    struct Stamp {
        QString path;
        qint64 size = 0;
        QDateTime changed;
    };

    Controls& m_controls;
    SharedState& m_state;
    Paths m_paths;
    std::array<Stamp, kSlotCount> m_stamps;
    std::vector<QPropertyChangeHandler<std::function<void()>>> m_handlers;
};

/// Returns the files that the loader reads for its next operation: the INI file and those of all slots.
[[nodiscard]] QStringList filesToRead(const Desk& desk);

} // namespace zrk
