#pragma once

#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"

namespace zrk {

class Output;
class YesNoQuestion;

/// Message boxes as lines on standard error. A question is asked on the terminal; without one the answer is
/// Yes.
class MessageLines final : public MessageBoxes {
  public:
    MessageLines(Output& output, YesNoQuestion& question) : m_output(output), m_question(question) {}

    Answer show(const MessageBox& box) override;

    /// Answers every question with Yes from now on.
    void stopAsking() { m_mayAsk = false; }

    /// Does the same, and prints no further question: a limit has answered it.
    void answerSilently() {
        m_mayAsk = false;
        m_isSilent = true;
    }

    /// Ends both.
    void askAgain() {
        m_mayAsk = true;
        m_isSilent = false;
    }

    /// Returns true while a question is open, whose line must not be overwritten.
    [[nodiscard]] bool isAsking() const { return m_asking; }

  private:
    Output& m_output;
    YesNoQuestion& m_question;
    bool m_mayAsk = true;
    bool m_isSilent = false;
    bool m_asking = false;
};

/// A file dialog that is always cancelled, since the command line has none.
class NoFileDialog final : public FileDialog {
  public:
    [[nodiscard]] QString openFile(const FileRequest& /*request*/) override { return {}; }
};

} // namespace zrk
