// What holds for every report: its golden, its repetitions, its failures; and the edges that those
// cannot show.
#include "reports.h"

#include "harness.h"
#include "rows/print_rows.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <numeric>
#include <random>

using Words = std::vector<std::string>;

static const std::string readFailed = "ERROR reading data from shm! ret=";
static const std::string refused = "ERROR with malloc sizeof ";

// A pattern under which every byte of a report comes from the right place, or it shows.
static void fillForGoldens(Machine &machine) {
    machine.fillWithPattern();
    machine.environment["TZ"] = "IST-5:30";
    machine.environment["POLICY_NAME"] = "%s%n"; // a name is text, not a format
    machine.poke(7, 9, {2});                     // the first unit shows u16VinMax
    machine.poke(7, 311, {'1', 0, 7, 9});        // control bytes in a firmware version
    for (const auto &[section, end] : {std::pair{6, 72 + 10}, {6, 1525 + 46}, {7, 9792 + 3 + 5}}) {
        machine.poke(section, static_cast<size_t>(end), {0}); // of a text, before its field's
    }
    // Numbers with fewer digits than are shown: array values, average readings, samples.
    for (const auto &[section, small] : {std::pair{6, 383}, {6, 28635}, {39, 152}, {39, 256}}) {
        machine.poke(section, static_cast<size_t>(small), {7, 0});
    }
    machine.poke(6, 29029 + 72 * 7 + 56, {2, 0}); // a domain that has a name
}

static Words::iterator findOpening(Words &lines, const Repetition &repetition) {
    return std::find_if(lines.begin(), lines.end(), [&](const std::string &line) {
        return line.starts_with(repetition.opening);
    });
}

// The text with all but the first of what repeats cut out.
static std::string shortened(const std::string &text, const Report &report) {
    Words lines = linesOf(text);
    for (const Repetition &repetition : report.repetitions) {
        const size_t cut = repetition.lines * (repetition.count - 1);
        const auto opening = findOpening(lines, repetition);
        if (lines.end() - opening < static_cast<ptrdiff_t>(repetition.lines + cut)) {
            return text; // which its golden is not
        }
        const auto start = opening + static_cast<ptrdiff_t>(repetition.lines);
        *start = "(" + std::to_string(cut) + " lines)\n";
        lines.erase(start + 1, start + static_cast<ptrdiff_t>(cut));
    }
    return std::accumulate(lines.begin(), lines.end(), std::string());
}

// The text of each record, with "#" for the record's own number.
static Words recordsOf(const std::string &text, const Repetition &repetition) {
    Words lines = linesOf(text);
    auto line = findOpening(lines, repetition);
    Words records(repetition.count);
    for (size_t i = 0; i < repetition.count; ++i) {
        char number[32];
        snprintf(number, sizeof number, repetition.number, repetition.first + static_cast<int>(i));
        for (size_t k = 0; k < repetition.lines && line != lines.end(); ++k, ++line) {
            const size_t at = line->find(number);
            records[i] += at == std::string::npos ? *line : line->replace(at, strlen(number), "#");
        }
    }
    return records;
}

TEST(Reports, MatchTheirGoldens) {
    Machine machine;
    fillForGoldens(machine);
    for (const Report &report : allReports) {
        const Outcome outcome = machine.run(report.arguments);
        ASSERT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), report.lines)
            << report.arguments.back();
        if (report.golden != nullptr) {
            expectGolden(report.golden, shortened(outcome.out, report));
        }
        EXPECT_EQ(outcome.status, 0);
    }
}

// Where all bits are set, the signed numbers are those that show as -1.
TEST(Reports, KeepTheSign) {
    Machine machine;
    machine.fill(0xFF);
    std::string negative;
    for (const Report &report : allReports) {
        if (report.golden == nullptr) {
            continue; // others show its signs
        }
        for (const std::string &line :
             linesOf(shortened(machine.run(report.arguments).out, report))) {
            negative += line.ends_with(" -1\n") ? line : "";
        }
    }
    expectGolden("signed-numbers.txt", negative);
}

// With every record moved to the next one's place, and the last to the first one's, each shows as
// it did before, but for its number.
TEST(Reports, ShowARecordTheSameInEveryPlace) {
    for (const Report &report : allReports) {
        for (const Repetition &repetition : report.repetitions) {
            Machine machine;
            fillForGoldens(machine);
            Words before = recordsOf(machine.run(report.arguments).out, repetition);
            Bytes bytes = machine.contents(report.section->id);
            for (const auto &[start, size] : repetition.arrays) {
                const auto first = bytes.begin() + static_cast<ptrdiff_t>(start);
                const auto last = first + static_cast<ptrdiff_t>(size * (repetition.count - 1));
                std::rotate(first, last, last + static_cast<ptrdiff_t>(size));
            }
            machine.poke(report.section->id, 0, bytes);
            std::rotate(before.begin(), before.end() - 1, before.end());
            EXPECT_EQ(recordsOf(machine.run(report.arguments).out, repetition), before);
        }
    }
}

