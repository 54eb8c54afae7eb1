#include "config/ImageSlots.h"

#include <QFileInfo>

namespace zrk {

ImageSlots::ImageSlots(Desk& desk, Paths paths)
    : m_controls(desk.controls), m_state(desk.state), m_paths(std::move(paths)) {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const std::function<void()> clicked = [this, slot] { chkExeURK_Click(slot); };
        m_handlers.push_back(
            m_controls.chkExeURK[static_cast<std::size_t>(slot)].Value.onValueChanged(clicked));
    }
}

void ImageSlots::fill(int slot, const QString& path) {
    const auto i = static_cast<std::size_t>(slot);
    m_controls.txtFilNam[i].Text = m_paths.FileNameOf(path);
    // The path comes before the selection, which the check box rule would undo without a path.
    m_controls.txtFilNam[i].Tag = path;
    m_controls.txtFilNam[i].ToolTipText = QStringLiteral("Path: ") + m_paths.FolderOf(path);
    const QFileInfo file(path);
    if (file.exists())
        m_controls.lblCodeSize[i].Caption = sizeText(file.size());
    m_stamps[i] = {path, file.size(), file.lastModified()};
    m_controls.lblFileChanged[i].Caption = QString();
    m_state.Sent[i] = std::nullopt;
    m_controls.chkExeURK[i].Value = 1;
    if (slot == kPrimaryBoot)
        m_controls.cmdStartPrimary.Enabled = true;
}

void ImageSlots::chkExeURK_Click(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    if (m_controls.chkExeURK[i].isTicked() && m_controls.txtFilNam[i].Tag.value().isEmpty())
        refuseTick(i);
}

void ImageSlots::refuseTick(std::size_t slot) {
    m_controls.chkExeURK[slot].Value = 0;
    m_state.Remark = {QStringLiteral("%1 has no file yet: choose one with Browse, or drop it on the row.")
                          .arg(m_controls.slotTitle(slot)),
                      RemarkSeverity::Warning};
}

void ImageSlots::checkFiles() {
    for (int slot = 0; slot < kSlotCount; ++slot)
        checkFile(slot);
}

void ImageSlots::checkFile(int slot) {
    const auto i = static_cast<std::size_t>(slot);
    const Stamp& chosen = m_stamps[i];
    const QString path = m_controls.txtFilNam[i].Tag;
    QString mark;
    if (!path.isEmpty() && path == chosen.path) {
        const QFileInfo now(path);
        if (!now.exists())
            mark = QStringLiteral("The file is gone. Choose another one.");
        else if (now.size() != chosen.size || now.lastModified() != chosen.changed)
            mark = QStringLiteral("The file has changed since it was chosen; the size shown is the old one. "
                                  "Choose it again to use the new size.");
    }
    if (m_controls.lblFileChanged[i].Caption.value() != mark)
        m_controls.lblFileChanged[i].Caption = mark;
}

QString ImageSlots::sizeText(std::int64_t length) {
    return QStringLiteral("0x") + QString::number(length, 16).toUpper();
}

QStringList filesToRead(const Desk& desk) {
    QStringList files{desk.state.IniPath};
    for (const auto& name : desk.controls.txtFilNam)
        files += name.Tag;
    files.removeAll(QString());
    return files;
}

} // namespace zrk
