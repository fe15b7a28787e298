#include "orbelstatctl/commands.h"

#include <cstdio>
#include <getopt.h>
#include <sstream>

struct Command {
    std::string_view name;
    const char *summary; // one line for the program's help
    Run *run;
    const char *options; // besides --from and --help, such as "i: n: --csv"
    const char *help;
    const char *requiredOperand = ""; // the name of the first operand if there must be one
    bool isLiveOnly = false;          // whether --from is rejected
    uint32_t maxOperands = UINT32_MAX;
    ExitStatus ifFailed = ExitStatus::failure; // the status of failures and of lost output
};

static constexpr Command commands[] = {
    {"list", "List fields with type, section, offset and bounds", runList, "a w", listHelp},
    {"get", "Print fields as PATH=VALUE", runGet, "n w", getHelp},
    {"set", "Validate all assignments, then write", runSet, "--dry-run", setHelp, "PATH=VALUE",
     true},
    {"undo", "Reverse changes", runUndo, "--dry-run --force", undoHelp, "FILE", true, 1},
    {"json", "Print one JSON document", runJson, "", jsonHelp, "", false, 1},
    {"table", "Print records or arrays as a table", runTable, "t --csv", tableHelp, "PATH"},
    {"diff", "Compare a capture with another one or the live memory", runDiff, "w p:", diffHelp,
     "BEFORE", true, 2, ExitStatus::usageError},
    {"watch", "Print changes as they happen", runWatch, "i: n: --csv", watchHelp, "PATH", true},
    {"wait", "Wait until conditions hold", runWait, "i: t:", waitHelp, "CONDITION", true},
    {"metrics", "Print numbers and text for Prometheus", runMetrics, "", metricsHelp},
    {"save", "Save a capture of all sections", runSave, "", saveHelp, "DIRECTORY", true, 1},
};

static constexpr Command program = {"", "", nullptr, "V --version", ""};

// Throws a usage error with a hint or, without one, a reference to the command's help.
[[noreturn]] static void reject(const Command &command, const std::string &message,
                                const std::string &hint = "") {
    const std::string help =
        std::string(command.name) + (&command == &program ? "" : " ") + "--help";
    throw CommandError{ExitStatus::usageError,
                       {message + (hint.empty() ? "; see orbelstatctl " + help : hint)}};
}

static std::string formatProgramHelp() {
    std::string help = R"(Usage: orbelstatctl [--from DIRECTORY] COMMAND [ARGUMENT ...]
       orbelstatctl [COMMAND] -h | --help
       orbelstatctl -V | --version

Read and write the fields of the power-management shared memory by name.

Commands:
)";
    for (const Command &command : commands) {
        const std::string padding(9 - command.name.size(), ' ');
        help.append("  ").append(command.name).append(padding + command.summary + '\n');
    }
    return help + R"(
Options:
  --from DIRECTORY  Read a capture made by save instead of the live memory
  -h, --help        Print this help, or the help of COMMAND
  -V, --version     Print the version

A PATH selects a field, an array or a group: upm.policies[3].state, psu[0..3],
reporting. Run "orbelstatctl COMMAND --help" for a command's options and examples.
)";
}

// The value of all long options for getopt_long; greater than any letter.
static constexpr int longOption = 256;

// Throws a usage error for an option that getopt_long rejected. `found` is ':' if it lacks a value.
[[noreturn]] static void rejectOption(int found, const Command &command, std::string word,
                                      const Strings &known) {
    const bool isLong = optopt == 0 || optopt == longOption;
    word = isLong ? word.substr(0, word.find('=')) : std::string{'-', static_cast<char>(optopt)};
    if (found == ':' || optopt == longOption) {
        reject(command, word + (found == ':' ? " needs a value" : " does not take a value"));
    }
    reject(command, "unknown option: " + word, isLong ? didYouMean(word, known) : "");
}

