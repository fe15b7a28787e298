// The overwrite wizard as a dialogue on a terminal: what is typed, what appears, what is written.
#include "harness.h"

#include <gtest/gtest.h>
#include <sstream>

using Words = std::vector<std::string>;

static const Words wizard{"-w", "-u", "-m"};
static const std::string readFailed = "ERROR reading PowerReporting from shm! ret=";

static void expectInOrder(const std::string &text, const Words &pieces) {
    size_t position = 0;
    for (const std::string &piece : pieces) {
        const size_t found = text.find(piece, position);
        ASSERT_NE(found, std::string::npos) << piece << "\nnot in\n" << text.substr(position);
        position = found + piece.size();
    }
}

static int countOf(const std::string &text, const std::string &piece) {
    int count = 0;
    for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

// Whole dialogues, each compared to the letter. What was typed is not in them: no echo.
TEST(Wizard, DialoguesMatchTheirGoldens) {
    const struct {
        std::string golden, typed;
        Words writes;
    } cases[] = {
        {"wizard-power-limits.txt",
         "1\n1\n2\ny\n100000\ny\n100000\nY\n100000\nyes\n100000\nyellow\n100\n"
         "1\n0\n\nn\nN\nnope\n\n2\ny\n0\ny\n100000\n0\n0\n",
         {"write 6 28669 4: a0 86 01 00", "write 6 28685 4: a0 86 01 00",
          "write 6 28701 4: a0 86 01 00", "write 6 28717 4: a0 86 01 00",
          "write 6 28777 4: 64 00 00 00", "write 6 28757 4: 00 00 00 00",
          "write 6 28761 4: a0 86 01 00"}},
        {"wizard-thermal.txt",
         "2\n3\ny\n100000\ny\n100000\ny\n100000\ny\n100000\ny\n12.5\n"
         "-1\n1\n0\n\n\n\n\n\n-1\n0\n",
         {"write 6 28833 4: a0 86 01 00", "write 6 28849 4: a0 86 01 00",
          "write 6 28865 4: a0 86 01 00", "write 6 28881 4: a0 86 01 00",
          "write 6 28941 8: 00 00 00 00 00 00 29 40"}},
        {"wizard-policy.txt",
         "3\n15\n6\n70000\n24\n-1\n65535\n0\n2\n3\n0\n0\n0\n",
         {"write 6 30121 2: 70 11", "write 6 30159 2: ff ff"}},
    };
    for (const auto &c : cases) {
        Machine machine;
        machine.fillWithPattern();
        machine.poke(6, 30269, word(1700000000123, 8));
        for (size_t cpu = 0; cpu < 4; ++cpu) { // 13, 13.5, 14 and 14.5
            machine.poke(6, 28917 + 8 * cpu, word((0x402A + cpu) << 48, 8));
        }
        Bytes expected = machine.contents(6);
        const Outcome outcome = machine.runOnTerminal(wizard, c.typed);
        expectGolden(c.golden, outcome.out);
        EXPECT_EQ(outcome.status, 255);
        EXPECT_EQ(outcome.only("write"), c.writes);
        for (const std::string &call : c.writes) { // nothing but the writes has changed a byte
            std::istringstream words(call.substr(call.find(' ')));
            size_t section = 0, offset = 0, byte = 0;
            words >> section >> offset;
            words.ignore(16, ':');
            for (words >> std::hex; words >> byte; ++offset) {
                expected[offset] = static_cast<uint8_t>(byte);
            }
        }
        EXPECT_EQ(machine.contents(6), expected);
    }
}

// All thirty fields of a policy: just above the bound, which is refused, then at the bound.
TEST(Wizard, OffersEveryPolicyFieldWithItsBound) {
    Machine machine;
    const std::string menu = machine.runOnTerminal(wizard, "3\n15\n").out;
    std::string golden = menu.substr(menu.find("Policy editor fields"));
    for (int field = 1; field <= 30; ++field) {
        const std::string choose = "3\n15\n" + std::to_string(field) + "\n";
        const std::string asked = machine.runOnTerminal(wizard, choose).out;
        const size_t prompt = asked.find(": ", asked.find("Select [0..30]: ")) + 2;
        const std::string question = asked.substr(prompt, asked.find(": ", prompt) - prompt);
        const std::string bound =
            std::to_string(std::stoull(question.substr(question.rfind('.') + 1)));
        const std::string beyond = std::to_string(std::stoull(bound) + 1);
        const Outcome outcome =
            machine.runOnTerminal(wizard, choose + beyond + "\n-1\n" + bound + "\n0\n0\n");
        EXPECT_EQ(countOf(outcome.out, "Out of range.\n" + question), 2) << question;
        ASSERT_EQ(outcome.only("write").size(), 1U) << question;
        golden += question + " -> " + outcome.only("write")[0] + "\n";
    }
    expectGolden("wizard-policy-fields.txt", golden);
}

// One kind of prompt at a time, reached with `way`: an empty line, then lines that are no number of
// its kind and numbers outside its bounds get their message each, then one is accepted and written.
TEST(Wizard, JudgesEveryAnswer) {
    const std::string overflow = "99999999999999999999\n";
    const std::string cut = std::string(62, '0') + "15"; // of 64 characters 63 count: 1
    const std::string system = "1\n2\ny\n", policy = "3\n0\n", dimm = "2\n1\n\n\n\n\ny\n";
    const struct {
        std::string way, kind, malformed, outside, accepted, write;
    } cases[] = {
        {system, "unsigned integer", overflow + "42 \n42\r\n0x10\nword\n \n1.5\n",
         "100001\n-1\n4294967296\n", "  42", "6 28757 4: 2a 00 00 00"},
        {system, "", "", "", "+7", "6 28757 4: 07 00 00 00"},
        {system, "", "", "", cut, "6 28757 4: 01 00 00 00"},
        {system, "", "", "", std::string("\0x\n8\0x", 6), "6 28757 4: 08 00 00 00"},
        {"1\n1\n3\n\n\n\n\ny\n", "", "", "101\n", "100", "6 28781 4: 64 00 00 00"},
        {policy + "1\n", "integer", overflow + "1 \non\n", "2\n-1\n", "1", "6 29029 2: 01 00"},
        {policy + "27\n", "", "", "4294967296\n", "4294967295", "6 29087 2: ff ff"},
        {policy + "28\n", "", "", "", "4294967295", "6 29089 4: ff ff ff ff"},
        {dimm, "floating value", "1e400\n12abc\n1,5\n1 \n", "1000000000.5\n-1.1e9\ninf\n", "-1e9",
         "6 28925 8: 00 00 00 00 65 cd cd c1"},
        {dimm, "", "", "", "0x1p3", "6 28925 8: 00 00 00 00 00 00 20 40"},
        {dimm, "", "", "", "nan", "6 28925 8: 00 00 00 00 00 00 f8 7f"},
    };
    for (const auto &c : cases) {
        Machine machine;
        const Outcome outcome = machine.runOnTerminal(wizard, c.way + "\n" + c.malformed +
                                                                  c.outside + c.accepted + "\n");
        SCOPED_TRACE(outcome.out);
        EXPECT_GE(countOf(outcome.out, ": Please enter a number.\n"), 1);
        EXPECT_EQ(countOf(outcome.out, ": Invalid " + c.kind + ".\n"), countOf(c.malformed, "\n"));
        EXPECT_EQ(countOf(outcome.out, ": Out of range.\n"), countOf(c.outside, "\n"));
        EXPECT_EQ(outcome.only("write"), Words{"write " + c.write});
    }
}

TEST(Wizard, AsksMenusAndYesOrNoAgain) {
    Machine machine;
    const Outcome outcome = machine.runOnTerminal(
        wizard, "x\n4\n\n2\n4\n-2\n0\n y\nmaybe\ny\n8\nn\nn\nn\nn\n-1\n3\n0\n");
    expectInOrder(outcome.out,
                  {"Select [0..3]: Invalid number.\nSelect [0..3]: Out of range.\n",
                   "Select [0..3]: Please enter a number.\nSelect [0..3]: ",
                   "CPU [-1..3]: Out of range.\nCPU [-1..3]: Out of range.\nCPU [-1..3]: ",
                   "Overwrite rawdts? (default: n) [y/n]: Please answer y or n.\n"
                   "Overwrite rawdts? (default: n) [y/n]: Please answer y or n.\n"
                   "Overwrite rawdts? (default: n) [y/n]: rawdts [0..100000]: "
                   "Overwrite thermalMargin? (default: n) [y/n]: ",
                   "Next?", "Select [0..2]: Out of range.\nSelect [0..2]: "});
    EXPECT_EQ(outcome.only("write"), Words{"write 6 28821 4: 08 00 00 00"});
    EXPECT_EQ(outcome.status, 255);
}

// Input that ends at each kind of prompt: nothing is written, and every menu on the way gives up.
TEST(Wizard, EndsWithItsInput) {
    const struct {
        std::string typed, asks; // asks: the prompt at which input ends, and what follows it
        size_t reads;
    } cases[] = {
        {"", "Select [0..3]: ", 0},
        {"0\n", "Select [0..3]: ", 0},
        {"1\n", "Select [0..2]: \nNext?\n", 1},
        {"1\n1\n", "CPU index [0..3]: \nNext?\n", 1},
        {"1\n2\n", "Overwrite sysPL2? (default: n) [y/n]: \n--- CPU Power Limits Preview", 2},
        {"1\n2\ny\n", "sysPL1 [0..100000]: Overwrite sysPL2? (default: n) [y/n]: \n---", 2},
        {"2\n", "CPU [-1..3]: \nNext?\n", 1},
        {"2\n0\nn\nn\nn\nn\ny\n", "1000000000.00]: \n--- Thermal Preview", 2},
        {"3\n", "Select policy index [0..15]: \nNext?\n", 0},
        {"3\n4\n", "Select [0..30]: \nNext?\n", 1},
        {"3\n4\n1\n", "state [0..1]: Timestamp: ", 2},
        {"3\n0\n0\n1\n", "Select policy index [0..15]: \n============ Overwrite Wizard", 1},
        {"3", "Select [0..3]: Select policy index", 0}, // a last line without its end is a line
    };
    for (const auto &c : cases) {
        Machine machine;
        const Outcome outcome = machine.runOnTerminal(wizard, c.typed);
        SCOPED_TRACE(outcome.out);
        EXPECT_NE(outcome.out.rfind(c.asks), std::string::npos) << c.asks;
        EXPECT_TRUE(outcome.out.ends_with("]: "));
        EXPECT_EQ(outcome.status, 255);
        EXPECT_EQ(outcome.only("read").size(), c.reads);
        EXPECT_EQ(outcome.only("write").size(), 0U);
    }
}

TEST(Wizard, GoesOnWhenSharedMemoryFails) {
    const std::string next = "\nNext?\n";
    const struct {
        std::string variable, value, typed;
        Words pieces;
    } cases[] = {
        {"TOLM_SHM_DIR",
         "/nowhere",
         "1\n2\n2\n1\n0\n",
         {readFailed + "-2\n" + next, readFailed + "-2\n" + next, "Select [0..2]: " + readFailed}},
        {"FAIL_READ",
         "2:9",
         "1\n2\nn\nn\n0\n0\n",
         {"Preview", "Current: sysPL1=0", readFailed + "9\n\nCPU limits editor:\n"}},
        {"FAIL_READ",
         "2:9",
         "2\n1\n\n\n\n\n\n-1\n0\n",
         {"Preview", "Preview", readFailed + "9\n\nThermal editor:\n"}},
        {"FAIL_READ",
         "1:-3",
         "3\n1\n1\n1\n0\n0\n",
         {"ERROR reading data from shm! ret=-3Policy editor fields (policy 1):\n",
          " POLICY-1(1).state ----- 1\n"}},
        {"FAIL_WRITES",
         "-1",
         "3\n1\n1\n1\n0\n0\n",
         {"state [0..1]: Timestamp", " POLICY-1(1).state ----- 0\n"}},
    };
    for (const auto &c : cases) {
        Machine machine;
        machine.environment[c.variable] = c.value;
        const Outcome outcome = machine.runOnTerminal(wizard, c.typed);
        expectInOrder(outcome.out, c.pieces);
        EXPECT_EQ(outcome.status, 255);
    }
}

TEST(Wizard, ReturnsFromAnEditorWithoutMemory) {
    Machine machine;
    machine.environment["REFUSE"] = "30277";
    const Outcome outcome = machine.runOnTerminal(wizard, "1\n2\n2\n0\n");
    EXPECT_EQ(countOf(outcome.out, "Select [0..3]: \nNext?\n"), 2);
    EXPECT_EQ(outcome.calls.size(), 0U);
}

TEST(Wizard, PrintsToAFileWhatItPrintsToATerminal) {
    Machine machine;
    const std::string dialogue = "1\n2\ny\n5\n\n0\n0\n";
    const std::string shown = machine.runOnTerminal(wizard, dialogue).out;
    machine.fill(0);
    machine.printsToFile = true;
    EXPECT_EQ(machine.runOnTerminal(wizard, dialogue).out, shown);
}

TEST(Wizard, ReadsFromATerminalOnly) {
    Machine machine;
    const Outcome outcome = machine.run(wizard);
    EXPECT_EQ(outcome.out, "\n============ Overwrite Wizard ============\n"
                           " 1) CPU power limits data\n"
                           " 2) Thermal data\n"
                           " 3) Policies data\n"
                           " 0) Exit\n"
                           "Select [0..3]: ");
    EXPECT_EQ(outcome.status, 255);
    EXPECT_EQ(outcome.calls.size(), 0U);
}
