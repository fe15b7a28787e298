#include "orbelstatctl/commands.h"
#include "output/standard_streams.h"

#include <cstdio>

ExitStatus runDiff(const Options &arguments) {
    const auto kind = arguments.has("-w") ? Kind::writable : Kind::any;
    const std::vector<Path> paths =
        parsePaths(arguments.has("-p") ? arguments.options.at("-p") : Strings(), kind);
    const Strings &captures = arguments.operands;
    rejectIf(std::ranges::count(captures, "") != 0, "the name of a capture is empty");
    Source before(captures[0]);
    Source after(captures.size() == 2 ? captures[1] : "");
    bool isDifferent = false;
    bool isComplete = true;
    for (const Field &field : expandPaths(paths, kind)) {
        const auto old = before.readValue(field);
        const auto now = after.readValue(field);
        isComplete = isComplete && old && now;
        if (old && now && *old != *now) {
            print(field.path + ": " + *old + " -> " + *now + '\n');
            isDifferent = true;
        }
    }
    flushStandardOutput();
    if (!isComplete || ferror(stdout) != 0) {
        return ExitStatus::usageError; // 2, as in diff(1), where 1 means that values differ
    }
    return isDifferent ? ExitStatus::failure : ExitStatus::success;
}

const char diffHelp[] = R"(Usage: orbelstatctl diff [-w] [-p PATH]... BEFORE [AFTER]

Print PATH: OLD -> NEW for each field that differs between the captures BEFORE and
AFTER (default: the live memory). The status is 0 if nothing differs, 1 if something
does, and 2 if not everything could be compared.

  -w       Compare only writable fields
  -p PATH  Compare only the fields below PATH; may be repeated

Examples:
  orbelstatctl diff -p upm monday tuesday
  orbelstatctl diff -w -p upm.policies monday | orbelstatctl undo -
)";
