#pragma once

#include "controls/ConsoleText.h"
#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"

#include <QString>

#include <functional>

namespace zrk {

class TerminalQuestion;

/// A line on standard error; CR LF in it becomes the system's line end.
void tell(const QString& text);

/// Writes everything that the console shows to standard output, as it is shown.
/// `before` runs ahead of each piece.
void copyToStandardOutput(ConsoleText& console, std::function<void()> before);

/// Message boxes as lines on standard error. A question is asked on the terminal; where there is none
/// the answer is Yes.
class TerminalMessages final : public MessageBoxes {
  public:
    explicit TerminalMessages(TerminalQuestion& question) : m_question(question) {}

    Answer show(const MessageBox& box) override;

    /// From now on every question counts as answered with Yes.
    void stopAsking() { m_mayAsk = false; }

    /// True while a question is open, whose line nothing may write over.
    [[nodiscard]] bool isAsking() const { return m_asking; }

  private:
    TerminalQuestion& m_question;
    bool m_mayAsk = true;
    bool m_asking = false;
};

/// Nobody is there to choose a file.
class NoFileDialog final : public FileDialog {
  public:
    [[nodiscard]] QString openFile(const FileRequest& /*request*/) override { return {}; }
};

} // namespace zrk
