#include "Benches.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    try {
        zrkbench::benchPacedLine();
        zrkbench::benchUnpaced();
        zrkbench::benchIdleWait();
        zrkbench::benchMemory();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zrk-bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
