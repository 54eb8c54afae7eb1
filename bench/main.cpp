#include "Benches.h"
#include "BusyProcesses.h"
#include "FigureTable.h"
#include "Soak.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

struct Part {
    const char* name;
    void (*run)();
};

constexpr int kBoards = 8;
constexpr Part kParts[] = {
    {"line", zrkbench::benchLine},
    {"peers", zrkbench::benchPeers},
    {"cost", zrkbench::benchCost},
    {"wait", zrkbench::benchIdleWait},
    {"reaction", zrkbench::benchReaction},
    {"cancel", zrkbench::benchCancel},
    {"window", zrkbench::benchWindow},
    {"memory", zrkbench::benchMemory},
    {"boards", [] { zrkbench::benchBoards(kBoards); }},
};

/// Prints the table, or only some parts of it: zrk-bench [--busy N] [PART]..., beside N processes that take
/// all the processor time they can get. Returns status 1 if a part could not be measured.
int printTable(std::vector<std::string> arguments, int argc, char** argv) {
    int busy = 0;
    if (arguments.size() >= 2 && arguments[0] == "--busy") {
        busy = std::stoi(arguments[1]);
        arguments.erase(arguments.begin(), arguments.begin() + 2);
    }
    std::vector<Part> parts;
    for (const std::string& name : arguments) {
        const auto* part = std::ranges::find(kParts, name, &Part::name);
        if (part == std::end(kParts))
            throw std::invalid_argument("unknown part \"" + name + "\"");
        parts.push_back(*part);
    }
    if (parts.empty())
        parts.assign(std::begin(kParts), std::end(kParts));
    const zrkbench::BusyProcesses burners(busy);
    const QCoreApplication app(argc, argv);
    zrkbench::FigureTable::begin();
    int status = 0;
    for (const Part& part : parts) {
        try {
            part.run();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "zrk-bench %s: %s\n", part.name, error.what());
            status = 1;
        }
    }
    return status;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        // zrk-bench soak [--runs N] [--seed S] [--pty N] [--jobs N]: status 1 when a run ended wrongly
        if (!arguments.empty() && arguments[0] == "soak") {
            const QCoreApplication app(argc, argv);
            return zrkbench::benchSoak(zrkbench::soakOptions({arguments.begin() + 1, arguments.end()})) ? 0
                                                                                                        : 1;
        }
        return printTable(std::move(arguments), argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zrk-bench: %s\n", error.what());
        return 1;
    }
}
