#include "monkey/Monkey.h"

#include <QApplication>
#include <QTest>

#include <cstdio>

// A monkey at the real window, on virtual time. A seed is the same play again:
//   ZRK_MONKEY_SEED=17 ZRK_MONKEY_ROUNDS=1 build/dev/bin/monkey_tests
// plays that one and prints each act; ZRK_MONKEY_ROUNDS=2000 plays so many from seed 1 on. ZRK_MONKEY_ACTS is
// the length of each.

namespace {

int setting(const char* name, int usual) {
    bool isNumber = false;
    const int value = qEnvironmentVariableIntValue(name, &isNumber);
    return isNumber ? value : usual;
}

/// Returns the classes of which there are more objects than before.
QString growth(const std::map<QString, int>& before, const std::map<QString, int>& after) {
    QString text;
    for (const auto& [name, count] : after) {
        const auto known = before.find(name);
        const int grown = count - (known == before.end() ? 0 : known->second);
        // Recent files are entries, a text makes its frame at its first request, and styles move some things
        // for a moment.
        if (grown > (name == "QAction" ? 5 : 1) && !name.endsWith("Animation"))
            text += QStringLiteral("%1 +%2 ").arg(name).arg(grown);
    }
    return text;
}

/// Filters what a platform without a screen prints at each window.
void tellMessage(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
    if (!text.startsWith("This plugin does not support"))
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

class Play : public ::testing::TestWithParam<int> {};

/// A part of the rounds, so that several run at a time.
constexpr int kParts = 12;

TEST_P(Play, NoActBreaksTheWindow) {
    qInstallMessageHandler(tellMessage);
    const int first = setting("ZRK_MONKEY_SEED", 1);
    const int rounds = setting("ZRK_MONKEY_ROUNDS", 480);
    const int acts = setting("ZRK_MONKEY_ACTS", 60);
    for (int round = GetParam(); round < rounds; round += kParts) {
        const std::uint64_t seed = static_cast<unsigned>(first + round);
        std::fprintf(stderr, "seed %d\n", first + round); // the only trace of a crash or a hang
        {
            zrkmonkey::Monkey monkey(seed, rounds == 1);
            monkey.play(acts / 2);
            monkey.bringUp();
            const auto before = monkey.objects();
            monkey.play(acts - acts / 2);
            monkey.bringUp();
            const QString grown = growth(before, monkey.objects());
            ASSERT_TRUE(monkey.faults().isEmpty()) << monkey.faults().join(", ").toStdString() << '\n'
                                                   << monkey.story().toStdString();
            EXPECT_EQ(grown, "") << monkey.story().toStdString();
        }
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
        EXPECT_EQ(QApplication::topLevelWidgets().size(), 0) << "of seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Monkey, Play, ::testing::Range(0, kParts));

} // namespace
