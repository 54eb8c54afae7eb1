#include "serial/OutcomeSentence.h"

#include "controls/SharedState.h"

#include <QLocale>

namespace zrk {
namespace {

QString wordsFor(Outcome outcome, const SharedState& state) {
    const bool cutShort = state.BytesSent < state.BytesTotal;
    switch (outcome) {
    case Outcome::Cancelled:
        return cutShort ? QStringLiteral("Cancelled at %1 of %2 bytes.")
                              .arg(QLocale().toString(state.BytesSent), QLocale().toString(state.BytesTotal))
                        : QStringLiteral("Cancelled.");
    case Outcome::TimedOut:
        return state.Unanswered;
    case Outcome::LimitReached:
        return state.StopText;
    case Outcome::WrongAnswer:
        return state.WrongAnswer;
    case Outcome::Refused:
        return QStringLiteral("The board refused %1: expected 'o', got 'E'.").arg(state.LastSent);
    case Outcome::Rejected:
        return QStringLiteral("The addresses were not accepted; nothing was sent.");
    default:
        return {};
    }
}

QString sentenceOf(Outcome outcome, const SharedState& state, const QString& failure) {
    QString words = wordsFor(outcome, state);
    if (!words.isEmpty())
        return words;
    if (!failure.isEmpty())
        return failure;
    QString name = outcomeName(outcome);
    name[0] = name[0].toUpper();
    return name + QLatin1Char('.');
}

} // namespace

QString outcomeSentence(Outcome outcome, const SharedState& state, const QString& failure) {
    if (state.OtherLength.isEmpty())
        return sentenceOf(outcome, state, failure);
    // The operation reached its end, and only the length is wrong.
    if (outcome == Outcome::File && failure.isEmpty())
        return state.OtherLength;
    return sentenceOf(outcome, state, failure) + QLatin1Char(' ') + state.OtherLength;
}

} // namespace zrk
