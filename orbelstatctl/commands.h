// The commands of orbelstatctl, each defined in a file with its name, and how one is run.
#pragma once

#include "orbelstatctl/source.h"

// The parsed words after a command's name.
struct Arguments {
    std::map<std::string, Strings> options; // values by "-i" or "--csv"; "" for a flag
    Strings operands;

    [[nodiscard]] bool has(const std::string &option) const {
        return options.contains(option);
    }
    // Returns the last value of an option; "" without one.
    [[nodiscard]] std::string last(const std::string &option) const {
        return has(option) ? options.at(option).back() : "";
    }
    // Returns an option's value as a number. Throws a usage error if it is not one from `least` to
    // `most`.
    [[nodiscard]] double number(const std::string &option, double least, double most,
                                double ifMissing) const;
};

struct Command {
    const char *name;
    const char *summary; // one line for the program's help
    ExitStatus (*run)(const Arguments &arguments);
    const char *options;              // besides --from and --help, such as "i: n: --csv"
    const char *help;                 // usage, options and examples
    const char *requiredOperand = ""; // the name of the first operand if there must be one
    size_t maxOperands = SIZE_MAX;
    bool isLiveOnly = false;                   // whether --from is rejected
    ExitStatus ifFailed = ExitStatus::failure; // the status of failures and of lost output
};

extern const Command listCommand, getCommand, setCommand, undoCommand, jsonCommand, tableCommand,
    metricsCommand, diffCommand, watchCommand, waitCommand, saveCommand;

struct RunResult {
    ExitStatus status;
    ExitStatus ifOutputIsLost; // the status if standard output cannot be written
};

// Parses a command line, runs its command and prints its errors. The caller opens and closes
// standard output.
RunResult runOrbelstatctl(int argc, char **argv);
