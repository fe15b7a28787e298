#include "orbelstatctl/commands.h"

// Returns why `set` could not restore the value of a writable field; "" if it could.
static std::string restoreError(const Field &field, const std::string &value, Source &source) {
    const Row &row = *field.node().row;
    const auto [bytes, error] = parseValue(row, value, Bounds::check);
    if (!error.empty()) {
        return "skipped, set would reject it: " + error;
    }
    return source.readBytes(field) == bytes ? ""
                                            : "skipped, this NaN cannot be restored bit for bit";
}

ExitStatus runGet(const Options &arguments) {
    const auto kind = arguments.has("-w") ? Kind::writable : Kind::any;
    const std::vector<Path> paths = parsePaths(arguments.operands, kind);
    Source source(arguments.last("--from"));
    bool isSkipped = false;
    for (const Field &field : expandPaths(paths, kind)) {
        const auto value = source.readValue(field);
        if (!value) {
            continue;
        }
        const std::string error = kind == Kind::writable ? restoreError(field, *value, source) : "";
        if (error.empty()) {
            print((arguments.has("-n") ? "" : field.path + '=') + *value + '\n');
        } else {
            printError(field.path + '=' + *value + ": " + error);
            isSkipped = true;
        }
    }
    return source.hasFailed() || isSkipped ? ExitStatus::failure : ExitStatus::success;
}

const char getHelp[] = R"(Usage: orbelstatctl [--from DIRECTORY] get [-nw] [PATH ...]

Print fields as PATH=VALUE, in the order in which they are named (default: all).

  -n  Print the bare values
  -w  Print only fields that set accepts

Examples:
  watts=$(orbelstatctl get -n 'upm.policies[3].policyPowerLimit')
  orbelstatctl get -w upm.policies >policies
)";
