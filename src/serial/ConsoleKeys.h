#pragma once

#include "controls/Desk.h"
#include "platform/EventLoop.h"
#include "serial/PasteQueue.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <memory>

namespace zrk {

class ComPort;

/// The keyboard of the console: typed and pasted text for the board, Alt+B, and the debug send pair.
class ConsoleKeys {
  public:
    ConsoleKeys(Desk& desk, ComPort& port);

    /// Pulses DTR on Alt alone with B (key code 66); yields during the pulse.
    void txtStatus_KeyDown(int keyCode, bool alt, bool shift, bool control);

    /// Sends the character (code 0 to 255) as one byte, in terminal mode with the port open. Returns the
    /// character that goes into the text, which is always 0: none.
    int txtStatus_KeyPress(int character);

    /// Sends a text as if it were typed, in pieces that the transmit queue takes without blocking; line
    /// ends go out as the Enter key does. Characters without a single-byte code are left out.
    /// Asks first if the text has more than 20 lines, which yields. The first panel shows the progress.
    void paste(const QString& text);
    /// Pastes bytes whose lines end with CR.
    void pasteBytes(const QByteArray& bytes);
    /// Stops a paste; false when none is under way.
    bool stopPaste();

    /// Returns the typed and pasted bytes that the port has not taken yet.
    [[nodiscard]] qsizetype waitingBytes() const { return m_typedAhead.size() + m_pasted.size(); }
    /// Sets how long a paste waits after each line; 0: not at all.
    void setPastePause(std::chrono::milliseconds pause) { m_pasted.setPause(pause); }

    /// In terminal mode with the port open, sends the bytes after what was typed before, in such pieces.
    void send(const QByteArray& bytes);

    /// Switches DTR off for at least 0.1 s; does nothing on a closed port or inside another pulse.
    /// Yields; a port that is closed or lost meanwhile ends it quietly.
    void PulseDtr();

    /// Pulses DTR on an open port; yields. False when the port has no such line. Throws RuntimeFailure
    /// (WrongAnswer) when a serial server refuses.
    [[nodiscard]] bool switchDtrOffAndOn();

    /// Writes the text of txtOut as it stands; a failure is shown as a message box. Yields.
    void cmdOutput_Click();

  private:
    void pump();
    void sendPiece();
    void dropAll();
    [[nodiscard]] bool isAllowed() const;
    [[nodiscard]] bool mayPaste(qsizetype lines, qsizetype bytes);
    void showProgress();
    void endPaste(const QString& remark);

    Desk& m_desk;
    ComPort& m_port;
    PasteQueue m_pasted;
    QString m_progress;      ///< of the paste, as shown; empty: not shown
    QByteArray m_typedAhead; ///< what the transmit queue had no room for yet
    std::unique_ptr<Timer> m_pump;
    bool m_pulsing = false;
};

} // namespace zrk
