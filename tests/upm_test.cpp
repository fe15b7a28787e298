// What is peculiar to the UPM reports, and the policy writes.
#include "harness.h"

#include "upm/policy_report.h"
#include "upm/policy_writes.h"
#include "upm/upm_block.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>

using Words = std::vector<std::string>;

static constexpr size_t policies = 29029;

TEST(Upm, AsksForThePolicyNameOnEveryLine) {
    Machine machine;
    Words names;
    for (int policy = 0; policy < 16; ++policy) {
        const std::string number = std::to_string(policy);
        const Outcome outcome = machine.run({"-u", "-p", number});
        const int lines = countOf(outcome.out, " POLICY-" + number + "(" + number + ").");
        EXPECT_EQ(outcome.only("name"), Words(static_cast<size_t>(lines), "name " + number));
        names.insert(names.end(), static_cast<size_t>(lines), "name " + number);
    }
    EXPECT_EQ(machine.run({"-u", "-p", "-a"}).only("name"), names);
    EXPECT_EQ(machine.run({"-u"}).only("name"), names);
}

TEST(Upm, ShowsAllPoliciesAsOneByOne) {
    Machine machine;
    machine.fillWithPattern();
    const std::string separator = std::string(42, '>') + std::string(41, '<') + "\n";
    std::string all;
    for (int policy = 0; policy < 16; ++policy) {
        const std::string one = machine.run({"-u", "-p", std::to_string(policy)}).out;
        const size_t fields = one.rfind("---\n") + 4;
        all += policy == 0 ? one.substr(0, fields) : "";
        all += separator + one.substr(fields) + separator;
    }
    EXPECT_EQ(machine.run({"-u", "-p", "-a"}).out, all);
}

TEST(Upm, PrintsAPolicyNameOfAnyLength) {
    Machine machine;
    machine.environment["POLICY_NAME"] = std::string(300, 'N');
    EXPECT_NE(
        machine.run({"-u", "-p", "4"}).out.find("\n " + std::string(300, 'N') + "-4(4).state"),
        std::string::npos);
    machine.environment["POLICY_NAME"] = ""; // none
    EXPECT_NE(machine.run({"-u", "-p", "4"}).out.find("\n (null)(4).state"), std::string::npos);
}

TEST(Upm, NamesPowerDomains) {
    Machine machine;
    const std::pair<uint16_t, std::string> cases[] = {
        {0, "0 (cpu)"}, {1, "1 (mem)"},     {2, "2 (system)"},
        {3, "3 (gpu)"}, {4, "4 (unknown)"}, {65535, "65535 (unknown)"}};
    for (const auto &[domain, text] : cases) {
        machine.poke(6, policies + 56, littleEndian(domain, 2));
        EXPECT_NE(machine.run({"-u", "-p", "0"}).out.find("PolicyDomain ----- " + text + "\n"),
                  std::string::npos);
    }
}

TEST(Upm, FormatsItsTimestamp) {
    Machine machine;
    const auto expectTimestamp = [&](uint64_t milliseconds, const std::string &text) {
        machine.poke(6, 30269, littleEndian(milliseconds, 8));
        const std::string out = machine.run({"-u", "-t"}).out;
        EXPECT_EQ(out.substr(0, out.find('\n')), "Timestamp: " + text);
    };
    expectTimestamp(0, "Thu Jan 01 00:00:00.000 1970");
    expectTimestamp(253402300800000, "Sat Jan 01 00:00:00.000 10000");
    expectTimestamp(315507352780799999, "Fri Dec 31 23:59:59.999 9999999");
    expectTimestamp(315507352780800000, "<formatting error>");
    expectTimestamp(~0ULL, "<formatting error>");
    machine.environment["NO_TIME"] = "localtime_r";
    expectTimestamp(0, "<invalid time>");
    machine.environment["NO_TIME"] = "strftime";
    expectTimestamp(0, "<formatting error>");
}

TEST(PolicyWrites, TouchNothingElse) {
    Machine machine;
    machine.fillWithPattern();
    Bytes expected = machine.contents(6);
    machine.run({"-w", "-u", "-p", "2", "-s", "1"});
    expected[policies + 72 * 2] = 1;
    expected[policies + 72 * 2 + 1] = 0;
    EXPECT_EQ(machine.contents(6), expected);

    const Outcome outcome = machine.run({"-w", "-u", "-c"});
    for (size_t policy = 0; policy < 16; ++policy) {
        std::fill_n(expected.begin() + static_cast<ptrdiff_t>(policies + 72 * policy), 6,
                    uint8_t{0});
    }
    EXPECT_EQ(machine.contents(6), expected);
    EXPECT_EQ(outcome.only("write").size(), 1U);
    EXPECT_TRUE(outcome.calls.back().starts_with("write 6 29013 1176: "));
}

// No command line leads here, but the operations guard themselves.
TEST(PolicyGuards, RefuseWhatLiesOutside) {
    Machine machine;
    machine.fillWithPattern();
    const Bytes before = machine.contents(6);
    setenv("TOLM_SHM_DIR", machine.directory.c_str(), 1);
    testing::internal::CaptureStdout();
    showPolicy(16);
    showPolicy(UINT32_MAX);
    writePolicyState(16, 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Error: policy index 16 out of range [0..15]"
                                                      "Error: policy index -1 out of range [0..15]"
                                                      "Invalid policy ID\n");
    EXPECT_EQ(machine.contents(6), before);

    const Bytes bytes(1617, 0);
    EXPECT_EQ(writeUpmBlock(1615, bytes.data(), 1), 0);
    setenv("TOLM_SHM_DIR", "/nowhere", 1); // so that the library's refusal is another
    const std::pair<size_t, size_t> outside[] = {{0, 1617}, {1616, 1}, {1615, 2}, {SIZE_MAX, 2}};
    for (const auto &[offset, length] : outside) {
        EXPECT_EQ(writeUpmBlock(offset, bytes.data(), length), -ERANGE);
    }
}
