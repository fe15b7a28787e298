// What becomes of a run whose standard streams are closed or cannot be written.
#include "harness.h"

#include <gtest/gtest.h>

static const std::vector<std::string> wizard{"-w", "-u", "-m"};

// A platform library that keeps its section open must not get standard output's place.
TEST(StandardStreams, DoNotLeadIntoASection) {
    Machine machine;
    machine.fillWithPattern();
    const Bytes before = machine.contents(6);
    machine.environment["KEEP_OPEN"] = machine.folder + "/section-6";
    for (const char *closed : {">&-", "2>&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
        machine.redirections = closed;
        const bool losesOutput = machine.redirections != "2>&-";
        EXPECT_EQ(machine.run({"-r"}).status, losesOutput ? 74 : 0) << closed;
        machine.run({"-x"}); // getopt complains on standard error
        EXPECT_EQ(machine.contents(6), before) << closed;
    }
    machine.environment["NO_NULL"] = "1"; // then nothing is printed, nor read
    const Outcome outcome = machine.run({"-r"});
    EXPECT_EQ(outcome.status, 74);
    EXPECT_EQ(outcome.calls.size(), 0U);
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
        {{"-u", "-x"}, ">/dev/full", full, 74},
        {{"-w"}, ">/dev/full", full, 74},
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
