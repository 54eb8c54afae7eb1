#include "monkey/Room.h"

#include "app/AboutBox.h"
#include "app/FileRecording.h"

#include <QApplication>
#include <QFile>

namespace zrkmonkey {

Room::Room() {
    loader.startUp.prepare({folder.path(), QStringLiteral("loader"), 0, 7, 34});
    loader.flash.limitAnswers(std::chrono::seconds(20));
    write("board.INI",
          "[BINFILES]\nPRIMARY=slot0.bin,0x0000\nSECONDARY=slot1.bin,0x80008000\nFLASH=none.bin\n");
    write("odd.INI", "[BINFILES\nPRIMARY=\n[IMGFILES]\nUBOOT=slot2.bin,0x99999999999\nX=1\n");
    write("good.scr", ">help/n\n<#\n");
    write("endless.scr", "<never\n");
    write("odd.scr", "\xFF\xFE<\x00\xD8");
    for (int slot = 0; slot < 7; ++slot)
        fillWell(slot);
    const QString store = folder.filePath("window.conf");
    window = std::make_unique<zrk::MainWindow>(loader, catalog, store, [this] { showAbout(); });
    zrk::recordTrace(window->traceEntry(), tracedPorts, loader);
    zrk::logToFile(window->logEntry(), window->logTimesEntry(), log, loader, store);
    window->onClosing([this] { endRecords(); });
    window->show();
    QApplication::processEvents();
}

QString Room::write(const QString& name, const QByteArray& content) const {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    return file.fileName();
}

void Room::fillWell(int slot) {
    static constexpr const char* kAddresses[]{"0x0000",     "0x80008000", "0x80100000", "0x82800000",
                                              "0x80800000", "0x00020000", "0x0000"};
    // The simulated board recognises its programs by these words.
    const QByteArray program = slot == 0   ? "ZRK SIMULATED PRIMARY BOOT"
                               : slot == 6 ? "ZRK SIMULATED PG_SIBL"
                                           : "";
    const QByteArray image = QByteArray(40 + 700 * slot, static_cast<char>('A' + slot)) + program;
    loader.imageSlots.fill(slot, write(QStringLiteral("slot%1.bin").arg(slot), image));
    loader.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text =
        QString::fromLatin1(kAddresses[slot]);
}

void Room::openModal(QDialog& dialog) {
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
}

/// Returns the window that the program would return.
QWidget* Room::topWindow() const {
    if (QWidget* waiting = waitDialog.openWindow())
        return waiting;
    return m_about.isNull() ? static_cast<QWidget*>(window.get()) : m_about.data();
}

void Room::showAbout() {
    zrk::AboutBox about(systemInfo, window.get());
    m_about = &about;
    readAbout(about);
}

void Room::endRecords() {
    tracedPorts.stopTrace();
    log.stop();
}

std::map<QString, int> Room::objects() const {
    std::map<QString, int> counts;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->parent() != nullptr)
            continue;
        for (const QObject* object : widget->findChildren<QObject*>())
            ++counts[QString::fromLatin1(object->metaObject()->className())];
    }
    return counts;
}

} // namespace zrkmonkey
