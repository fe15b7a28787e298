#include "orbelstatctl/commands.h"
#include "orbelstatctl/values.h"
#include "output/standard_streams.h"

#include <cstdio>
#include <getopt.h>
#include <new>
#include <sstream>

static const Command *const commands[] = {
    &listCommand, &getCommand,   &setCommand,  &undoCommand,    &jsonCommand, &tableCommand,
    &diffCommand, &watchCommand, &waitCommand, &metricsCommand, &saveCommand};

static const Command program = {"", "", nullptr, "V --version", ""};

// Throws a usage error with a hint or, without one, a reference to the command's help.
[[noreturn]] static void reject(const Command &command, const std::string &message,
                                const std::string &hint = "") {
    const std::string help =
        std::string(command.name) + (&command == &program ? "" : " ") + "--help";
    throw CommandError{ExitStatus::usageError,
                       {message + (hint.empty() ? "; see orbelstatctl " + help : hint)}};
}

static void printProgramHelp(FILE *file) {
    fputs(R"(Usage: orbelstatctl [--from DIRECTORY] COMMAND [ARGUMENT ...]
       orbelstatctl [COMMAND] -h | --help
       orbelstatctl -V | --version

Read and write the fields of the power-management shared memory by name.

Commands:
)",
          file);
    for (const Command *command : commands) {
        fprintf(file, "  %-8s %s\n", command->name, command->summary);
    }
    fputs(R"(
Options:
  --from DIRECTORY  Read a capture, which save made, instead of the live memory
  -h, --help        Print this help, or the help of COMMAND
  -V, --version     Print the version

A PATH selects a field, a group or an array: upm.policies[3].state, psu[0..3],
reporting. Run "orbelstatctl COMMAND --help" for a command's options and examples.
)",
          file);
    recordOutputError();
}

// The value of all long options for getopt_long; greater than any letter.
static constexpr int longOption = 256;

// Throws a usage error for what getopt_long has just found: '?' or, without a value, ':'.
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
static Arguments parseArguments(const Command &command, std::span<char *> words) {
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
    Arguments arguments;
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
    for (const Command *command : commands) {
        if (command->name == name) {
            return *command;
        }
        names.emplace_back(command->name);
    }
    reject(program, name + ": no such command", didYouMean(name, names));
}

// Runs a command line. `command` becomes the command as soon as it is known.
static ExitStatus run(std::span<char *> words, const Command *&command) {
    const Arguments general = parseArguments(program, words);
    if (words.size() <= 1 || general.has("-h") || general.has("--help")) {
        printProgramHelp(words.size() <= 1 ? stderr : stdout);
        return words.size() <= 1 ? ExitStatus::usageError : ExitStatus::success;
    }
    if (general.has("-V") || general.has("--version")) {
        print("orbelstatctl " ORBELSTATCTL_VERSION "\n");
        return ExitStatus::success;
    }
    if (general.operands.empty()) {
        reject(program, "COMMAND is missing");
    }
    command = &findCommand(general.operands[0]);
    Arguments arguments = parseArguments(*command, words.last(general.operands.size()));
    if (arguments.has("-h") || arguments.has("--help")) {
        print(command->help);
        return ExitStatus::success;
    }
    arguments.options.insert(general.options.begin(), general.options.end());
    rejectIf(command->isLiveOnly && arguments.has("--from"),
             std::string(command->name) + " does not accept --from (live memory only)");
    rejectIf(arguments.has("--from") && arguments.last("--from").empty(),
             "--from: DIRECTORY is empty");
    if (*command->requiredOperand != '\0' && arguments.operands.empty()) {
        reject(*command, std::string(command->requiredOperand) + " is missing");
    }
    if (arguments.operands.size() > command->maxOperands) {
        reject(*command, "unexpected argument: " + arguments.operands[command->maxOperands]);
    }
    return command->run(arguments);
}

double Arguments::number(const std::string &option, double least, double most,
                         double ifMissing) const {
    if (!has(option)) {
        return ifMissing;
    }
    const auto [number, error] = parseFloat(last(option));
    rejectIf(!error.empty() || !(least <= number && number <= most),
             option + ": must be a number from " + formatFloat(least) + " to " + formatFloat(most) +
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
