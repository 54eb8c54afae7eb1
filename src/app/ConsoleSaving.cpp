#include "app/ConsoleSaving.h"

#include "app/DatedFileName.h"
#include "config/ImageSlots.h"
#include "controls/Desk.h"
#include "files/PrintableText.h"
#include "files/Record.h"
#include "platform/FileDialog.h"

#include <algorithm>

namespace zrk {
namespace {

constexpr ushort kHighestByte = 0xFF;

/// Makes a byte of each received character; a name that the loader printed may have others.
QByteArray bytesOf(const QString& text) {
    const bool bytesOnly =
        std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() <= kHighestByte; });
    if (bytesOnly)
        return text.toLatin1();
    QByteArray bytes;
    for (const QChar c : text)
        bytes +=
            c.unicode() <= kHighestByte ? QByteArray(1, static_cast<char>(c.unicode())) : QString(c).toUtf8();
    return bytes;
}

} // namespace

void saveConsole(Desk& desk) {
    FileRequest request;
    request.title = QStringLiteral("Save console");
    request.filters = {{QStringLiteral("Text Files (.txt)"), QStringLiteral("*.txt")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.isToBeWritten = true;
    request.name = datedFileName(QStringLiteral(".txt"));
    const QString path = desk.fileDialog.openFile(request);
    if (path.isEmpty())
        return;
    const QString why = replaceRecord({path, filesToRead(desk)}, bytesOf(desk.controls.txtStatus.text()));
    if (why.isEmpty())
        desk.state.Remark = {QStringLiteral("The console has been saved to %1").arg(printableText(path)),
                             RemarkSeverity::Done};
    else
        desk.tell(QStringLiteral("Cannot write %1: %2.\r\nChoose a file in a folder that you may write to.")
                      .arg(printableText(path), why),
                  MessageIcon::Exclamation, QStringLiteral("Save console"));
}

} // namespace zrk
