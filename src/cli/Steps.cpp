#include "cli/Steps.h"

#include "cli/Output.h"
#include "cli/Plan.h"
#include "cli/UsageError.h"
#include "loader/Loader.h"

#include <algorithm>

namespace zrk {
namespace {

void requireForLoad(const Plan& plan) {
    if (plan.isNamed(kPrimaryBoot) || !plan.isSelected(kSecondaryExecutable))
        plan.requireFile(kPrimaryBoot);
    if (plan.isNamed(kSecondaryExecutable))
        plan.requireFile(kSecondaryExecutable);
}

ExitStatus load(Loader& loader, Output& /*output*/) {
    loader.bringUp.cmdStartPrimary_Click();
    return exitStatusOf(loader.operation.outcome());
}

/// A program that was loaded by an earlier run may be started, too.
void requireForStart(const Plan& plan) {
    if (plan.has("load"))
        plan.requireFile(kSecondaryExecutable);
}

ExitStatus start(Loader& loader, Output& /*output*/) {
    loader.bringUp.startWithoutTerminal();
    return exitStatusOf(loader.operation.outcome());
}

ExitStatus check(Loader& loader, Output& output) {
    const bool valid = loader.validation.ValidateAddresses();
    const auto line = [&output](const QString& index, const QString& start, const QString& size,
                                const QString& name) {
        output.console(index.leftJustified(7) + start.leftJustified(12) + size.leftJustified(12) + name +
                       QStringLiteral("\r\n"));
    };
    line(QStringLiteral("index"), QStringLiteral("start"), QStringLiteral("size"), QString());
    for (const AddressList::Row& row : loader.controls.lvwAdrs.rows())
        line(row.index, row.start, row.size,
             loader.state.SlotNames.at(static_cast<std::size_t>(row.index.toInt())));
    return valid ? ExitStatus::Done : ExitStatus::Usage;
}

void requireForFlash(const Plan& plan) {
    plan.requireFile(kPgSibl);
    plan.requireFile(kFlashImage);
}

ExitStatus flash(Loader& loader, Output& output) {
    loader.flash.cmdPrgFlash_Click();
    if (loader.state.FlashStateUnknown)
        output.tell(kFlashStateUnknownText);
    return exitStatusOf(loader.operation.outcome());
}

void requireNothing(const Plan& /*plan*/) {}

} // namespace

std::span<const StepFacts> allSteps() {
    static const std::vector<StepFacts> all{
        {"load",
         "load the primary boot and the secondary executable",
         true,
         true,
         {kPrimaryBoot, kSecondaryExecutable},
         requireForLoad,
         load},
        {"start", "start the loaded secondary executable", true, false, {}, requireForStart, start},
        {"check",
         "check the SDRAM addresses and print the address list",
         false,
         true,
         {},
         requireNothing,
         check},
        {"flash",
         "program the flash image into the board's NAND flash",
         true,
         false,
         {kPgSibl, kFlashImage},
         requireForFlash,
         flash},
    };
    return all;
}

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

QString stepNames(const QString& lastWord) {
    QStringList names;
    for (const StepFacts& step : allSteps())
        names += QString::fromLatin1(step.name);
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + QStringLiteral(" %1 %2").arg(lastWord, last);
}

} // namespace zrk
