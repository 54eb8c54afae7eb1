#include "app/ConsoleView.h"
#include "fuzz/Fuzz.h"

#include <QApplication>

#include <algorithm>

// Input: a byte of choice, a counted piece of the loader's text, then what the board says.

namespace {

using namespace zrkfuzz;
using zrk::ConsoleDisplay;
using zrk::TextOrigin;

constexpr unsigned kInputsPerView = 64;

/// The document, as the edits make it.
class Document {
  public:
    void show(const QString& text, TextOrigin origin) {
        const ConsoleDisplay::Edit edit = m_display.show(text, origin);
        require(edit.removed >= 0 && edit.removed <= m_text.size() - (m_text.lastIndexOf('\n') + 1),
                "only the last line changes");
        m_text.chop(edit.removed);
        for (const ConsoleDisplay::Run& run : edit.inserted)
            m_text += run.text;
    }

    void check() const {
        for (const QChar character : m_text)
            require(character == '\n' || character == '\t' || character == zrk::visibleSign(character),
                    "only what has a glyph is shown");
        for (const auto& line : QStringView(m_text).split('\n'))
            require(line.size() <= static_cast<qsizetype>(ConsoleDisplay::kLongestLine),
                    "no line is longer than a document can lay out");
        require(m_display.original(m_text, 0).size() <= m_text.size(), "what is copied is no longer");
    }

    [[nodiscard]] const QString& text() const { return m_text; }

  private:
    ConsoleDisplay m_display;
    QString m_text;
};

QApplication& application() {
    static int count = 1;
    static char name[] = "fuzz";
    static char* arguments[]{name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: after main() it would look for parts of Qt that are gone.
    static auto* const made = new QApplication(count, arguments);
    return *made;
}

void checkView(const QString& loaders, const QByteArray& boards, unsigned seed, QString expected) {
    application();
    zrk::ConsoleView view;
    view.resize(300, 100);
    view.follow(loaders, TextOrigin::Loader);
    for (const QByteArray& piece : piecesOf(boards, seed))
        view.follow(QString::fromLatin1(piece), TextOrigin::Board);
    expected.replace(QChar::Nbsp, ' '); // as plain text has it
    require(view.toPlainText() == expected, "the view shows the document");
}

} // namespace

// Fonts that are read once are kept until the end.
extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libfontconfig\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const unsigned choice = input.byte();
    const QString loaders = QString::fromLatin1(input.counted());
    const QByteArray boards = input.rest();
    Document whole;
    whole.show(loaders, TextOrigin::Loader);
    whole.show(QString::fromLatin1(boards), TextOrigin::Board);
    whole.check();
    Document pieces;
    pieces.show(loaders, TextOrigin::Loader);
    for (const QByteArray& piece : piecesOf(boards, choice))
        pieces.show(QString::fromLatin1(piece), TextOrigin::Board);
    require(pieces.text() == whole.text(), "pieces show what the whole does");
    // Not by the input: those that reach more code are kept, and a view costs as much as a hundred documents.
    // A single input, which is looked at again, is the first one.
    static unsigned inputs = 0;
    if (inputs++ % kInputsPerView == 0)
        checkView(loaders, boards, choice, whole.text());
    return 0;
}