// What each report says, and that it says nothing else, when its section or memory is refused.
TEST(Reports, SayWhyTheyFailed) {
    std::vector<Report> cases = allReports;
    cases.push_back({.arguments = {"-w", "-u", "-c"},
                     .golden = "",
                     .lines = 0,
                     .section = powerReportingSection,
                     .failureEnd = ""});
    for (const Report &c : cases) {
        if (!c.section) {
            continue;
        }
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        Machine machine;
        machine.environment["FAIL_READ"] = "1:7";
        Outcome outcome = machine.run(c.arguments);
        EXPECT_EQ(outcome.out, readFailed + "7" + c.failureEnd);
        EXPECT_EQ(outcome.calls, Words{"read " + std::to_string(c.section->id) + " 0 " +
                                       std::to_string(c.readSize)});
        EXPECT_EQ(outcome.status, 0);
        if (isSanitized()) {
            continue; // the sanitizer's own allocator refuses nothing
        }
        machine.environment["REFUSE"] = std::to_string(c.readSize);
        outcome = machine.run(c.arguments);
        EXPECT_EQ(outcome.out, refused + std::to_string(c.readSize) + "!" + c.failureEnd);
        EXPECT_EQ(outcome.calls, Words{});
        EXPECT_EQ(outcome.status, 0);
    }
}

TEST(PsuInfo, ShowsZerosForABusRecordThatFails) {
    Machine machine;
    machine.fillWithPattern();
    const std::string whole = machine.run({"-e"}).out;
    machine.environment["FAIL_READ"] = "4:3";
    const std::string out = machine.run({"-e"}).out;
    machine.environment.erase("FAIL_READ");
    machine.poke(7, 9792 + 35, Bytes(35, 0));
    EXPECT_EQ(out, machine.run({"-e"}).out);
    EXPECT_NE(out, whole);
}

TEST(PsuInfo, ShowsTheDirectCurrentMaximumOfType1) {
    Machine machine;
    machine.poke(7, 9, {1});
    machine.poke(7, 464, littleEndian(static_cast<uint32_t>(-3), 4));
    const std::string out = machine.run({"-e"}).out;
    const std::string prefix = "   sPSUPwrSection.";
    EXPECT_NE(out.find(prefix + "u16PinMax ------------- 0\n" + prefix +
                       "u16VinDCMax ------------- -3\n" + prefix + "u16IinMax"),
              std::string::npos);
}

static std::string printed(const std::function<void(TextBuffer &)> &print) {
    testing::internal::CaptureStdout();
    {
        TextBuffer out;
        print(out);
    }
    fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

static std::string fixed(float value, int places) {
    return printed([&](TextBuffer &out) { out.putFixed(value, places); });
}

// No report has an array of so many elements in a column yet.
TEST(Rows, EndInTheirColumnAfterTwoDigits) {
    const std::string text = printed([](TextBuffer &out) {
        const Row row{.label = "label", .path = "", .type = Type::u8, .count = 11};
        for (const int index : {9, 10}) {
            putLabel(out, {.prefix = "", .column = 12}, nullptr, row, index);
        }
    });
    EXPECT_EQ(text, "label[9] ---- label[10] --- ");
}

TEST(TextBuffer, RoundsAsPrintf) {
    EXPECT_EQ(fixed(0.375F, 2), "0.38"); // ties go to the even digit
    EXPECT_EQ(fixed(-0.125F, 2), "-0.12");
    EXPECT_EQ(fixed(-0.0F, 2), "-0.00");
    EXPECT_EQ(fixed(-NAN, 2), "-nan");
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp)
    for (int i = 0; i < 3000; ++i) {
        const auto bits = static_cast<uint32_t>(random());
        float value = 0;
        memcpy(&value, &bits, sizeof value);
        if (i % 2 == 0) { // of plausible size, and half way between two
            value = static_cast<float>(static_cast<int32_t>(bits) >> 12) / 128;
        }
        const int places = i % 7;
        char expected[64];
        snprintf(expected, sizeof expected, "%.*f", places, static_cast<double>(value));
        ASSERT_EQ(fixed(value, places), expected);
    }
}
