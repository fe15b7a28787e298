// The command line: every message, exit status and order of actions.
#include "harness.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <regex>

// The pieces, or of many the first, the last and the number of all.
static std::string shortened(const std::vector<std::string> &pieces, size_t most) {
    return pieces.size() <= most
               ? std::accumulate(pieces.begin(), pieces.end(), std::string())
               : pieces.front() + "... " + std::to_string(pieces.size()) + " ..." + pieces.back();
}

// In the transcript "'...'" is a word with blanks or none, and behind "->" stand the exit status
// and the library calls. The fields of policies are left out, and of equal calls in a row all but
// one.
TEST(CommandLine, AnswersEveryArgumentVector) {
    static const std::regex word("'([^']*)'|([^ ]+)");
    expectTranscript("command-lines.txt", [](Machine &machine, const std::string &command) {
        std::vector<std::string> arguments;
        for (std::sregex_iterator at(command.begin(), command.end(), word), end; at != end; ++at) {
            arguments.push_back((*at)[1].str() + (*at)[2].str());
        }
        const Outcome outcome = machine.run(arguments);
        std::vector<std::string> calls;
        for (const std::string &call : outcome.calls) {
            calls.push_back(", " + call.substr(0, 40));
        }
        calls.erase(std::unique(calls.begin(), calls.end()), calls.end());
        std::string text = naming(golden("usage.txt"), "(usage)\n", outcome.err + outcome.out);
        text = naming(golden("upm-help.txt"), "(help on -u)\n", text);
        text = naming(buildDirectory() + "/orbelstatprobe", "PROGRAM", text);
        std::vector<std::string> lines = linesOf(text);
        std::erase_if(lines, isOfPolicyField);
        return std::to_string(outcome.status) + shortened(calls, 3) + "\n" + shortened(lines, 6);
    });
}
