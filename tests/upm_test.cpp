// The UPM views, the policy report and the policy writes.
#include "harness.h"

#include "upm/policy_report.h"
#include "upm/policy_writes.h"

#include <algorithm>
#include <gtest/gtest.h>

static constexpr size_t timestamp = 30269;
static constexpr size_t policies = 29029;
static constexpr size_t policySize = 72;

TEST(Upm, ViewsMatchTheirGoldens) {
    Machine machine;
    machine.fillWithPattern();
    machine.environment["TZ"] = "IST-5:30";
    machine.environment["POLICY_NAME"] = "%s%n"; // a name is text, not a format
    machine.poke(6, timestamp, word(1700000000007, 8));
    for (size_t policy = 0; policy < 16; ++policy) {
        machine.poke(6, policies + policySize * policy + 56, word(policy % 5, 2)); // domain
    }
    const struct {
        std::vector<std::string> arguments;
        std::string golden;
        size_t lines;
    } cases[] = {{{"-u"}, "upm-dump.txt", 632},
                 {{"-u", "-t"}, "upm-thermal.txt", 63},
                 {{"-u", "-p", "-c"}, "upm-power-limits.txt", 57},
                 {{"-u", "-p", "7"}, "upm-policy.txt", 39},
                 {{"-u", "-p", "-a"}, "upm-all-policies.txt", 521}};
    for (const auto &c : cases) {
        const Outcome outcome = machine.run(c.arguments);
        expectGolden(c.golden, outcome.out);
        EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), c.lines);
        EXPECT_EQ(outcome.status, 0);
    }
}

TEST(Upm, AsksForThePolicyNameOnEveryLine) {
    Machine machine;
    std::vector<std::string> names;
    for (int line = 0; line < 16 * 30; ++line) {
        names.push_back("name " + std::to_string(line / 30));
    }
    EXPECT_EQ(machine.run({"-u", "-p", "-a"}).only("name"), names);
    EXPECT_EQ(machine.run({"-u"}).only("name"), names);
}

TEST(Upm, KeepsSignAndWidth) {
    Machine machine;
    const size_t policy3 = policies + policySize * 3;
    const struct {
        size_t offset;
        Bytes bytes;
        std::vector<std::string> arguments;
        std::string line;
    } cases[] = {
        {policy3 + 2, word(3000000000, 4), {"-u", "-p", "3"}, "policyPowerLimit ----- -1294967296"},
        {policy3 + 2, word(3000000000, 4), {"-u"}, "policyPowerLimit ----- 3000000000"},
        {policy3 + 50, word(0xFFFF, 2), {"-u", "-p", "3"}, "SFOffset ----- 4294967295"},
        {policy3 + 50, word(0x8000, 2), {"-u"}, "SFOffset ----- 4294934528"},
        {policy3 + 50, word(5, 2), {"-u"}, "SFOffset ----- 5"},
        {policy3 + 56, word(65535, 2), {"-u"}, "PolicyDomain ----- 65535 (unknown)"},
        {policy3 + 56, word(4, 2), {"-u", "-p", "3"}, "PolicyDomain ----- 4 (unknown)"},
        {28765, word(0xFFFFFFFF, 4), {"-u", "-p", "-c"}, "powerLimits.plStatus ----- -1"},
        {28799, Bytes{255}, {"-u"}, "powerLimits.c0ResAvailablity[2] ----- 255"},
        {28813, word(~0ULL, 8), {"-u"}, "powerLimits.readRTC ----- 18446744073709551615"},
        {28917, word(0x3FB999999999999A, 8), {"-u", "-t"}, "dimmPwr[0] ----- 0.1"},
        {28941, word(0x3E7AD7F29ABCAF48, 8), {"-u", "-t"}, "dimmPwr[3] ----- 1e-07"},
        {28949, word(0xFFF0000000000000, 8), {"-u"}, "prevdimmPwr[0] ----- -inf"},
    };
    for (const auto &c : cases) {
        machine.poke(6, c.offset, c.bytes);
        const std::string out = machine.run(c.arguments).out;
        EXPECT_NE(out.find("." + c.line + "\n"), std::string::npos) << c.line;
    }
}

TEST(Upm, FormatsItsTimestamp) {
    Machine machine;
    const std::pair<uint64_t, std::string> cases[] = {
        {0, "Thu Jan 01 00:00:00.000 1970"},
        {1700000000007, "Tue Nov 14 22:13:20.007 2023"},
        {253402300800000, "Sat Jan 01 00:00:00.000 10000"},
        {315507352780799999, "Fri Dec 31 23:59:59.999 9999999"},
        {315507352780800000, "<formatting error>"},
        {~0ULL, "<formatting error>"},
    };
    for (const auto &[milliseconds, text] : cases) {
        machine.poke(6, timestamp, word(milliseconds, 8));
        const std::string out = machine.run({"-u", "-t"}).out;
        EXPECT_EQ(out.substr(0, out.find('\n')), "Timestamp: " + text);
    }
}

TEST(Upm, PrintsAPolicyNameOfAnyLength) {
    Machine machine;
    machine.environment["POLICY_NAME"] = "";
    EXPECT_NE(machine.run({"-u", "-p", "4"}).out.find("\n (null)(4).SFOffset ----- 0\n"),
              std::string::npos);
    machine.environment["POLICY_NAME"] = std::string(300, 'N');
    const std::string line = "\n " + std::string(300, 'N') + "-4(4).limitingState ----- 0\n";
    EXPECT_NE(machine.run({"-u", "-p", "4"}).out.find(line), std::string::npos);
}

TEST(PolicyWrites, TouchNothingElse) {
    Machine machine;
    machine.fillWithPattern();
    Bytes expected = machine.contents(6);
    Outcome outcome = machine.run({"-w", "-u", "-p", "2", "-s", "1", "-u", "-p", "2"});
    expected[29173] = 1;
    expected[29174] = 0;
    EXPECT_EQ(machine.contents(6), expected);
    EXPECT_NE(outcome.out.find(" POLICY-2(2).state ----- 1\n"), std::string::npos);

    outcome = machine.run({"-w", "-u", "-c"});
    for (size_t policy = 0; policy < 16; ++policy) {
        std::fill_n(expected.begin() + 29029 + 72 * static_cast<ptrdiff_t>(policy), 6, uint8_t{0});
    }
    EXPECT_EQ(machine.contents(6), expected);
    EXPECT_EQ(outcome.only("write").size(), 1U);
    EXPECT_TRUE(outcome.calls.back().starts_with("write 6 29013 1176: "));
}

TEST(PolicyWrites, DoNotLookAtTheResult) {
    Machine machine;
    machine.environment["FAIL_WRITES"] = "-1";
    EXPECT_EQ(machine.run({"-w", "-u", "-p", "2", "-s", "1"}).out, "");
    EXPECT_EQ(machine.run({"-w", "-u", "-c"}).out,
              "Cleared policyPowerLimit and state for all 0 -15 policies.\n");
}

// The command line never passes a policy above 15, but the operations guard themselves.
TEST(PolicyGuards, RefuseAPolicyAbove15) {
    Machine machine;
    machine.fillWithPattern();
    const Bytes before = machine.contents(6);
    setenv("TOLM_SHM_DIR", machine.folder.c_str(), 1);
    testing::internal::CaptureStdout();
    showPolicy(16);
    showPolicy(UINT32_MAX);
    writePolicyState(16, 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error: policy index 16 out of range [0..15]"
                                                      "Error: policy index -1 out of range [0..15]"
                                                      "Invalid policy ID\n");
    EXPECT_EQ(machine.contents(6), before);
}
