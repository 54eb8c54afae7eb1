#include "app/ConsoleView.h"
#include "fuzz/Fuzz.h"

#include <QApplication>

#include <algorithm>

// Input: a byte of choice, then text, in which a backslash in front of a piece removes a character.

namespace {

using namespace zrkfuzz;
using zrk::ConsoleDisplay;

constexpr unsigned kInputsPerView = 64;

/// A text and its document, as the edits make them.
class Document {
  public:
    void edit(QString inserted) {
        const qsizetype removed = inserted.startsWith('\b') && !m_text.isEmpty() ? 1 : 0;
        inserted.remove(0, removed);
        m_text.chop(removed);
        m_text += inserted;
        const ConsoleDisplay::Edit edit = m_display.follow(m_text, removed, inserted.size());
        // A character and the break before it, or the sign of a CR that has become a line end.
        require(edit.removed >= 0 && edit.removed <= std::min<qsizetype>(2 + removed, m_shown.size()),
                "only the end changes");
        m_shown.chop(edit.removed);
        m_shown += edit.inserted;
    }

    void check() const {
        for (const QChar character : m_shown)
            require(character == '\n' || character == '\t' || character == zrk::visibleSign(character),
                    "only what has a glyph is shown");
        for (const auto& line : QStringView(m_shown).split('\n'))
            require(line.size() <= ConsoleDisplay::kLongestLine + 1,
                    "no line is longer than a document can lay out");
        ConsoleDisplay whole;
        require(whole.follow(m_text, 0, m_text.size()).inserted == m_shown, "edits show what the whole does");
        const QString copied = m_display.original(m_shown, 0);
        require(copied == whole.original(m_shown, 0) && copied.size() <= m_text.size(),
                "what is copied is the text");
    }

    [[nodiscard]] const QString& text() const { return m_text; }
    [[nodiscard]] const QString& shown() const { return m_shown; }

  private:
    ConsoleDisplay m_display;
    QString m_text;
    QString m_shown;
};

QApplication& application() {
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[]{name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: after main() it would use parts of Qt that are gone.
    static auto* const made = new QApplication(count, arguments);
    return *made;
}

void checkView(const Document& document) {
    application();
    zrk::ConsoleView view;
    view.resize(300, 100);
    view.showAnew(document.text());
    QString expected = document.shown();
    expected.replace(QChar::Nbsp, ' '); // as plain text has it
    require(view.toPlainText() == expected, "the view shows the document");
}

} // namespace

// Fonts are read once and kept until the end.
extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libfontconfig\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const unsigned choice = input.byte();
    Document document;
    for (const QByteArray& piece : piecesOf(input.rest(), choice))
        document.edit(QString::fromLatin1(piece));
    document.check();
    // Not chosen by the input: those that reach more code are kept, and a view costs as much as a hundred
    // documents. A single input, as in a second run after a failure, is the first one.
    static unsigned inputs = 0;
    if (inputs++ % kInputsPerView == 0)
        checkView(document);
    return 0;
}
