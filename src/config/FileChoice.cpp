#include "config/FileChoice.h"

#include "config/ImageSlots.h"
#include "config/Paths.h"
#include "platform/FileDialog.h"
#include "serial/SharedState.h"

namespace zrk {

FileChoice::FileChoice(SharedState& state, ImageSlots& slots, const Paths& paths, FileDialog& dialog)
    : m_state(state), m_slots(slots), m_paths(paths), m_dialog(dialog) {}

void FileChoice::cmdBrowse_Click(int slot) {
    if (m_state.OperationActive)
        return;
    FileRequest request;
    request.title = QStringLiteral("Open binary file");
    request.filters = {{QStringLiteral("Binary Files (.bin)"), QStringLiteral("*.bin")},
                       {QStringLiteral("Uboot Image (.ubt)"), QStringLiteral("*.ubt")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.filterIndex = slot >= kUBoot && slot <= kKernel ? 2 : 1;
    request.folder = m_paths.folder();
    const QString path = m_dialog.openFile(request);
    if (!path.isEmpty())
        m_slots.fill(slot, path);
}

} // namespace zrk
