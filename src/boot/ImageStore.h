#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <mutex>

namespace zrk {

/// The whole image file, which is closed again before anything is sent. Throws RuntimeFailure naming the file
/// when it cannot be opened or read.
[[nodiscard]] QByteArray readImage(const QString& path);

struct Controls;

/// Throws RuntimeFailure (File), which names the slot, when its file is longer than the protocols' signed
/// 32-bit sizes can say. An operation asks before it sends anything of the slot.
void requireSendable(const Controls& controls, int slot);

/// The images of a run: each file is read once and held once, so that all boards get the same bytes even when
/// the file changes meanwhile. For any thread.
class ImageStore {
  public:
    /// As readImage(), from the second time on without the file; a failure is not kept.
    [[nodiscard]] QByteArray image(const QString& path);

  private:
    std::mutex m_mutex;
    QHash<QString, QByteArray> m_images;
};

} // namespace zrk
