// The section reports: golden reports of patterned sections, and the edges that those cannot show.
#include "harness.h"

#include <algorithm>
#include <gtest/gtest.h>

static const std::string readFailed = "ERROR reading data from shm! ret=";
static const std::string refused = "ERROR with malloc sizeof ";

static void expectLine(const std::string &text, const std::string &line) {
    EXPECT_NE(("\n" + text).find("\n" + line + "\n"), std::string::npos) << line;
}

TEST(PowerConfig, KeepsSignAndWidth) {
    Machine machine;
    machine.poke(8, 0, word(0x7FC00000, 4));  // not a number
    machine.poke(8, 40, word(0xBE000000, 4)); // -0.125, half way between two of two places
    for (const size_t offset : {4U, 8U, 12U, 32U, 36U}) {
        machine.poke(8, offset, word(0x80000000, 4));
    }
    machine.poke(8, 16, word(0xFFFFFFFF, 4));
    std::string out = machine.run({"-c"}).out;
    expectLine(out, "   sPowerConfigSection.peakHeadroom ------ nan");
    expectLine(out, "   sPowerConfigSection.instHeadroom ------ 2147483648");
    expectLine(out, "   sPowerConfigSection.peakPowerStartTime ------ -2147483648");
    expectLine(out, "   sPowerConfigSection.peakAmpsTime ------ Sun Feb  7 06:28:15 2106\n");
    expectLine(out, "   sPowerConfigSection.peakAmpsStartTime ------ Thu Jan  1 00:00:00 1970\n");
    expectLine(out, "   sPowerConfigSection.cumulativeStartEnergy ------ -0.12");
    machine.fill(0xFF);
    out = machine.run({"-c"}).out;
    expectLine(out, "   sPowerConfigSection.peakHeadroom ------ -nan");
    expectLine(out, "   sPowerConfigSection.instHeadroom ------ 4294967295");
    expectLine(out, "   sPowerConfigSection.peakPowerTime ------ -1");
}

// A pattern under which every byte of a report comes from the right place, or it shows.
static void fillForGoldens(Machine &machine) {
    machine.fillWithPattern();
    machine.environment["TZ"] = "IST-5:30";
    machine.poke(7, 816 * 1 + 9, Bytes{1});              // the second unit shows u16VinDCMax
    machine.poke(7, 816 * 2 + 311, Bytes{'1', 0, 7, 9}); // control bytes in its firmware version
    machine.poke(7, 9792 + 35 * 3 + 3 + 5, Bytes{0});    // the fourth has a shorter device name
    machine.poke(6, 72 + 10, Bytes{0});                  // policy name
    machine.poke(6, 1525 + 132 * 2 + 41, Bytes{0});      // display name of a voltage regulator
}

TEST(Reports, MatchTheirGoldens) {
    Machine machine;
    fillForGoldens(machine);
    const struct {
        std::string option, golden;
        size_t lines;
    } cases[] = {{"-o", "global-offsets.txt", 109},
                 {"-d", "global-dump.txt", 159},
                 {"-e", "psu-info.txt", 12 * 93},
                 {"-c", "power-config.txt", 12},
                 {"-r", "power-reporting.txt", 683}};
    for (const auto &c : cases) {
        const Outcome outcome = machine.run({c.option});
        expectGolden(c.golden, outcome.out);
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), c.lines);
        EXPECT_EQ(outcome.status, 0);
    }
}

TEST(GlobalSection, KeepsSignAndWidth) {
    Machine machine;
    std::string out = machine.run({"-d"}).out;
    expectLine(out, "       0x00 0x00 0x00 0x00 0x00 0x00 0x00 0x00 ");
    expectLine(out, "       0x0000 0x0000 0x0000 0x0000 0x0000 0x0000 0x0000 0x0000 0x0000 0x0000 "
                    "0x0000 0x0000 ");
    machine.fill(0xFF);
    out = machine.run({"-d"}).out;
    expectLine(out, "   sPowerInfoPWR.u8NMSupport ------------------ 255");
    expectLine(out, "   sNMStatisticsPWR.u32IPMITimeStmp ----------- -1");
    expectLine(out, "   sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr -- 0xff");
    expectLine(out, "       0xffff 0xffff 0xffff 0xffff 0xffff 0xffff 0xffff 0xffff ");
    expectLine(out, "       In DEC: 255 255 255 255 255 255 255 255 255 255 255 255 ");
    expectLine(out, "   MemPowerStat[7].u16AvgPwr ---------------------------- 65535");
}

