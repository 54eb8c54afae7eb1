#include "Soak.h"

#include <gtest/gtest.h>

namespace {

using zrkbench::SoakOptions;
using zrkbench::SoakTable;

void expectNothingWrong(const SoakTable& table) {
    for (const auto& [what, seeds] : table.wrong)
        ADD_FAILURE() << seeds.size() << " runs: " << what.toStdString() << ", the first with seed "
                      << seeds.front();
}

TEST(Soak, ABadWireNeverLeadsToAWrongEnd) {
    SoakOptions options;
    options.runs = 100;
    const SoakTable table = zrkbench::soakVirtually(options);
    expectNothingWrong(table);
    for (const char* status : {"done", "cancelled", "timed out", "wrong answer", "port lost"})
        EXPECT_TRUE(table.statuses.contains(status)) << status << " has not been tried";
    EXPECT_TRUE(table.unnoticed.contains("code")) << "the wire is not bad enough";
}

TEST(Soak, ASeedIsTheSameRunAgain) {
    SoakOptions options;
    options.runs = 12;
    options.seed = 70;
    options.jobs = 1;
    const SoakTable once = zrkbench::soakVirtually(options);
    options.jobs = 3;
    const SoakTable again = zrkbench::soakVirtually(options);
    EXPECT_EQ(once.statuses, again.statuses);
    EXPECT_EQ(once.unnoticed, again.unnoticed);
    EXPECT_EQ(once.faulty, again.faulty);
    EXPECT_GT(once.faulty, 0);
}

} // namespace
