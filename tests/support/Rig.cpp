#include "support/Rig.h"

#include <QFile>

namespace zrktest {

QString readable(const QString& text) {
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (text.mid(i, 2) == QLatin1String("\r\n")) {
            result += QLatin1Char('\n');
            ++i;
        } else if (c < 0x20) {
            result += QStringLiteral("<%1>").arg(static_cast<int>(c));
        } else {
            result += text[i];
        }
    }
    return result;
}

Rig::Rig(VirtualEventLoop& eventLoop, LinePort& linePort)
    : loop(eventLoop), port(linePort),
      loader({eventLoop, linePort, boxes, fileDialog, waitDialog}, native(folder.path())) {
    loader.startUp.prepare({native(folder.path()), QStringLiteral("loader"), 0, 7, 34});
    loader.controls.txtStatus.onEdit([this](qsizetype, const QString& text, zrk::TextOrigin origin) {
        if (origin == zrk::TextOrigin::Loader)
            lookAround(text);
    });
}

/// Checks the order of steps around a text that the loader appends: those before it are done, those after it
/// are not.
void Rig::lookAround(const QString& text) const {
    const zrk::Controls& c = loader.controls;
    if (text.startsWith(QLatin1String("Sending startaddress"))) {
        EXPECT_EQ(c.staStatus.SecondPanel.value(), "") << "of the image before";
        EXPECT_EQ(c.pgbDownload.Value, 0.0);
    }
    if (!text.endsWith(QLatin1String("losing port ---\r\n")))
        return;
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(c.lblState.Caption.value(), "Closed...");
    if (text.contains(QLatin1String("Cancel"))) {
        EXPECT_NE(loader.state.OperationActive, failsBeforeItBegins);
        EXPECT_FALSE(c.cmdStartPrimary.Enabled && c.cmdPrgFlash.Enabled) << "it can be started again already";
    }
}

QString Rig::file(const QString& name, const QByteArray& content) const {
    QFile file(folder.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    return native(file.fileName());
}

void Rig::fill(int slot, const QByteArray& content, const QString& address) {
    loader.imageSlots.fill(slot, file(QStringLiteral("slot%1.bin").arg(slot), content));
    loader.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text = address;
}

namespace {

/// Returns the start buttons of a loader, const or not.
auto startButtons(auto& controls) {
    return std::array{&controls.cmdStartPrimary, &controls.cmdURK, &controls.cmdStartSecondary,
                      &controls.cmdPrgFlash};
}

} // namespace

QString Rig::buttons() const {
    QString text;
    for (const auto* button : startButtons(loader.controls))
        text += QLatin1Char(button->Enabled ? '1' : '0');
    return text;
}

void Rig::setButtons(const QString& enabled) {
    const auto buttons = startButtons(loader.controls);
    for (std::size_t i = 0; i < buttons.size(); ++i)
        buttons[i]->Enabled = enabled[static_cast<qsizetype>(i)] == QLatin1Char('1');
}

void Rig::expectBytesWrittenOneByOne() const {
    EXPECT_EQ(port.writes, std::vector<qsizetype>(static_cast<std::size_t>(port.written.size()), 1));
}

void Rig::expectAtRest() {
    EXPECT_FALSE(port.isOpen());
    EXPECT_EQ(loader.controls.lblState.Caption.value(), "Closed...");
    EXPECT_TRUE(loader.controls.cmbComPort.Enabled);
    EXPECT_FALSE(loader.state.OperationActive);
    EXPECT_FALSE(loader.state.TerminalMode);
    EXPECT_EQ(waitDialog.open, nullptr);
    const auto boxesBefore = boxes.shown.size();
    const QString textBefore = console();
    loop.runFor(30s);
    EXPECT_EQ(boxes.shown.size(), boxesBefore) << "a timer was left armed";
    EXPECT_EQ(console(), textBefore);
}

} // namespace zrktest
