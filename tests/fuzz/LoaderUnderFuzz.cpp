#include "fuzz/LoaderUnderFuzz.h"

#include <QFile>

namespace zrkfuzz {

using namespace std::chrono_literals;

const QTemporaryDir& folder() {
    static const QTemporaryDir made(QStringLiteral("/dev/shm/zrk-fuzz-XXXXXX"));
    return made;
}

QString writeFile(const char* name, const QByteArray& content) {
    QFile file(folder().filePath(QString::fromLatin1(name)));
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "a file can be written");
    return file.fileName();
}

LoaderUnderFuzz::LoaderUnderFuzz() {
    loader.startUp.prepare({folder().path(), QStringLiteral("loader"), 0, 7, 34});
}

void LoaderUnderFuzz::fill(int slot, const QByteArray& content, const QString& address) {
    const QByteArray name = "slot" + QByteArray::number(slot) + ".bin";
    loader.imageSlots.fill(slot, writeFile(name.constData(), content));
    loader.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text = address;
}

void LoaderUnderFuzz::carryOut(const std::function<void()>& what, zrksim::Duration cancelAt) {
    constexpr auto kEnding = 10s; // from a cancel to the end
    const auto began = loop.now();
    const auto cancel = loop.schedule(began + cancelAt, [this] { loader.portControl.cmdCancel_Click(); });
    const auto boxesBefore = boxes.shown.size();
    try {
        what();
    } catch (const std::exception& leaked) {
        require(false, "an operation throws nothing", QString::fromLocal8Bit(leaked.what()));
    }
    loop.cancel(cancel);
    require(loop.now() - began <= cancelAt + kEnding, "it ends after a cancel");
    require(!loader.operation.isRunning(), "no operation is left running");
    require(waitDialog.open == nullptr, "the wait dialog is gone");
    require(boxes.shown.size() - boxesBefore <= 2, "one operation shows few boxes", boxes.shown.join('\n'));
}

} // namespace zrkfuzz
