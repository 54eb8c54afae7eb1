#include "cli/PortRun.h"

#include "cli/ExitStatus.h"
#include "cli/Report.h"
#include "cli/Session.h"
#include "cli/TimeText.h"

#include <algorithm>

namespace zrk {
namespace {

/// Returns whether the machine or the configuration is wrong, so that the next board would fail, too.
bool endsAll(int status) {
    return status == static_cast<int>(ExitStatus::InternalFailure) ||
           status == static_cast<int>(ExitStatus::Usage);
}

} // namespace

void PortRun::run(Session& session) {
    const bool repeats = m_options.repeat && !m_options.dryRun;
    bool isFirst = true;
    do {
        // A power switch finds the first board where it is.
        const bool waits = repeats && !(isFirst && !m_options.onWait.isEmpty());
        if (waits && !session.awaitBoard(!isFirst))
            return;
        isFirst = false;
        const Ending ending = session.run();
        finish(ending, m_report.isWanted() ? session.record() : QJsonObject());
    } while (repeats && !session.isInterrupted() && !endsAll(m_ending.status));
}

void PortRun::endEarly(ExitStatus status) {
    Ending ending;
    ending.status = static_cast<int>(status);
    ending.reason = reasonOf(status, outcomeOf(FailureKind::Internal));
    ending.text = m_output.errors();
    finish(ending, {{QStringLiteral("begin"), utcText()}});
}

void PortRun::finish(Ending ending, QJsonObject record) {
    record.insert(QStringLiteral("end"), utcText());
    m_output.addTo(record, ending);
    const QString missing = m_report.append(record);
    if (!missing.isEmpty()) {
        m_output.tell(missing);
        ending.text = m_output.errors();
        if (ending.status == 0) {
            ending.status = static_cast<int>(ExitStatus::InternalFailure);
            ending.reason = outcomeName(Outcome::File);
        }
    }
    ++(ending.status == 0 ? m_tally.good : m_tally.bad);
    m_worst = std::max(m_worst, ending.status);
    m_ending = ending;
    tellEnd();
    m_output.result(m_ending, m_tally);
}

void PortRun::tellEnd() {
    const bool usesPort = std::any_of(m_options.steps.cbegin(), m_options.steps.cend(),
                                      [](const StepCall& step) { return step.facts->usesPort; });
    if (!usesPort || m_options.dryRun)
        return;
    const QString closing = closingText(m_ending);
    m_output.notice(m_options.repeat ? QStringLiteral("Board %1: %2 Good: %3, bad: %4.")
                                           .arg(m_tally.good + m_tally.bad)
                                           .arg(closing)
                                           .arg(m_tally.good)
                                           .arg(m_tally.bad)
                                     : closing);
}

} // namespace zrk
