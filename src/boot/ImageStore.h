#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <mutex>

namespace zrk {

/// Reads the whole image file and closes it, before anything is sent. Throws RuntimeFailure that names the
/// file if it cannot be opened or read.
[[nodiscard]] QByteArray readImage(const QString& path);

struct Controls;

/// Throws RuntimeFailure (File), which names the slot, if its file is longer than the protocols' signed
/// 32-bit sizes allow. Called before anything of the slot is sent.
void requireSendable(const Controls& controls, int slot);

/// The images of a run. Each file is read and held once, so that all boards get the same bytes even if the
/// file changes meanwhile. Any thread may use it.
class ImageStore {
  public:
    /// Returns what readImage() does, and keeps it for further calls; a failure is not kept.
    [[nodiscard]] QByteArray image(const QString& path);

  private:
    std::mutex m_mutex;
    QHash<QString, QByteArray> m_images;
};

} // namespace zrk
