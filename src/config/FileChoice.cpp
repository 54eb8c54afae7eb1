#include "config/FileChoice.h"

#include "config/ImageSlots.h"
#include "platform/FileDialog.h"

namespace zrk {

FileChoice::FileChoice(Desk& desk, ImageSlots& slots) : m_desk(desk), m_slots(slots) {}

void FileChoice::cmdBrowse_Click(int slot) {
    if (m_desk.state.OperationActive)
        return;
    FileRequest request;
    request.title = QStringLiteral("Open binary file");
    request.filters = {{QStringLiteral("Binary Files (.bin)"), QStringLiteral("*.bin")},
                       {QStringLiteral("Uboot Image (.ubt)"), QStringLiteral("*.ubt")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.filterIndex = factsOf(slot).fileFilter;
    request.folder = m_desk.state.DialogFolder;
    const QString path = m_desk.fileDialog.openFile(request);
    // An operation may have begun while the dialog was open.
    if (!path.isEmpty() && !m_desk.state.OperationActive)
        m_slots.fill(slot, path);
}

} // namespace zrk
