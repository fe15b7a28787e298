// A run whose standard streams are closed or cannot be written, and what is out when.
#include "harness.h"

#include <gtest/gtest.h>
#include <numeric>

static const std::vector<std::string> wizard{"-w", "-u", "-m"};

// A platform library that keeps its section open must not get standard output's place.
TEST(StandardStreams, DoNotLeadIntoASection) {
    Machine machine;
    machine.fillWithPattern();
    const Bytes before = machine.contents(6);
    machine.environment["KEEP_OPEN"] = machine.directory + "/section-6";
    for (const char *closed : {">&-", "2>&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
        machine.redirections = closed;
        const bool losesOutput = machine.redirections != "2>&-";
        EXPECT_EQ(machine.run({"-r"}).status, losesOutput ? 74 : 0) << closed;
        machine.run({"-x"}); // getopt complains on standard error
        EXPECT_EQ(machine.contents(6), before) << closed;
    }
}

// Without /dev/null nothing is read if output would be lost, and the reason is given.
TEST(StandardStreams, NeedOnlyOutputToBeOpen) {
    const std::string reason = "orbelstatprobe: standard output is closed, and /dev/null cannot "
                               "take its place: Permission denied\n";
    const struct {
        std::string redirections, err;
        int status;
    } cases[] = {{"<&-", "", 0}, {">&-", reason, 74}, {"<&- >&-", reason, 74}, {"2>&-", "", 74}};
    for (const auto &c : cases) {
        Machine machine;
        machine.environment["NO_NULL"] = "1";
        machine.redirections = c.redirections;
        const Outcome outcome = machine.run({"-c"});
        EXPECT_EQ(outcome.status, c.status) << c.redirections;
        EXPECT_EQ(outcome.err, c.err) << c.redirections;
        EXPECT_EQ(outcome.calls.size(), c.status == 0 ? 1U : 0U) << c.redirections;
        EXPECT_EQ(outcome.out.empty(), c.status != 0) << c.redirections;
    }
}

TEST(StandardStreams, KeepTheirOrder) {
    Machine machine;
    machine.redirections = "2>&1";
    const std::string usage = golden("usage.txt");
    const std::string out = machine.run({"-h", "-x"}).out;
    EXPECT_TRUE(out.starts_with(usage + buildDirectory())) << out;
    EXPECT_TRUE(out.ends_with("'x'\n" + usage)) << out;
}

TEST(StandardStreams, HaveAUnitBeforeTheNextIsRead) {
    Machine machine;
    const std::vector<std::string> lines = linesOf(machine.run({"-e"}).out);
    machine.environment["END_AT_READ"] = "5"; // of the third unit
    const std::string expected =
        std::accumulate(lines.begin(), lines.begin() + 2 * 93, std::string());
    EXPECT_EQ(machine.run({"-e"}).out, expected);
}

TEST(StandardStreams, SayThatOutputIsLost) {
    const std::string lost = "orbelstatprobe: standard output: ";
    const std::string full = lost + "No space left on device\n";
    const struct {
        std::vector<std::string> arguments;
        std::string redirections, err;
        int status;
    } cases[] = {
        {{"-e"}, ">/dev/full", full, 74},
        {{"-c"}, ">/dev/full", full, 74},
        {{"-u", "-x"}, ">/dev/full", full, 1},
        {{"-w"}, ">/dev/full", full, 255},
        {{"-c"}, ">&-", lost + "Bad file descriptor\n", 74},
        {{"-w", "-u", "-p", "3", "-s", "1"}, ">/dev/full", "", 0},
        {{"-w", "-u", "-p", "3", "-s", "1"}, ">&-", "", 0},
        {{"-c"}, "<&-", "", 0},
        {wizard, ">/dev/full", full, 255},
    };
    for (const auto &c : cases) {
        Machine machine;
        machine.redirections = c.redirections;
        const Outcome outcome = machine.run(c.arguments);
        EXPECT_EQ(outcome.err, c.err) << c.arguments[0] << c.redirections;
        EXPECT_EQ(outcome.status, c.status) << c.arguments[0] << c.redirections;
    }
}
