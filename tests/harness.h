// Runs the built program as a user does, with sections of the test's own making behind it and the
// recorder in between, and tells what came of it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

struct Outcome {
    std::string out;
    std::string err;
    int status = -1;
    std::vector<std::string> calls; // into the platform's libraries, as the recorder writes them

    // The calls that begin with `kind`: "read", "write" or "name".
    [[nodiscard]] std::vector<std::string> only(const std::string &kind) const;
};

using Environment = std::map<std::string, std::string>;
using Bytes = std::vector<uint8_t>;

// The sections in a directory that lives as long as this object, filled with one byte or with a
// pattern that reaches every bit and in which no two neighbours and hardly any two words are alike.
// There are no line ends in it, and its floating point numbers and UPM timestamp are plausible
// ones.
class Machine {
  public:
    Machine();
    ~Machine();
    Machine(const Machine &) = delete;
    Machine &operator=(const Machine &) = delete;

    void fill(uint8_t byte);
    void fillWithPattern();
    void poke(int section, size_t offset, const Bytes &bytes);
    [[nodiscard]] Bytes contents(int section) const;

    std::string directory; // holds the files "section-<n>"
    // On standard input, unless that is a terminal: answers to the wizard, who may not read them.
    std::string input = "1\n2\ny\n5\n";
    // Of a run on a terminal, standard output alone.
    bool printsToFile = false;
    // The shell's, after the command: where the program's standard streams lead.
    std::string redirections;
    // Added to the program's environment; TZ is UTC unless set here.
    Environment environment;

    // Standard input is a file.
    Outcome run(const std::vector<std::string> &arguments);
    // Standard input and output are a terminal without echo, on which `typed` waits to be read,
    // followed by the end of input.
    Outcome runOnTerminal(const std::vector<std::string> &arguments, const std::string &typed);

  private:
    Outcome start(const std::vector<std::string> &arguments, const std::string *typed);
};

// The directory of the build under test, and whether its program carries sanitizers.
std::string buildDirectory();
bool isSanitized();

// The bytes of a value, as many as `size`.
Bytes littleEndian(uint64_t value, size_t size);

std::vector<std::string> linesOf(const std::string &text); // each with its end
// Whether a line of a report shows a field of a policy.
bool isOfPolicyField(const std::string &line);
int countOf(const std::string &text, const std::string &piece);
// The text with a name in place of each occurrence of a piece of it.
std::string naming(const std::string &piece, const std::string &name, std::string text);

// The contents of a file under golden/.
std::string golden(const std::string &name);

// Compares with a file under golden/, in which \xNN stands for a byte that is no printable
// character, and for a backslash. With ORBEL_RECORD_GOLDEN set, writes the file instead.
void expectGolden(const std::string &name, const std::string &text);

// Runs the command of every line "$ COMMAND -> ..." or "$ VARIABLE=VALUE; COMMAND -> ..." of a file
// under golden/, on a machine of its own, and compares the text that `run` makes of it with what
// stands behind the arrow and in the lines that follow.
using RunCommand = std::function<std::string(Machine &machine, const std::string &command)>;
void expectTranscript(const std::string &name, const RunCommand &run);
