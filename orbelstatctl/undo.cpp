#include "orbelstatctl/commands.h"
#include "orbelstatctl/write_fields.h"

// Parses "PATH: OLD -> NEW" as the assignment of NEW, with OLD in `before`. PATH must be one
// element. The values may be outside the field's bounds, since memory held them.
static Result<Assignment> parseChange(const InputLine &line) {
    const std::string_view text = line.text;
    const size_t colon = std::min(text.find(": "), text.size());
    const size_t arrow = text.find(" -> ", colon);
    const auto [path, error] = parsePath(text.substr(0, colon));
    const auto fields = error.empty() ? expandPaths({path}, Kind::writable) : std::vector<Field>();
    Assignment change{};
    bool isValid = line.isComplete && arrow != std::string_view::npos && fields.size() == 1 &&
                   fields[0].path == text.substr(0, colon);
    if (isValid) {
        const Row &row = *fields[0].node().row;
        const auto old = parseValue(row, text.substr(colon + 2, arrow - colon - 2), Bounds::ignore);
        const auto now = parseValue(row, text.substr(arrow + 4), Bounds::ignore);
        change = {fields[0], now.value, old.value};
        isValid = old.error.empty() && now.error.empty();
    }
    return {change, isValid ? "" : "not PATH: OLD -> NEW"};
}

// Reverses changes, in this order, on a copy of memory. Returns the resulting bytes of each field.
// Throws a failure with a message for each field that holds neither value of a change, unless
// `isForced` holds. Values are compared as they print: a NaN has many representations.
static std::vector<Assignment> reverseChanges(const std::vector<Assignment> &changes,
                                              Source &source, bool isForced) {
    std::vector<Assignment> results;
    std::map<std::string, size_t> places;         // of the fields in `results`, by path
    std::map<std::string, std::string> conflicts; // messages by path
    for (const auto &[field, newBytes, oldBytes, isAttempted, error] : changes) {
        const auto memory = source.readBytes(field);
        if (!memory) {
            throw CommandError{ExitStatus::failure, {}}; // readBytes has printed the reason
        }
        const Row &row = *field.node().row;
        const auto [place, isFirst] = places.emplace(field.path, results.size());
        results.insert(results.end(), isFirst ? 1 : 0, {field, std::string(*memory)});
        std::string &bytes = results[place->second].bytes;
        const std::string value = formatValue(row, bytes);
        const std::string expected = formatValue(row, newBytes);
        if (isForced || value == expected) {
            bytes = oldBytes;
        } else if (value != formatValue(row, oldBytes)) {
            conflicts.emplace(field.path, field.path + ": is " + formatValue(row, *memory) +
                                              ", expected " + expected +
                                              " (use --force to overwrite it)");
        }
    }
    if (!conflicts.empty()) {
        Strings messages;
        for (const auto &[path, message] : conflicts) {
            messages.push_back(message);
        }
        throw CommandError{ExitStatus::failure, messages};
    }
    return results;
}

ExitStatus runUndo(const Options &arguments) {
    auto changes = parseAll(readLines(arguments.operands[0]), parseChange);
    std::ranges::reverse(changes);
    Source source;
    const auto assignments = reverseChanges(changes, source, arguments.has("--force"));
    return writeFields(assignments, source, arguments.has("--dry-run"));
}

const char undoHelp[] = R"(Usage: orbelstatctl undo [--dry-run] [--force] FILE

Reverse the lines PATH: OLD -> NEW that set, undo or diff -w printed, last to first.
Nothing is written if a field holds neither value: it has been changed since.
FILE may be "-" for standard input.

  --dry-run  Check and print, but write nothing
  --force    Restore OLD even if a field holds neither value

Examples:
  orbelstatctl undo changes
  orbelstatctl diff -w -p upm.policies monday | orbelstatctl undo --dry-run -
)";