// Parses the words after the first one, which names the command.
static Options parseArguments(const Command &command, std::span<char *> words) {
    // "-" returns operands as the option 1, so that options may follow them in any environment; "+"
    // ends the program's own options at the command. ":" distinguishes a missing value.
    std::string letters = &command == &program ? "+:h" : "-:h";
    Strings names = {"--from", "--help"};
    std::istringstream options(command.options);
    for (std::string name; options >> name;) {
        name.starts_with("--") ? names.push_back(name) : void(letters += name);
    }
    std::vector<option> table;
    for (const std::string &name : names) {
        table.push_back({name.c_str() + 2, name == "--from" ? 1 : 0, nullptr, longOption});
    }
    table.push_back({});
    Options arguments;
    opterr = 0;
    optind = 0; // starts a new pass
    for (int found = 0, index = 0; found != -1;) {
        found = getopt_long(static_cast<int>(words.size()), words.data(), letters.c_str(),
                            table.data(), &index);
        if (found == '?' || found == ':') {
            rejectOption(found, command, words[static_cast<size_t>(optind) - 1], names);
        } else if (found == 1) {
            arguments.operands.emplace_back(optarg);
        } else if (found != -1) {
            const std::string name = found == longOption
                                         ? names[static_cast<size_t>(index)]
                                         : std::string{'-', static_cast<char>(found)};
            arguments.options[name].emplace_back(optarg != nullptr ? optarg : "");
        }
    }
    arguments.operands.insert(arguments.operands.end(), words.begin() + optind, words.end());
    return arguments;
}

static const Command &findCommand(const std::string &name) {
    Strings names;
    for (const Command &command : commands) {
        if (command.name == name) {
            return command;
        }
        names.emplace_back(command.name);
    }
    reject(program, name + ": no such command", didYouMean(name, names));
}

// Runs a command line. `command` becomes the command as soon as it is known.
static ExitStatus run(std::span<char *> words, const Command *&command) {
    const Options general = parseArguments(program, words);
    if (words.size() <= 1) {
        fputs(formatProgramHelp().c_str(), stderr);
        return ExitStatus::usageError;
    }
    if (general.has("-h") || general.has("--help")) {
        print(formatProgramHelp());
        return ExitStatus::success;
    }
    if (general.has("-V") || general.has("--version")) {
        print("orbelstatctl " ORBELSTATCTL_VERSION "\n");
        return ExitStatus::success;
    }
    if (general.operands.empty()) {
        reject(program, "COMMAND is missing");
    }
    command = &findCommand(general.operands[0]);
    Options arguments = parseArguments(*command, words.last(general.operands.size()));
    if (arguments.has("-h") || arguments.has("--help")) {
        print(command->help);
        return ExitStatus::success;
    }
    arguments.options.insert(general.options.begin(), general.options.end());
    rejectIf(command->isLiveOnly && arguments.has("--from"),
             std::string(command->name) + " does not accept --from (live memory only)");
    rejectIf(arguments.has("--from") && arguments.last("--from").empty(), "--from: empty name");
    if (*command->requiredOperand != '\0' && arguments.operands.empty()) {
        reject(*command, std::string(command->requiredOperand) + " is missing");
    }
    if (arguments.operands.size() > command->maxOperands) {
        reject(*command, "unexpected argument: " + arguments.operands[command->maxOperands]);
    }
    return command->run(arguments);
}

double Options::number(const std::string &option, double min, double max, double fallback) const {
    if (!has(option)) {
        return fallback;
    }
    const auto [number, error] = parseFloat(last(option));
    rejectIf(!error.empty() || !(min <= number && number <= max),
             option + ": must be a number from " + formatFloat(min) + " to " + formatFloat(max) +
                 ": " + last(option));
    return number;
}

RunResult runOrbelstatctl(int argc, char **argv) {
    const Command *command = &program;
    auto status = ExitStatus::failure;
    try {
        return {run({argv, static_cast<size_t>(argc)}, command), command->ifFailed};
    } catch (const CommandError &error) {
        status = error.status;
        std::ranges::for_each(error.messages, printError);
    } catch (const std::bad_alloc &) {
        printError("out of memory");
    } catch (const std::exception &error) {
        printError(error.what());
    }
    return {status == ExitStatus::failure ? command->ifFailed : status, command->ifFailed};
}
