// The command line: every message, exit status and order of actions.
#include "harness.h"

#include <gtest/gtest.h>

using Words = std::vector<std::string>;

static const std::string usage = golden("usage.txt");
static const std::string upmHelp = golden("upm-help.txt");
static const std::string hints = R"(
  orbelstatprobe -w -u -c
  orbelstatprobe -w -u -p <id> -s <0/1>
  orbelstatprobe -w -u -m
)";
static const std::string now = "Error: -w now requires -u. Try:" + hints;
static const std::string order = "Error: -w -u is required. Try:" + hints;
static const std::string global = "sPwrIpmiGlobalSec1 DATA...";
static const std::string offsets = "sPwrIpmiGlobalSec1 OFFSETS...";
static const std::string upm = "Timestamp: Thu Jan 01 00:00:00.000 1970\n";
static const std::string policyIndex = "Error: policy index ";
static const std::string range = " out of range [0..15]\n";
static const std::string unknown = "Error: Unknown sub-option '";
static const std::string cleared = "Cleared policyPowerLimit and state for all 0 -15 policies.\n";
static const std::string readUpm = "read 6 0 30277";
static const std::string readGlobal = "read 39 0 803";

TEST(CommandLine, AnswersEveryArgumentVector) {
    Machine machine;
    const Outcome bare = machine.run({"-w", "-u"});
    const std::string program = bare.out.substr(7, bare.out.find(" -w") - 7); // "Usage: <program>"
    const std::string writeUsage = "Usage: " + program + R"( -w -u where:
  -c                     : clear policy data
  -m                     : interactive overwrite wizard
  -p <policy_id> -s <0/1> : write UPM policy state only
)";
    const std::string policyUsage = "Usage: " + program + " -w -u -p <policy_id> -s <0/1>\n";

    std::string clearing = "write 6 29013 1176:";
    for (int i = 0; i < 1176; ++i) {
        clearing += " 00";
    }

    // Output that ends in "..." is only the beginning. Calls are the writes, the reads and
    // the last policy name asked for.
    const struct {
        Words arguments;
        std::string out;
        int status = 0;
        Words calls = {};
    } cases[] = {
        {{}, "Error: No option passed\n" + usage},
        {{"foo"}, "Error: No option passed\n" + usage},
        {{"-h"}, usage},
        {{"-h", "-h"}, usage + usage},
        {{"-?"}, usage},
        {{"-h", "-d"}, usage + global, 0, {readGlobal}},
        {{"-h", "-w"}, usage + now, 255},
        // The locator line, before every report.
        {{"-l", "5"}, "locator=5, index=-1\n"},
        {{"-i", "2", "-d"}, "locator=-1, index=2\n"},
        {{"-l", "abc", "-i", "-7x"}, "locator=0, index=-7\n"},
        {{"-l4294967303", "-i", "2147483648"}, "locator=7, index=-2147483648\n"},
        // Reports by precedence, wherever they stand.
        {{"-d", "-o", "-e"}, global, 0, {readGlobal}},
        {{"-o", "-r"}, offsets},
        {{"-r", "-e"}, "sTolmAbsPSUInfo DATA..."},
        {{"-c", "-r"}, "sTolmAbsPowerReporting DATA...", 0, {readUpm}},
        {{"-c", "-u"}, "sTolmAbsPowerConfigClr DATA...", 0, {"read 8 0 224"}},
        {{"-d", "-u"}, global, 0, {readGlobal}},
        {{"-du"}, global, 0, {readGlobal}},
        {{"foo", "-d", "bar"}, global, 0, {readGlobal}},
        {{"--", "-d"}, "Error: No option passed\n" + usage},
        // -u
        {{"-u"}, upm + "   sPowerReport...", 0, {readUpm, "name 15"}},
        {{"-u", "-t", "extra"}, upm + "\n   CPU Power Thermal:...", 0, {readUpm}},
        {{"-u", "-p", "-c"}, upm + "   sCpuPwrLimits...", 0, {readUpm}},
        {{"-u", "-p", "-a", "-x"}, upm + "Policy...", 0, {readUpm, "name 15"}},
        {{"-u", "-p", "9"}, upm + "Policy...", 0, {readUpm, "name 9"}},
        {{"-u", "-p", ""}, upm + "Policy...", 0, {readUpm, "name 0"}},
        {{"-u", "-p", " +15"}, upm + "Policy...", 0, {readUpm, "name 15"}},
        {{"-u", "-h"}, upmHelp},
        {{"-u", "-h", "-x"}, upmHelp},
        {{"-d", "-u", "-h"}, upmHelp},
        {{"-u", "-h", "x"}, "Error: Unexpected argument 'x' after -u -h\n", 1},
        {{"-u", "-d"}, "Error: Invalid argument '-d' after -u\n", 1},
        {{"-ud"}, "Error: Invalid argument '-ud' after -u\n", 1},
        {{"-u", "-p"}, "Error: Missing argument after -u -p\n", 1},
        {{"-u", "-p", "16"}, policyIndex + "16" + range, 1},
        {{"-u", "-p", "-1"}, policyIndex + "-1" + range, 1},
        {{"-u", "-p", "9999999999999999999"}, policyIndex + "9223372036854775807" + range, 1},
        {{"-u", "-p", "3x"}, "Error: Invalid policy index '3x' after -u -p\n", 1},
        {{"-u", "-p", " "}, "Error: Invalid policy index ' ' after -u -p\n", 1},
        // -w
        {{"-w"}, now, 255},
        {{"-w", "foo", "-u"}, now, 255},
        {{"-w", "-d", "-u", "-c"}, order, 255},
        {{"-wu"}, now, 255},
        {{"-wu", "-u", "-c"}, order, 255},
        {{"-w", "-u"}, writeUsage, 255},
        {{"-w", "-u", "x"}, unknown + "x' for -w -u\n", 255},
        {{"-w", "-u", "-z"}, unknown + "-z' for -w -u\n", 255},
        {{"-w", "-u", "-p"}, policyUsage, 255},
        {{"-w", "-u", "-p", "3"}, policyUsage, 255},
        {{"-w", "-u", "-p", "99"}, policyUsage, 255},
        {{"-w", "-u", "-p", "3", "-s"}, policyUsage, 255},
        {{"-w", "-u", "-p", "3", "-x", "1"}, policyUsage, 255},
        {{"-w", "-u", "-p", "3y", "-s"}, "Error: invalid policy_id '3y'\n", 255},
        {{"-w", "-u", "-p", "16", "-s", "1"}, "Error: policy_id 16 out of range [0..15]\n", 255},
        {{"-w", "-u", "-p", "-1", "x"}, "Error: policy_id -1 out of range [0..15]\n", 255},
        {{"-w", "-u", "-p", "3", "-s", "on"}, "Error: invalid policy_state 'on'\n", 255},
        {{"-w", "-u", "-p", "3", "-s", "2"}, "Error: policy_state must be 0 or 1, got 2\n", 255},
        // Actions run where they stand; an error later on does not undo them.
        {{"-w", "-u", "-p", "3", "-s", "1"}, "", 0, {"write 6 29245 2: 01 00"}},
        {{"-w", "-u", "-p", "", "-s", "", "-d"}, global, 0, {"write 6 29029 2: 00 00", readGlobal}},
        {{"-w", "-u", "-p", "15", "-s", "1", "-u", "-x"},
         "Error: Invalid argument '-x' after -u\n",
         1,
         {"write 6 30109 2: 01 00"}},
        {{"-w", "-u", "-c", "-d"}, cleared + global, 0, {clearing, readUpm, readGlobal}},
        {{"-d", "-w", "-u", "-m"}, "\n============ Overwrite Wizard ============\n...", 255},
    };
    for (const auto &c : cases) {
        std::string command;
        for (const std::string &word : c.arguments) {
            command += " '" + word + "'";
        }
        SCOPED_TRACE(command);
        const Outcome outcome = machine.run(c.arguments);
        if (c.out.ends_with("...")) {
            const std::string beginning = c.out.substr(0, c.out.size() - 3);
            EXPECT_EQ(outcome.out.substr(0, beginning.size()), beginning);
        } else {
            EXPECT_EQ(outcome.out, c.out);
        }
        EXPECT_EQ(outcome.status, c.status);
        EXPECT_EQ(outcome.err, "");
        Words calls = outcome.only("read");
        const Words writes = outcome.only("write");
        calls.insert(calls.begin(), writes.begin(), writes.end());
        const Words names = outcome.only("name");
        calls.insert(calls.end(), names.end() - (names.empty() ? 0 : 1), names.end());
        if (c.out != "sTolmAbsPSUInfo DATA...") { // has a test of its own for its 24 reads
            EXPECT_EQ(calls, c.calls);
        }
    }
}

TEST(CommandLine, LetsGetoptComplainAndPrintsTheUsage) {
    Machine machine;
    const std::pair<Words, std::string> cases[] = {{{"-x"}, "invalid option -- 'x'"},
                                                   {{"-l"}, "requires an argument -- 'l'"},
                                                   {{"-i"}, "requires an argument -- 'i'"}};
    for (const auto &[arguments, complaint] : cases) {
        const Outcome outcome = machine.run(arguments);
        EXPECT_EQ(outcome.out, usage);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_NE(outcome.err.find(complaint), std::string::npos) << outcome.err;
    }
}
