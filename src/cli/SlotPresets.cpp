#include "cli/SlotPresets.h"

#include "cli/GivenFile.h"
#include "cli/Options.h"
#include "cli/Plan.h"
#include "cli/UsageError.h"
#include "config/AddressEntry.h"
#include "files/PrintableText.h"
#include "loader/Loader.h"

#include <QDir>
#include <QFileInfo>

namespace zrk {
namespace {

void leaveOutImages(Loader& loader, const Plan& plan, const CliOptions& options, const IniChoice& ini) {
    for (std::size_t i = 0; i < kSlots.size(); ++i) {
        if (!options.leftOut[i])
            continue;
        if (!plan.isNamed(static_cast<int>(i)))
            throw UsageError(QStringLiteral("--without %1 has no effect: %2 names no such image.")
                                 .arg(QLatin1String(kSlots[i].option), printableText(ini.path)));
        loader.iniLoader.emptySlot(static_cast<int>(i));
    }
}

/// Fills a slot as an INI value does, but relative to the user's folder, and with an error instead of the
/// window's display of a fault.
void presetSlot(Loader& loader, int slot, const QString& value) {
    const auto [file, address] = GivenFile::parse(value);
    if (const QString problem = fileProblem(file); !problem.isEmpty())
        throw UsageError(QStringLiteral("%1 %2: %3.").arg(slotOption(slot), printableText(file), problem));
    const QString fault = addressFault(slot, address);
    if (!fault.isEmpty())
        throw UsageError(QStringLiteral("%1: %2").arg(slotOption(slot), fault));
    loader.iniLoader.applyFile(slot, QDir::toNativeSeparators(QFileInfo(file).absoluteFilePath()), address);
}

} // namespace

void presetSlots(Loader& loader, const Plan& plan, const CliOptions& options, const IniChoice& ini) {
    const QString problem = options.program.iniPath.isEmpty() ? QString() : fileProblem(ini.path);
    if (!problem.isEmpty())
        throw UsageError(
            QStringLiteral("--ini %1: %2.").arg(printableText(options.program.iniPath), problem));
    loader.state.IniPath = ini.path;
    loader.iniLoader.mnuLoadIni_Click();
    leaveOutImages(loader, plan, options, ini);
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const QString& value = options.slotValues[static_cast<std::size_t>(slot)];
        if (!value.isEmpty())
            presetSlot(loader, slot, value);
    }
}

} // namespace zrk
