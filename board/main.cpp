#include "board/program/BoardProgram.h"
#include "board/program/CommandLine.h"
#include "board/program/SampleImages.h"

#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

enum ExitStatus { kSuccess = 0, kFailure = 1, kUsage = 2 };

void run(zrkboard::ProgramOptions options) {
    if (options.help) {
        std::cout << zrkboard::helpText();
    } else if (options.version) {
        std::cout << zrkboard::versionText();
    } else if (options.imagesFolder) {
        zrkboard::writeSampleImages(*options.imagesFolder);
    } else {
        zrkboard::BoardProgram program(std::move(options), std::cout, std::cerr);
        program.run();
    }
}

} // namespace

int main(int argc, char** argv) {
    zrkboard::ProgramOptions options;
    try {
        const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
        options = zrkboard::parseCommandLine(arguments);
    } catch (const std::invalid_argument& error) {
        std::cerr << "zrk-board: " << error.what() << "\nTry zrk-board --help.\n";
        return kUsage;
    }
    try {
        run(std::move(options));
        return kSuccess;
    } catch (const std::exception& error) {
        std::cerr << "zrk-board: " << error.what() << '\n';
        return kFailure;
    }
}
