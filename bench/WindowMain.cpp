#include "FigureTable.h"
#include "QuietLoader.h"
#include "TerminalBench.h"
#include "app/App.h"

#include <QApplication>
#include <QEvent>
#include <QPlainTextEdit>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string_view>

namespace {

using Clock = std::chrono::steady_clock;

/// Ends the program when a text has been painted for the first time, and prints how many milliseconds that
/// took.
class FirstPaint final : public QObject {
  public:
    FirstPaint(QObject& application, Clock::time_point start) : m_start(start) {
        application.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const bool text =
            watched->parent() != nullptr && watched->parent()->objectName() == QLatin1String("txtStatus");
        if (text && event->type() == QEvent::Paint && !m_seen) {
            m_seen = true;
            QTimer::singleShot(0, this, [this] {
                const std::chrono::duration<double, std::milli> taken = Clock::now() - m_start;
                std::printf("%.1f\n", taken.count());
                std::fflush(stdout);
                std::_Exit(0); // the missing-INI box may stand in the way of an ordinary end
            });
        }
        return false;
    }

  private:
    Clock::time_point m_start;
    bool m_seen = false;
};

/// A catalog of a machine without ports.
struct NoPorts final : zrk::PortCatalog {
    [[nodiscard]] std::vector<zrk::PortEntry> ports() const override { return {}; }
};

/// The loader's window as the program shows it.
struct Viewer {
    explicit Viewer(zrkbench::QuietLoader& quiet)
        : window(quiet.loader(), catalog, quiet.folder() + QStringLiteral("/window.conf"), [] {}) {
        window.show();
        QApplication::processEvents();
    }

    /// Throws unless the window shows the console's text, apart from line ends.
    void requireText(zrkbench::QuietLoader& quiet) const {
        const auto* text = window.findChild<QPlainTextEdit*>(QStringLiteral("txtStatus"));
        const qsizetype all = quiet.loader().controls.txtStatus.text().size();
        if (text == nullptr || text->document()->characterCount() < all / 10 * 9)
            throw std::runtime_error("the window does not have the console's text");
    }

    NoPorts catalog;
    zrk::MainWindow window;
};

void benchTerminal() {
    {
        zrkbench::QuietLoader quiet(QStringLiteral("/nonexistent/port"));
        const Viewer viewer(quiet);
        zrkbench::benchChunks(quiet, "window", [] { QApplication::processEvents(); });
        viewer.requireText(quiet);
    }
    zrkbench::benchTerminalSpeed(
        "window", [](zrkbench::QuietLoader& quiet) { return std::make_shared<Viewer>(quiet); });
}

} // namespace

/// Runs a mode: "terminal": rows of the table; "bare": a window with an empty text; else the loader's window.
int main(int argc, char** argv) {
    const auto start = Clock::now();
    const std::string_view mode = argc > 1 ? argv[1] : "";
    QApplication application(argc, argv);
    try {
        if (mode == "terminal") {
            benchTerminal();
            return 0;
        }
        const FirstPaint firstPaint(application, start);
        if (mode == "bare") {
            QPlainTextEdit text;
            text.setObjectName(QStringLiteral("txtStatus"));
            text.show();
            return QApplication::exec();
        }
        zrk::App app({});
        app.start();
        return QApplication::exec();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zrk-bench-window: %s\n", error.what());
        return 1;
    }
}