TEST(PowerReporting, KeepsSignAndWidth) {
    Machine machine;
    machine.fill(0xFF);
    machine.poke(6, 10, word(0x80000000, 4));
    machine.poke(6, 152, word(0x80000000, 4));
    machine.poke(6, 142, word(0x80000000, 4));
    machine.poke(6, 383 + 8 * 5, Bytes{7, 0, 8, 0, 9, 0, 10, 0});
    machine.poke(6, 28635 + 24, Bytes{7});
    const std::string out = machine.run({"-r"}).out;
    expectLine(out, "   sPowerReportSection.peakHeadroom ------ 65535");
    expectLine(out, "   sPowerReportSection.systemCapabilities ------ -2147483648");
    expectLine(out, "   sPowerReportSection.sysPwrConsumption.instAmpsPSU1_2 ------ -0.00");
    expectLine(out, "   sPowerReportSection.activePolicyName ------ " + std::string(64, '\xFF'));
    expectLine(out, "   sPowerReportSection.peciCupsUtilLimits.retryCtr ------ 2147483648");
    expectLine(out, "   sPowerReportSection.peciCupsUtilLimits.CUPS_CMAX ------ "
                    "18446744073709551615");
    expectLine(out,
               "   sPowerReportSection.lastHourMinPowerTime ------ Sun Feb  7 06:28:15 2106\n");
    expectLine(out, "   Last minute- 5\tcups_cpu_usage =   7\tcups_mem_usage =   9\t"
                    "cups_io_usage =   8\tcups_syslvl_usage =  10");
    EXPECT_TRUE(out.ends_with("   cpuSample = 255\n   cpuSample =   7\n"));
}

TEST(PsuInfo, ReadsRecordAndBusOfEachUnit) {
    Machine machine;
    machine.poke(7, 12, word(0x80000000, 4));
    const Outcome outcome = machine.run({"-e"});
    expectLine(outcome.out, "   sPSUPwrSection.psuCapabilities ------- -2147483648");
    std::vector<std::string> reads;
    for (int unit = 0; unit < 12; ++unit) {
        reads.push_back("read 7 " + std::to_string(816 * unit) + " 816");
        reads.push_back("read 7 " + std::to_string(9792 + 35 * unit) + " 35");
    }
    EXPECT_EQ(outcome.calls, reads);
}

TEST(PsuInfo, EndsWithTheFirstUnitThatFails) {
    Machine machine;
    machine.fillWithPattern();
    const std::string whole = machine.run({"-e"}).out;
    machine.environment["FAIL_READ"] = "9:-7";
    const Outcome outcome = machine.run({"-e"});
    const size_t fifthUnit = whole.find("INFO FOR PSU 5");
    const size_t fourUnits = whole.rfind("sTolmAbsPSUInfo", fifthUnit);
    EXPECT_EQ(outcome.out, whole.substr(0, fourUnits) + readFailed + "-7\n");
    EXPECT_EQ(outcome.calls.size(), 9U);
}

TEST(PsuInfo, ShowsZerosForABusRecordThatFails) {
    Machine machine;
    machine.fillWithPattern();
    machine.environment["FAIL_READ"] = "4:3";
    const std::string out = machine.run({"-e"}).out;
    const size_t secondUnit = out.find("INFO FOR PSU 2");
    EXPECT_EQ(out.find("   sPSUPwrSection.psuBus.bus ---------- 0\n"
                       "   sPSUPwrSection.psuBus.physicalBus -- 0\n"
                       "   sPSUPwrSection.psuBus.address ------ 0\n"
                       "   sPSUPwrSection.psuBus.deviceName ------ \n\n"),
              out.find("   sPSUPwrSection.psuBus.bus", secondUnit));
    EXPECT_NE(out.find("INFO FOR PSU 12"), std::string::npos);
}

// What each report says, and that it says nothing else, when its section or memory is refused.
TEST(Reports, SayWhyTheyFailed) {
    const struct {
        std::vector<std::string> arguments;
        std::string size;
        std::string lineEnd;
    } cases[] = {
        {{"-d"}, "803", "\n"},
        {{"-e"}, "816", "\n"},
        {{"-r"}, "30277", "\n"},
        {{"-c"}, "224", "\n"},
        {{"-u"}, "30277", "\n"},
        {{"-u", "-t"}, "30277", "\n"},
        {{"-u", "-p", "-c"}, "30277", "\n"},
        {{"-u", "-p", "0"}, "30277", ""},
        {{"-u", "-p", "-a"}, "30277", ""},
        {{"-w", "-u", "-c"}, "30277", ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments.back());
        Machine machine;
        machine.environment["FAIL_READ"] = "1:7";
        Outcome outcome = machine.run(c.arguments);
        EXPECT_EQ(outcome.out, readFailed + "7" + c.lineEnd);
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
