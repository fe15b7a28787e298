#include "orbelstatctl/commands.h"
#include "orbelstatctl/write_fields.h"

// Returns why a path cannot be assigned to; "" if it can.
static std::string targetError(const Path &path) {
    const Node &node = *path.back().node;
    if (!node.isField()) {
        return "is a group; set one of its fields instead";
    }
    if (!node.isWritable()) {
        return "is read-only";
    }
    return std::ranges::none_of(path, &Step::isBareArray)
               ? ""
               : "matches " + std::to_string(expandPaths({path}).size()) + " fields; use " +
                     formatPath(path, "[*]") + " to set them all";
}

// Parses PATH=VALUE into an assignment for each field that PATH selects. Adds the bytes to `all`,
// which maps the path of each assigned field to its bytes.
static Result<std::vector<Assignment>> parseAssignments(std::string_view text,
                                                        std::map<std::string, std::string> &all) {
    const size_t end = text.find('=');
    if (end == std::string_view::npos || text.ends_with('\r') ||
        text.find('\0') != std::string_view::npos) {
        return {{}, "not PATH=VALUE"};
    }
    const auto [path, pathError] = parsePath(text.substr(0, end));
    const std::string error = pathError.empty() ? targetError(path) : pathError;
    if (!error.empty()) {
        return {{}, error};
    }
    const auto [bytes, valueError] =
        parseValue(*path.back().node->row, text.substr(end + 1), Bounds::check);
    if (!valueError.empty()) {
        return {{}, valueError};
    }
    std::vector<Assignment> assignments;
    for (const Field &field : expandPaths({path})) {
        const auto [known, isNew] = all.emplace(field.path, bytes);
        if (known->second != bytes) {
            return {{}, field.path + " is assigned two different values"};
        }
        assignments.insert(assignments.end(), isNew ? 1 : 0, {field, bytes});
    }
    return {assignments, ""};
}

static std::vector<Assignment> readAssignments(const Strings &arguments) {
    std::vector<InputLine> lines;
    if (arguments == Strings{"-"}) {
        lines = readLines("-");
        rejectIf(lines.empty(), "standard input: nothing to set");
        // If the writer died in mid-line, "=65" may be all that is left of "=650".
        rejectIf(!lines.back().isComplete,
                 "standard input: the last line does not end in a newline (truncated input?)");
    } else {
        for (const std::string &text : arguments) {
            lines.push_back({0, text, true});
        }
    }
    std::map<std::string, std::string> all;
    std::vector<Assignment> assignments;
    for (const std::vector<Assignment> &some :
         parseAll(lines, [&](const InputLine &line) { return parseAssignments(line.text, all); })) {
        assignments.insert(assignments.end(), some.begin(), some.end());
    }
    return assignments;
}

ExitStatus runSet(const Options &arguments) {
    Source source;
    return writeFields(readAssignments(arguments.operands), source, arguments.has("--dry-run"));
}

const char setHelp[] = R"(Usage: orbelstatctl set [--dry-run] PATH=VALUE ... | -

Validate all assignments, print PATH: OLD -> NEW for each field that changes,
write these, and read all assigned fields back. To set several elements of an
array, give a range or [*]. "-" reads the assignments from standard input.

  --dry-run  Validate and print, but write nothing

Examples:
  orbelstatctl set 'upm.policies[3].policyPowerLimit=650' >changes
  orbelstatctl set --dry-run 'upm.policies[*].state=0'
)";
