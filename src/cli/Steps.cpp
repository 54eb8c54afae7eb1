#include "cli/Steps.h"

#include "cli/BoardSteps.h"
#include "cli/ListeningSteps.h"
#include "cli/Output.h"
#include "cli/PortsStep.h"
#include "cli/UsageError.h"
#include "loader/Loader.h"

#include <algorithm>

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
        {"load", "", "load the primary boot and the secondary executable",
         true, true, false, false, {kPrimaryBoot, kSecondaryExecutable}, requireForLoad, load},
        {"download", "", "load the given ones of --uboot, --rootfs, --kernel",
         true, true, false, false, {kUBoot, kRootFs, kKernel}, requireForDownload, download},
        {"start", "", "start the secondary executable; only an expect or\n"
         "                             a script behind it can tell whether it runs",
         true, false, false, false, {}, requireForStart, start},
        {"check", "", "check the SDRAM addresses and print their list",
         false, true, false, false, {}, requireNothing, check},
        {"flash", "", "program the flash image into the NAND flash",
         true, false, false, false, {kPgSibl, kFlashImage}, requireForFlash, flash},
        {"expect", "TEXT", "print what the board says until TEXT has come",
         true, false, true, false, {}, requireText, expect},
        {"script", "FILE", "run a script (>text sends, <text waits, /n: Enter)",
         true, false, true, false, {}, requireScript, script},
        {"verify", "COMMAND", "compare the board's checksums with what was sent,\n"
         "                             for example verify \"crc32 %a %n\" at its prompt",
         true, false, true, false, {}, requireVerify, verify},
        {"terminal", "", "raw terminal until Ctrl-] or the end of input",
         true, false, false, true, {}, requireNothing, terminal},
        {"ports", "", "list the machine's serial ports; opens none",
         false, false, false, false, {}, requireNothing, listPorts},
    };
    // clang-format on
    return all;
}

bool StepRun::ranOut() const {
    return loader.operation.outcome() == Outcome::LimitReached && !limitReached;
}

ExitStatus toldEnd(const StepRun& run, const char* limitOption) {
    const Outcome outcome = run.loader.operation.outcome();
    const QString failure = run.loader.operation.failure();
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
                    QStringLiteral("The step %1 needs a %2 behind it.")
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
