#pragma once

#include "platform/FileDialog.h"
#include "platform/MessageBoxes.h"

namespace zrk {

class Output;
class YesNoQuestion;

/// Message boxes as lines on standard error. A question is asked on the terminal; where there is none
/// the answer is Yes.
class MessageLines final : public MessageBoxes {
  public:
    MessageLines(Output& output, YesNoQuestion& question) : m_output(output), m_question(question) {}

    Answer show(const MessageBox& box) override;

    /// From now on every question counts as answered with Yes.
    void stopAsking() { m_mayAsk = false; }

    /// The same, and no question is printed any more: a limit has answered it.
    void answerSilently() {
        m_mayAsk = false;
        m_isSilent = true;
    }

    /// Ends both.
    void askAgain() {
        m_mayAsk = true;
        m_isSilent = false;
    }

    /// True while a question is open, whose line nothing may write over.
    [[nodiscard]] bool isAsking() const { return m_asking; }

  private:
    Output& m_output;
    YesNoQuestion& m_question;
    bool m_mayAsk = true;
    bool m_isSilent = false;
    bool m_asking = false;
};

/// Nobody is there to choose a file.
class NoFileDialog final : public FileDialog {
  public:
    [[nodiscard]] QString openFile(const FileRequest& /*request*/) override { return {}; }
};

} // namespace zrk
