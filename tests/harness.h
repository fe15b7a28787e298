// Runs the built program as a user does, with sections of the test's own making behind it and the
// recorder in between, and tells what came of it.
#pragma once

#include <cstdint>
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

// Four sections in a folder that lives as long as this object, filled with one byte or with a
// pattern of printable characters in which no two neighbours and hardly any two words are alike.
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

    std::string folder; // holds the files "section-<n>"
    // Of a run on a terminal, standard output alone.
    bool printsToFile = false;
    // The shell's, behind the command: what becomes of the program's standard streams.
    std::string redirections;
    // Added to the program's environment; TZ is UTC unless set here.
    Environment environment;

    // Standard input is a file, with answers to the wizard.
    Outcome run(const std::vector<std::string> &arguments);
    // Standard input and output are a terminal without echo, on which `typed` waits to be read,
    // followed by the end of input.
    Outcome runOnTerminal(const std::vector<std::string> &arguments, const std::string &typed);

  private:
    Outcome start(const std::vector<std::string> &arguments, const std::string *typed);
};

// The folder of the build under test, and whether its program carries sanitizers.
std::string buildFolder();
bool isSanitized();

// Little-endian bytes of a value.
Bytes word(uint64_t value, size_t size);

// The contents of a file under golden/.
std::string golden(const std::string &name);

// Compares with a file under golden/. With ORBEL_RECORD_GOLDEN set, writes the file instead.
void expectGolden(const std::string &name, const std::string &text);
