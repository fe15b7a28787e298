// The section reports: golden reports of patterned sections, and the edges that those cannot show.
#include "harness.h"

#include <gtest/gtest.h>

static const std::string readFailed = "ERROR reading data from shm! ret=";
static const std::string refused = "ERROR with malloc sizeof ";

TEST(PowerConfig, PrintsEveryField) {
    Machine machine;
    machine.fillWithPattern();
    machine.environment["TZ"] = "EST5EDT,M3.2.0,M11.1.0";
    expectGolden("power-config.txt", machine.run({"-c"}).out);
}

TEST(PowerConfig, KeepsSignAndWidth) {
    Machine machine;
    machine.poke(8, 0, word(0x7FC00000, 4)); // not a number
    for (const size_t offset : {4, 8, 12, 32, 36}) {
        machine.poke(8, offset, word(0x80000000, 4));
    }
    machine.poke(8, 16, word(0xFFFFFFFF, 4));
    EXPECT_EQ(machine.run({"-c"}).out,
              "sTolmAbsPowerConfigClr DATA::: sizeof structure = 224\n"
              "   sPowerConfigSection.peakHeadroom ------ nan\n"
              "   sPowerConfigSection.instHeadroom ------ 2147483648\n"
              "   sPowerConfigSection.peakPowerTime ------ -2147483648\n"
              "   sPowerConfigSection.peakPowerStartTime ------ -2147483648\n"
              "   sPowerConfigSection.peakAmpsTime ------ Sun Feb  7 06:28:15 2106\n"
              "\n"
              "   sPowerConfigSection.peakAmpsStartTime ------ Thu Jan  1 00:00:00 1970\n"
              "\n"
              "   sPowerConfigSection.cumulativePower ------ 2147483648\n"
              "   sPowerConfigSection.cumulativePowerStartTime ------ -2147483648\n"
              "   sPowerConfigSection.cumulativeStartEnergy ------ 0.00\n");
}

// What each report says, and that it says nothing else, when its section or memory is refused.
TEST(Reports, SayWhyTheyFailed) {
    const struct {
        std::vector<std::string> arguments;
        std::string size;
        std::string lineEnd;
    } cases[] = {
        {{"-c"}, "224", "\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments.back());
        Machine machine;
        machine.environment["FAIL_READ"] = "1:-5";
        Outcome outcome = machine.run(c.arguments);
        EXPECT_EQ(outcome.out, readFailed + "-5" + c.lineEnd);
        EXPECT_EQ(outcome.calls.size(), 1U);
        EXPECT_EQ(outcome.status, 0);
        if (isSanitized()) {
            continue; // the sanitizer's own allocator refuses nothing
        }
        machine.environment["REFUSE"] = c.size;
        outcome = machine.run(c.arguments);
        EXPECT_EQ(outcome.out, refused + c.size + "!" + c.lineEnd);
        EXPECT_EQ(outcome.calls.size(), 0U);
        EXPECT_EQ(outcome.status, 0);
    }
}
