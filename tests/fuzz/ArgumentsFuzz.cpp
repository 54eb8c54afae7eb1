#include "cli/Options.h"
#include "cli/Plan.h"
#include "cli/UsageError.h"
#include "fuzz/LoaderUnderFuzz.h"
#include "loader/ThisProgram.h"

#include <cstdio>

// Input: the arguments, a line for each.

namespace {

using namespace zrkfuzz;
using namespace std::chrono_literals;

void checkLimit(const zrk::Limits::Limit& limit) {
    require(!limit || (*limit >= 1ms && *limit <= 24h), "a limit is within its range");
}

void check(const zrk::CliOptions& options) {
    require(!options.steps.empty(), "there is a step");
    require(options.program.portNumber >= 1 && options.program.portNumber <= 8, "a port has a number");
    require(options.ports.empty() || options.ports.size() > 1, "several boards are more than one");
    const zrk::Limits& limits = options.limits;
    for (const auto& limit :
         {limits.run, limits.wait, limits.waitPort, limits.flash, limits.expect, limits.script})
        checkLimit(limit);
    checkLimit(limits.start);
    checkLimit(limits.onWait);
}

/// Makes the plan, which finds what is wrong before anything is sent.
void plan(const zrk::CliOptions& options) {
    LoaderUnderFuzz under;
    for (std::size_t slot = 0; slot < options.slotValues.size(); ++slot)
        under.loader.iniLoader.applyValue(static_cast<int>(slot), options.slotValues[slot]);
    under.loader.controls.cmbComPort.ListIndex = options.program.portNumber - 1;
    const zrk::IniChoice ini{QStringLiteral("/none.INI"), QStringLiteral("/")};
    zrk::Plan plan(under.loader, options.steps, ini, options.dtr.has_value());
    require(!plan.stepsText().isEmpty(), "steps have names");
    plan.check();
    (void)plan.warnings();
    require(plan.announcement().isEmpty() == !plan.usesPort(), "what uses the port is announced");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    // The output of --help is not a finding.
    return std::freopen("/dev/null", "w", stdout) == nullptr ? 1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    QStringList arguments{QStringLiteral("zrk-loader-cli")};
    while (!input.isEmpty())
        arguments += QString::fromUtf8(input.line());
    writeFile("a", "image");
    try {
        const auto options = zrk::parseCommandLine(arguments, QStringLiteral("0"), [](const QByteArray&) {});
        if (!options)
            return 0;
        check(*options);
        plan(*options);
    } catch (const zrk::UsageError& error) {
        require(*error.what() != '\0', "a usage error says what is wrong");
    }
    return 0;
}
