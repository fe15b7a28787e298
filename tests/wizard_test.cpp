// The overwrite wizard as a dialogue on a terminal: what is typed, what appears, what is written.
#include "harness.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

using Words = std::vector<std::string>;

static const Words wizard{"-w", "-u", "-m"};

// The menu of the policy editor, and the prompt behind it.
static std::string policyMenu(const std::string &policy) {
    Machine machine;
    const std::string shown = machine.runOnTerminal(wizard, "3\n" + policy + "\n").out;
    const size_t begin = shown.find("Policy editor fields");
    return shown.substr(begin, shown.find("\nNext?") - begin);
}

// Shows texts in which much repeats: of lines that were there before, behind the same line as now,
// only the number is told, without the fields of policies in reports and in `menu`.
class NewLines {
  public:
    explicit NewLines(const Words &menu) : uncounted(menu.begin(), menu.end()) {}

    std::string of(const std::string &text) {
        std::string shown, previous;
        int known = 0;
        const auto showKnown = [&] {
            shown += known != 0 ? "(" + std::to_string(known) + " as before)\n" : "";
            known = 0;
        };
        for (const std::string &line : linesOf(text)) {
            if (seen.insert(previous + line).second) {
                showKnown();
                shown += line;
            } else if (!isOfPolicyField(line) && !uncounted.contains(line)) {
                ++known;
            }
            previous = line;
        }
        showKnown();
        return shown;
    }

  private:
    std::set<std::string> uncounted;
    std::set<std::string> seen;
};

// Whole dialogues; of every kind of prompt, what it takes and what it asks again; input that ends
// at it; shared memory that fails. In the transcript "|" ends a line of input, which is not shown,
// and behind "->" stand the exit status, the number of reads and the writes.
TEST(Wizard, HoldsItsDialogues) {
    const std::string menu = policyMenu("0");
    NewLines newLines(linesOf(menu));
    newLines.of(menu);
    expectTranscript("wizard.txt", [&](Machine &machine, std::string command) {
        machine.fillWithPattern();
        newLines.of(machine.run({"-u", "-p", "0"}).out);
        std::replace(command.begin(), command.end(), '|', '\n');
        const Outcome outcome = machine.runOnTerminal(wizard, command);
        std::string text = std::to_string(outcome.status) + ", " +
                           std::to_string(outcome.only("read").size()) + " reads";
        for (const std::string &write : outcome.only("write")) {
            text += ", " + write;
        }
        return text + "\n" + newLines.of(outcome.out);
    });
}

// Answers the question that `way` leads to just outside of its bounds, which is refused, then with
// the upper one. Returns the question and what was written.
static std::string tryBounds(const std::string &way) {
    Machine machine;
    const std::string asked = machine.runOnTerminal(wizard, way + "x\n").out;
    const size_t end = asked.find(": Invalid ");
    const size_t begin = asked.rfind("]: ", end - 2) + 3;
    const std::string question = asked.substr(begin, end - begin);
    const long long min = std::stoll(question.substr(question.find('[') + 1));
    const long long max = std::stoll(question.substr(question.find("..") + 2));
    const Outcome outcome = machine.runOnTerminal(wizard, way + std::to_string(max + 1) + "\n" +
                                                              std::to_string(min - 1) + "\n" +
                                                              std::to_string(max) + "\n");
    EXPECT_EQ(countOf(outcome.out, "Out of range.\n" + question), 2) << question;
    return question + testing::PrintToString(outcome.only("write")) + "\n";
}

TEST(Wizard, BoundsEveryField) {
    Machine machine;
    std::string golden = policyMenu("15");
    const int fields = std::stoi(golden.substr(golden.rfind("..") + 2));
    golden += "\n";
    for (int field = 1; field <= fields; ++field) {
        golden += tryBounds("3\n15\n" + std::to_string(field) + "\n");
    }
    for (std::string way : {"1\n1\n2\n", "1\n2\n", "2\n3\n"}) {
        const std::string asked = machine.runOnTerminal(wizard, way).out; // and not answered
        for (int questions = countOf(asked, "[y/n]: "); questions > 0; --questions) {
            golden += tryBounds(way + "y\n");
            way += "n\n";
        }
    }
    expectGolden("wizard-bounds.txt", golden);
}

TEST(Wizard, ReturnsFromAnEditorWithoutMemory) {
    Machine machine;
    machine.environment["REFUSE"] = "30277";
    const Outcome outcome = machine.runOnTerminal(wizard, "1\n2\n2\n0\n");
    EXPECT_EQ(countOf(outcome.out, "Select [0..3]: \nNext?\n"), 2);
    EXPECT_EQ(outcome.calls.size(), 0U);
}

TEST(Wizard, ShowsEveryPromptBeforeItReads) {
    Machine machine;
    machine.printsToFile = true;
    machine.environment["END_AT_READ"] = "1";
    const std::string number = machine.runOnTerminal(wizard, "3\n0\n").out;
    EXPECT_TRUE(number.ends_with("Select policy index [0..15]: ")) << number;
    machine.environment["END_AT_READ"] = "2";
    const std::string yesOrNo = machine.runOnTerminal(wizard, "1\n2\nn\nn\n").out;
    EXPECT_TRUE(yesOrNo.ends_with("Overwrite sysPL2? (default: n) [y/n]: ")) << yesOrNo;
}
