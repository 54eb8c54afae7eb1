#include "SoakEnd.h"

#include <algorithm>
#include <cstdio>

namespace zrkbench {
namespace {

using zrkboard::WireFault;

bool changesBytes(const MetFault& fault) {
    return fault.kind != WireFault::Delay && fault.kind != WireFault::HangUp;
}

/// Returns whether the fault changes a byte that arrives.
bool alters(const MetFault& fault) {
    return fault.kind == WireFault::Flip || fault.kind == WireFault::Replace ||
           fault.kind == WireFault::WrongAnswer;
}

bool takesAway(const MetFault& fault) {
    return fault.kind == WireFault::Loss || fault.kind == WireFault::Silence;
}

template <typename Condition>
bool any(const SoakEnd& end, Condition condition) {
    return std::any_of(end.faults.begin(), end.faults.end(), condition);
}

/// Checks a run that reports "done".
QString wronglyDone(const SoakPlan& plan, const SoakEnd& end) {
    if (!end.sent.isEmpty() && end.sent != plan.stream)
        return QStringLiteral("done, and the loader itself sent something else");
    if (!end.intact && !any(end, changesBytes))
        return QStringLiteral("done over a damaged image that the wire did not damage");
    if (any(end, [](const MetFault& fault) { return fault.kind == WireFault::HangUp; }))
        return QStringLiteral("done over a line that hung up");
    // With several faults, one may make up for another: only a single one has a certain result.
    if (end.faults.size() != 1)
        return {};
    const MetFault& fault = end.faults.front();
    if (!fault.toBoard && fault.exact && alters(fault))
        return QStringLiteral("done after a wrong answer");
    if (!fault.toBoard && fault.exact && takesAway(fault))
        return QStringLiteral("done without an answer");
    if (fault.toBoard && takesAway(fault))
        return QStringLiteral("done though the board lacks a byte");
    return {};
}

} // namespace

QString wrongEnd(const SoakPlan& plan, const SoakEnd& end) {
    if (end.status == QLatin1String("hung") || end.status == QLatin1String("crashed"))
        return end.status;
    if (!end.leftBehind.isEmpty())
        return QStringLiteral("left behind: ") + end.leftBehind.join(QStringLiteral(", "));
    const auto needs = [&end](const char* status, bool reason) {
        return end.status == QLatin1String(status) && !reason;
    };
    const bool hungUp = any(end, [](const MetFault& fault) { return fault.kind == WireFault::HangUp; });
    const bool faulty = !end.faults.empty();
    if (end.status == QLatin1String("done"))
        return wronglyDone(plan, end);
    if (end.mustBeCancelled && end.status != QLatin1String("cancelled") && !hungUp)
        return QStringLiteral("\"%1\" despite a cancel").arg(end.status);
    if (needs("cancelled", end.cancelled) || needs("port lost", hungUp) || needs("timed out", faulty) ||
        needs("wrong answer", faulty) || needs("refused", end.refusalHeard) ||
        needs("limit reached", faulty && !end.limited) || needs("no answer", faulty))
        return QStringLiteral("\"%1\" without a reason").arg(end.status);
    static const QStringList kKnown{QStringLiteral("cancelled"), QStringLiteral("port lost"),
                                    QStringLiteral("timed out"), QStringLiteral("wrong answer"),
                                    QStringLiteral("refused"),   QStringLiteral("limit reached"),
                                    QStringLiteral("no answer")};
    if (!kKnown.contains(end.status))
        return QStringLiteral("ended with \"%1\"").arg(end.status);
    if (hungUp && end.faults.size() == 1 && !end.cancelled && end.status != QLatin1String("port lost"))
        return QStringLiteral("\"%1\" for a line that hung up").arg(end.status);
    return {};
}

QString unnoticedDamage(const SoakPlan& plan, const SoakEnd& end) {
    if (end.status != QLatin1String("done"))
        return {};
    const auto touched = std::find_if(end.faults.begin(), end.faults.end(), [](const MetFault& fault) {
        return fault.toBoard && changesBytes(fault);
    });
    if (end.intact) {
        const bool answer = any(end, [](const MetFault& fault) { return !fault.toBoard && alters(fault); });
        return answer ? QStringLiteral("none, but an answer was another") : QString();
    }
    if (touched == end.faults.end())
        return QStringLiteral("answer");
    if (touched->position >= plan.parts.size())
        return QStringLiteral("after the last byte");
    switch (plan.parts[touched->position]) {
    case Part::Command:
        return QStringLiteral("command");
    case Part::Address:
        return QStringLiteral("address");
    case Part::Size:
        return QStringLiteral("size");
    case Part::Code:
        return QStringLiteral("code");
    case Part::EraseFlag:
        return QStringLiteral("erase flag");
    case Part::Frame:
        break;
    }
    return QStringLiteral("frame");
}

void SoakTable::add(const SoakPlan& plan, const SoakEnd& end) {
    ++runs;
    faulty += end.faults.empty() ? 0 : 1;
    ++statuses[end.status];
    if (const QString where = unnoticedDamage(plan, end); !where.isEmpty())
        ++unnoticed[where];
    if (const QString what = wrongEnd(plan, end); !what.isEmpty())
        wrong[what].push_back(plan.seed);
}

void SoakTable::print(const char* title) const {
    const auto section = [](const char* name, const std::map<QString, int>& rows) {
        std::printf("  %s\n", name);
        if (rows.empty())
            std::printf("    %-48s %6d\n", "none", 0);
        for (const auto& [row, count] : rows)
            std::printf("    %-48s %6d\n", qPrintable(row), count);
    };
    std::printf("%s: %d runs, %d of them met a fault\n", title, runs, faulty);
    section("ended", statuses);
    section("damaged under \"done\", by where", unnoticed);
    std::map<QString, int> counts;
    for (const auto& [what, seeds] : wrong) {
        constexpr std::size_t kMostSeeds = 5;
        QString row = what + QStringLiteral(" (seed");
        for (std::size_t i = 0; i < std::min(seeds.size(), kMostSeeds); ++i)
            row += QStringLiteral(" %1").arg(seeds[i]);
        counts[row + QStringLiteral(")")] = static_cast<int>(seeds.size());
    }
    section("wrong ends", counts);
    std::fflush(stdout);
}

} // namespace zrkbench
