#include "cli/Steps.h"

#include "cli/BoardSteps.h"
#include "cli/ListeningSteps.h"
#include "cli/Output.h"
#include "cli/PortsStep.h"
#include "cli/UsageError.h"
#include "loader/Loader.h"

#include <algorithm>
#include <string_view>

namespace zrk {
namespace {

const StepFacts& stepNamed(const QString& name) {
    const auto steps = allSteps();
    const auto found = std::find_if(steps.begin(), steps.end(), [&name](const StepFacts& step) {
        return name == QLatin1String(step.name);
    });
    if (found == steps.end())
        throw UsageError(QStringLiteral("Unknown step \"%1\": the steps are %2.")
                             .arg(name, stepNames(QStringLiteral("and"))));
    return *found;
}

} // namespace

std::span<const StepFacts> allSteps() {
    // clang-format off
    static const std::vector<StepFacts> all{
        {.name = "load", .help = "load the primary boot and the secondary executable",
         .usesPort = true, .checksAddresses = true, .images = {kPrimaryBoot, kSecondaryExecutable},
         .isBasic = true, .require = requireForLoad, .run = load},
        {.name = "download", .help = "download the images of --uboot, --rootfs, --kernel",
         .usesPort = true, .checksAddresses = true, .commandsPrimaryBoot = true, .images = {kUBoot, kRootFs, kKernel},
         .isBasic = true, .require = requireForDownload, .run = download},
        {.name = "start", .help = "start the secondary executable; confirm with expect",
         .usesPort = true, .commandsPrimaryBoot = true, .isBasic = true, .require = requireForStart, .run = start},
        {.name = "reset", .help = "pulse DTR, which resets a board wired to it",
         .usesPort = true, .require = requireForReset, .run = reset},
        {.name = "check", .help = "check the SDRAM addresses and print their list",
         .checksAddresses = true, .require = requireNothing, .run = check},
        {.name = "flash", .help = "program the flash image into the NAND flash",
         .usesPort = true, .images = {kPgSibl, kFlashImage}, .isBasic = true, .require = requireForFlash, .run = flash},
        {.name = "expect", .argument = "TEXT", .help = "print the board's output until TEXT has come",
         .usesPort = true, .awaitsProgram = true, .isBasic = true, .require = requireText, .run = expect},
        {.name = "script", .argument = "FILE", .help = "run a script (>text sends, <text waits, /n: Enter)",
         .usesPort = true, .awaitsProgram = true, .isBasic = true, .require = requireScript, .run = script},
        {.name = "verify", .argument = "COMMAND",
         .help = "compare the board's checksums with what was sent,\n"
                 "                             for example verify \"crc32 %a %n\" at its prompt",
         .usesPort = true, .awaitsProgram = true, .require = requireVerify, .run = verify},
        {.name = "terminal", .help = "raw terminal until Ctrl-] or the end of input",
         .usesPort = true, .ownsStreams = true, .isBasic = true, .require = requireNothing, .run = terminal},
        {.name = "ports", .help = "list the machine's serial ports; stands alone",
         .standsAlone = true, .isBasic = true, .require = requireNothing, .run = listPorts},
    };
    // clang-format on
    return all;
}

bool sends(const StepFacts& step, int slot) {
    return std::find(step.images.cbegin(), step.images.cend(), slot) != step.images.cend();
}

bool concerns(const StepFacts& step, int slot) {
    const bool lists = std::string_view(step.name) == "check" && factsOf(slot).memory == Memory::Sdram;
    return lists || sends(step, slot);
}

bool StepRun::ranOut() const {
    return loader.operation.outcome() == Outcome::LimitReached && !limitReached;
}

void noteLimit(const StepRun& run, const char* limitOption) {
    if (run.ranOut())
        run.output.noteLimit(QString::fromLatin1(limitOption).remove(QStringLiteral("--")));
}

ExitStatus toldEnd(const StepRun& run, const char* limitOption) {
    const Outcome outcome = run.loader.operation.outcome();
    const QString failure = run.loader.operation.failure();
    noteLimit(run, limitOption);
    if (!failure.isEmpty())
        run.output.tell(run.ranOut()
                            ? QStringLiteral("%1 ran out: %2").arg(QLatin1String(limitOption), failure)
                            : failure);
    return exitStatusOf(outcome);
}

StepList stepsOf(const QStringList& words) {
    StepList steps;
    for (qsizetype i = 0; i < words.size(); ++i) {
        StepCall call{&stepNamed(words[i]), {}};
        if (*call.facts->argument != '\0') {
            if (++i == words.size())
                throw UsageError(
                    QStringLiteral("%1: missing argument %2.")
                        .arg(QLatin1String(call.facts->name), QLatin1String(call.facts->argument)));
            call.argument = words[i];
        }
        steps.push_back(call);
    }
    return steps;
}

QString stepNames(const QString& lastWord) {
    QStringList names;
    for (const StepFacts& step : allSteps())
        names += QString::fromLatin1(step.name);
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + QStringLiteral(" %1 %2").arg(lastWord, last);
}

} // namespace zrk
