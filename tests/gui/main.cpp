#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Also when the tests are only listed, on a machine without a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
