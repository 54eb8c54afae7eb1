#include "Benches.h"
#include "Soak.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    try {
        // zrk-bench boards N: only this, over and over if the shell likes
        if (argc == 3 && std::string_view(argv[1]) == "boards") {
            zrkbench::benchBoards(std::max(1, std::atoi(argv[2])));
            return 0;
        }
        // zrk-bench soak [--runs N] [--seed S] [--pty N] [--jobs N]: status 1 when a run ended wrongly
        if (argc >= 2 && std::string_view(argv[1]) == "soak")
            return zrkbench::benchSoak(zrkbench::soakOptions({argv + 2, argv + argc})) ? 0 : 1;
        zrkbench::benchPacedLine();
        zrkbench::benchPeers();
        zrkbench::benchUnpaced();
        zrkbench::benchIdleWait();
        zrkbench::benchMemory();
        zrkbench::benchBoards(8);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zrk-bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
