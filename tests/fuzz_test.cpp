// Bounded, seeded random runs. Nothing may crash or hang, read outside a buffer (the build with
// sanitizers tells) or write outside the UPM block.
#include "harness.h"

#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace {

constexpr int sections[] = {6, 7, 8, 39};
constexpr size_t upmBlock = 28661; // in the first

class Fuzz : public testing::TestWithParam<unsigned> {
  protected:
    size_t below(size_t limit) {
        return random() % limit;
    }

    std::string oneOf(const std::vector<std::string> &choices) {
        return choices[below(choices.size())];
    }

    void fillAtRandom() {
        for (const int section : sections) {
            Bytes bytes = machine.contents(section);
            const bool isOfExtremes = below(4) == 0;
            for (uint8_t &byte : bytes) {
                byte = static_cast<uint8_t>(isOfExtremes ? 0xFF * below(2) : random());
            }
            machine.poke(section, 0, bytes);
        }
    }

    // All that nothing may write to.
    std::vector<Bytes> readOnlyBytes() {
        std::vector<Bytes> bytes;
        for (const int section : sections) {
            bytes.push_back(machine.contents(section));
        }
        EXPECT_EQ(bytes[0].size(), 30277U);
        bytes[0].resize(upmBlock);
        return bytes;
    }

    void expectOrderly(const std::string &what, const std::function<Outcome()> &run) {
        SCOPED_TRACE(what);
        const std::vector<Bytes> before = readOnlyBytes();
        const Outcome outcome = run();
        EXPECT_TRUE(outcome.status == 0 || outcome.status == 1 || outcome.status == 255)
            << outcome.status << outcome.err;
        EXPECT_EQ(readOnlyBytes(), before);
    }

    std::mt19937 random{GetParam()};
    Machine machine;
};

TEST_P(Fuzz, ArgumentVectors) {
    const std::vector<std::string> words{
        "-d", "-o", "-e", "-r", "-c", "-u", "-w",  "-l",  "-i",  "-h",
        "-?", "-p", "-s", "-t", "-a", "-m", "-wu", "-x",  "--",  "-",
        "",   "0",  "1",  "15", "16", "3x", " 7",  "-1",  "foo", "-uw",
        "-u", "-w", "-p", "-s", "1",  "5",  "-u",  "-du", "-l5", "9999999999999999999999"};
    for (int run = 0; run < 40; ++run) {
        fillAtRandom();
        std::vector<std::string> arguments;
        std::string command;
        for (size_t count = below(9); count > 0; --count) {
            arguments.push_back(oneOf(words));
            command += "'" + arguments.back() + "' ";
        }
        expectOrderly(command, [&] { return machine.run(arguments); });
    }
}

TEST_P(Fuzz, Dialogues) {
    const std::vector<std::string> answers{
        "0", "1",  "2",  "3",    "3",     "y",    "y",   "n",    "",      "15",
        "7", "30", "24", "-1",   "65536", "1e9",  "nan", "0x10", "99999", "100001",
        "x", " 5", "5 ", "1e-9", "-0",    "\x04", "\r",  "1",    "2",     "4294967295"};
    for (int run = 0; run < 20; ++run) {
        fillAtRandom();
        std::string typed = std::to_string(1 + below(3)) + "\n";
        while (typed.size() < 400) {
            typed += below(20) == 0 ? std::string(below(200), static_cast<char>(' ' + below(90)))
                                    : oneOf(answers);
            typed += "\n";
        }
        expectOrderly(typed, [&] { return machine.runOnTerminal({"-w", "-u", "-m"}, typed); });
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Fuzz, testing::Range(1U, 9U));

} // namespace
