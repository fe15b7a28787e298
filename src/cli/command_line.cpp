#include "cli/command_line.h"

#include "cli/arguments.h"
#include "cli/help.h"
#include "cli/write_option.h"
#include "output/standard_streams.h"
#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"
#include "upm/policy_report.h"
#include "upm/views.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr int upmErrorStatus = 1;

// The requests of all options.
struct Request {
    bool isGiven[128] = {}; // by option letter; '?' for every unknown option
    int32_t locator = -1;
    int32_t index = -1;
    // The form of -u, which is always the last option: a policy, 0..15, or one of the other views.
    std::optional<uint32_t> policy;
    void (*upmView)() = nullptr;

    [[nodiscard]] bool has(int letter) const {
        return isGiven[letter];
    }
};

// Parses the arguments of -u. Prints the help, or an error, or sets one field of the request.
EarlyExit parseUpmOption(const Arguments &arguments, Request &request) {
    const int next = optind;
    const char *const *words = arguments.words;
    optind = arguments.count; // -u consumes all remaining arguments
    if (!arguments.has(next)) {
        request.upmView = dumpUpmData;
        return keepParsing;
    }
    if (arguments.is(next, "-h")) {
        if (arguments.has(next + 1) && !arguments.isOption(next + 1)) {
            printf("Error: Unexpected argument '%s' after -u -h\n", words[next + 1]);
            return upmErrorStatus;
        }
        printUpmHelp();
        return 0;
    }
    if (arguments.is(next, "-t")) {
        request.upmView = showThermalData;
        return keepParsing;
    }
    if (!arguments.is(next, "-p")) {
        printf("Error: Invalid argument '%s' after -u\n", words[next]);
        return upmErrorStatus;
    }
    if (!arguments.has(next + 1)) {
        puts("Error: Missing argument after -u -p");
        return upmErrorStatus;
    }
    if (arguments.is(next + 1, "-c")) {
        request.upmView = showCpuPowerLimits;
        return keepParsing;
    }
    if (arguments.is(next + 1, "-a")) {
        request.upmView = showAllPolicies;
        return keepParsing;
    }
    long policy = 0;
    if (!parseLong(words[next + 1], policy)) {
        printf("Error: Invalid policy index '%s' after -u -p\n", words[next + 1]);
        return upmErrorStatus;
    }
    if (isOutOfRange(policy, lastPolicy)) {
        printf("Error: policy index %ld out of range [0..15]\n", policy);
        return upmErrorStatus;
    }
    request.policy = static_cast<uint32_t>(policy);
    return keepParsing;
}

// Parses a decimal number and returns its low 32 bits; 0 if the text does not begin with a number.
int32_t parseInt32(const char *text) {
    return static_cast<int32_t>(strtol(text, nullptr, 10));
}

// Handles one option. Writes and the usage text are not reports: they run as soon as the option is
// parsed.
EarlyExit parseOption(int letter, const Arguments &arguments, Request &request) {
    request.isGiven[letter] = true;
    switch (letter) {
    case 'l':
        request.locator = parseInt32(optarg);
        return keepParsing;
    case 'i':
        request.index = parseInt32(optarg);
        return keepParsing;
    case 'u':
        return parseUpmOption(arguments, request);
    case 'w':
        return parseWriteOption(arguments);
    case 'h':
    case '?':
        printUsage();
        return keepParsing;
    default:
        return keepParsing; // a report, which printReport prints
    }
}

// Prints one report: the first in this order that has been asked for.
void printReport(const Request &request) {
    if (request.has('l') || request.has('i')) {
        printf("locator=%d, index=%d\n", request.locator, request.index);
    } else if (request.has('d')) {
        dumpGlobalSection();
    } else if (request.has('o')) {
        printGlobalSectionOffsets();
    } else if (request.has('e')) {
        dumpPSUInfo();
    } else if (request.has('r')) {
        dumpPowerReporting();
    } else if (request.has('c')) {
        dumpPowerConfig();
    } else if (request.policy) {
        showPolicy(*request.policy);
    } else if (request.upmView != nullptr) {
        request.upmView();
    }
}

} // namespace

int runCommandLine(int argc, char **argv) {
    const Arguments arguments{argc, argv};
    Request request;
    bool hasOptions = false;
    for (;;) {
        flushStandardOutput(); // so that getopt's messages on standard error come in order
        const int letter = getopt(argc, argv, "deorcul:i:w?h");
        if (letter == -1) {
            break;
        }
        hasOptions = true;
        if (const EarlyExit exit = parseOption(letter, arguments, request)) {
            return *exit;
        }
    }
    if (!hasOptions) {
        puts("Error: No option passed");
        printUsage();
    }
    printReport(request);
    return 0;
}
