#include "machine/InterruptSignal.h"

#include <QApplication>
#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace {

/// The fonts that a window gets, independent of the machine's: others of the same size are higher by a fifth.
constexpr const char* kFonts = R"(<?xml version="1.0"?>
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <cachedir prefix="xdg">fontconfig</cachedir>
  <match><edit name="family" mode="append" binding="weak"><string>DejaVu Sans</string></edit></match>
  <match target="pattern"><edit name="hintstyle" mode="assign"><const>hintslight</const></edit></match>
  <alias binding="same"><family>sans-serif</family><prefer><family>DejaVu Sans</family></prefer></alias>
  <alias binding="same"><family>sans</family><prefer><family>DejaVu Sans</family></prefer></alias>
  <alias binding="same"><family>monospace</family><prefer><family>DejaVu Sans Mono</family></prefer></alias>
</fontconfig>
)";

} // namespace

int main(int argc, char** argv) {
    // Also when the tests are only listed, on a machine without a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryFile fonts;
    if (fonts.open() && fonts.write(kFonts) > 0 && fonts.flush())
        qputenv("FONTCONFIG_FILE", fonts.fileName().toLocal8Bit());
    zrk::InterruptSignal::hold(); // before a library starts threads
    const QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
