// The commands of orbelstatctl, each defined in a file with its name.
#pragma once

#include "orbelstatctl/source.h"
#include "orbelstatctl/values.h"

// The parsed options and operands of a command.
struct Options {
    std::map<std::string, Strings> options; // values by "-i" or "--csv"; "" for a flag
    Strings operands;

    [[nodiscard]] bool has(const std::string &option) const {
        return options.contains(option);
    }
    // Returns the last value of an option; "" without one.
    [[nodiscard]] std::string last(const std::string &option) const {
        return has(option) ? options.at(option).back() : "";
    }
    // Returns an option's value. Throws a usage error if it is not a number from `min` to `max`.
    [[nodiscard]] double number(const std::string &option, double min, double max,
                                double fallback) const;
};

using Run = ExitStatus(const Options &arguments);

// The function and the help text of each command. A help has usage, options and examples.
Run runList, runGet, runSet, runUndo, runJson, runTable, runMetrics, runDiff, runWatch, runWait,
    runSave;
extern const char listHelp[], getHelp[], setHelp[], undoHelp[], jsonHelp[], tableHelp[],
    metricsHelp[], diffHelp[], watchHelp[], waitHelp[], saveHelp[];

struct RunResult {
    ExitStatus status;
    ExitStatus ifOutputIsLost; // the status if standard output cannot be written
};

// Runs a command line and prints its errors. The caller opens and closes standard output.
RunResult runOrbelstatctl(int argc, char **argv);
