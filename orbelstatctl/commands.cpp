#include "orbelstatctl/commands.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

static constexpr char usage[] =
    "Usage: orbelstatctl list [PATH]\n"
    "       orbelstatctl get PATH...\n"
    "       orbelstatctl set [--dry-run] PATH=VALUE... | -\n"
    "       orbelstatctl json [PATH]\n"
    "       orbelstatctl save DIRECTORY\n"
    "       orbelstatctl --help | --version\n"
    "Lists, reads, writes and captures fields of the power-management shared memory by name.\n"
    "A PATH names a field, a group or an array: upm.policies[3].state, psu[0], reporting.\n";

static int printHelp(Words /*none*/) {
    fputs(usage, stdout);
    return succeeded;
}

static int printVersion(Words /*none*/) {
    puts("orbelstatctl " ORBELSTATCTL_VERSION);
    return succeeded;
}

int runCompanion(int argc, char **argv) {
    static constexpr size_t any = SIZE_MAX;
    static constexpr struct {
        const char *name;
        size_t minimum; // arguments
        size_t maximum;
        int (*run)(Words arguments);
    } commands[] = {
        {"list", 0, 1, listFields},        {"get", 1, any, getFields},
        {"set", 1, any, setFields},        {"json", 0, 1, printJson},
        {"save", 1, 1, saveSections},      {"--help", 0, 0, printHelp},
        {"--version", 0, 0, printVersion},
    };
    const Words words(argv, static_cast<size_t>(argc));
    if (words.size() < 2) {
        fprintf(stderr, "orbelstatctl: no command; see orbelstatctl --help\n");
        return refused;
    }
    const Words arguments = words.subspan(2);
    for (const auto &command : commands) {
        if (strcmp(words[1], command.name) == 0) {
            if (arguments.size() < command.minimum || arguments.size() > command.maximum) {
                fprintf(stderr,
                        "orbelstatctl: %s: wrong number of arguments; see orbelstatctl --help\n",
                        command.name);
                return refused;
            }
            return command.run(arguments);
        }
    }
    fprintf(stderr, "orbelstatctl: %s: no such command; see orbelstatctl --help\n", words[1]);
    return refused;
}
