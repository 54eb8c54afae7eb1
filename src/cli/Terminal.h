#pragma once

#include "controls/ConsoleText.h"
#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"

#include <QString>

namespace zrk {

class TerminalQuestion;

/// A line on standard error; CR LF in it becomes the system's line end.
void tell(const QString& text);

/// Writes everything that the console shows to standard output, as it is shown.
void copyToStandardOutput(ConsoleText& console);

/// Message boxes as lines on standard error. A question is asked on the terminal; where there is none
/// the answer is Yes.
class TerminalMessages final : public MessageBoxes {
  public:
    explicit TerminalMessages(TerminalQuestion& question) : m_question(question) {}

    Answer show(const MessageBox& box) override;

  private:
    TerminalQuestion& m_question;
};

/// Nobody is there to choose a file.
class NoFileDialog final : public FileDialog {
  public:
    [[nodiscard]] QString openFile(const FileRequest& /*request*/) override { return {}; }
};

} // namespace zrk
