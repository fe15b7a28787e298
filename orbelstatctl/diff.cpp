#include "orbelstatctl/commands.h"
#include "output/standard_streams.h"

#include <cstdio>

// As for diff(1), 1 means that values differ, and 2 that something could not be compared.
static constexpr auto same = ExitStatus::success;
static constexpr auto different = ExitStatus::failure;
static constexpr auto trouble = ExitStatus::usageError;

ExitStatus runDiff(const Arguments &arguments) {
    const auto kind = arguments.has("-w") ? Kind::writable : Kind::any;
    const std::vector<Path> paths =
        parsePaths(arguments.has("-p") ? arguments.options.at("-p") : Strings(), kind);
    const Strings &captures = arguments.operands;
    rejectIf(std::ranges::count(captures, "") != 0, "the name of a capture is empty");
    Source before(captures[0]);
    Source after(captures.size() == 2 ? captures[1] : "");
    bool isDifferent = false;
    for (const Field &field : expandPaths(paths, kind)) {
        const auto old = before.readValue(field);
        const auto now = after.readValue(field);
        if (old && now && *old != *now) {
            print(field.path + ": " + *old + " -> " + *now + '\n');
            isDifferent = true;
        }
    }
    flushStandardOutput();
    if (before.hasFailed() || after.hasFailed() || ferror(stdout) != 0) {
        return trouble;
    }
    return isDifferent ? different : same;
}

const char diffHelp[] = R"(Usage: orbelstatctl diff [-w] [-p PATH]... BEFORE [AFTER]

Print PATH: OLD -> NEW for each field that differs between two captures (default
for AFTER: the live memory). The status is 0 without differences, 1 with some,
and 2 if not everything could be compared.

  -w       Compare only writable fields
  -p PATH  Compare only the fields below PATH; may be repeated

Examples:
  orbelstatctl diff -p upm monday tuesday
  orbelstatctl diff -w -p upm.policies monday | orbelstatctl undo -
)";
