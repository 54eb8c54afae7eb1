#include "cli/EndSentence.h"

#include "cli/Steps.h"
#include "loader/Loader.h"
#include "machine/NetworkMessages.h"
#include "machine/PortMessages.h"
#include "machine/SystemPorts.h"
#include "serial/BoardHint.h"
#include "serial/OutcomeSentence.h"

namespace zrk {
namespace {

/// Returns what no message box and no step has reported of this end.
QString toldByNothingElse(Outcome outcome, const SharedState& state) {
    switch (outcome) {
    case Outcome::TimedOut:
    case Outcome::Refused:
        return outcomeSentence(outcome, state, {});
    case Outcome::WrongAnswer:
        return state.WrongAnswer;
    default:
        return {};
    }
}

QString adviceOn(Outcome outcome) {
    if (outcome == Outcome::Refused)
        return QStringLiteral(
            "Check that its address and size lie within the board's memory, then cycle the power "
            "and start over.");
    return QStringLiteral(
        "Cycle the power and start over; if it happens again, check the image, its address and the "
        "cable.");
}

bool isUnheard(Outcome outcome) {
    return outcome == Outcome::TimedOut || outcome == Outcome::LimitReached ||
           outcome == Outcome::WrongAnswer;
}

QString portNameOf(const Loader& loader) {
    const int number = loader.port.CommPort();
    return port_messages::portName(number, loader.port.deviceName(number));
}

/// Returns the most likely cause; "" if it is unknown.
QString hintOn(const Loader& loader, const StepFacts& step) {
    const Outcome outcome = loader.operation.outcome();
    if (!isUnheard(outcome) && outcome != Outcome::Refused)
        return {};
    if (QString hint = network_messages::telnetHint(loader.port.openedDevice(), loader.port.firstReceived());
        !hint.isEmpty())
        return hint;
    if (QString hint = otherUserHint(loader); !hint.isEmpty())
        return hint;
    if (!isUnheard(outcome))
        return {};
    const QByteArray& received = loader.port.lastReceived();
    if (step.commandsPrimaryBoot || step.awaitsProgram) {
        const QString hint = bootRomHint(received);
        // The step start has printed it by itself.
        if (!hint.isEmpty())
            return step.awaitsProgram || !loader.state.WrongAnswer.isEmpty() ? hint : QString();
    }
    if (step.awaitsProgram || step.ownsStreams)
        return {}; // a program's output is its own
    return boardHint(outcome, received, portNameOf(loader));
}

} // namespace

QString otherUserHint(const Loader& loader) {
    const QString user = otherUserOf(loader.port.openedDevice());
    return user.isEmpty() ? QString() : port_messages::alsoUsed(portNameOf(loader), user);
}

QString endSentence(const Loader& loader, const StepFacts& step) {
    const Outcome outcome = loader.operation.outcome();
    const QString told = toldByNothingElse(outcome, loader.state);
    QString hint = hintOn(loader, step);
    if (hint.isEmpty() && !told.isEmpty())
        hint = adviceOn(outcome);
    return told.isEmpty() || hint.isEmpty() ? told + hint : told + QLatin1Char(' ') + hint;
}

} // namespace zrk
