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

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr int upmErrorStatus = 1;

enum class Action : uint8_t {
    storeLocator,
    storeIndex,
    selectReport,
    parseUpm,
    parseWrite,
    printUsage
};

// The options in order of precedence: of the reports that a command line asks for, only that of the
// first option runs. Writes and the usage text are no reports: they run when they are met.
constexpr struct Option {
    char letter;
    Action action;
    void (*report)() = nullptr;
} options[] = {
    {'l', Action::storeLocator},
    {'i', Action::storeIndex},
    {'d', Action::selectReport, dumpGlobalSection},
    {'o', Action::selectReport, printGlobalSectionOffsets},
    {'e', Action::selectReport, dumpPSUInfo},
    {'r', Action::selectReport, dumpPowerReporting},
    {'c', Action::selectReport, dumpPowerConfig},
    {'u', Action::parseUpm},
    {'w', Action::parseWrite},
    {'h', Action::printUsage},
    {'?', Action::printUsage},
};

// The letters for getopt, with a colon after each that takes a number.
constexpr auto optionLetters = [] {
    std::array<char, 2 * std::size(options) + 1> letters{};
    char *end = letters.data();
    for (const Option &option : options) {
        *end++ = option.letter;
        if (option.action == Action::storeLocator || option.action == Action::storeIndex) {
            *end++ = ':';
        }
    }
    return letters;
}();

// What a command line asks for.
struct Request {
    int optionCount = 0;                     // options met, unrecognised ones included
    const Option *first = std::end(options); // the option whose report runs, if there is one
    int32_t locator = -1;
    int32_t index = -1;
    // The form of -u, which is always the last option that is read.
    void (*upmView)() = nullptr;
    std::optional<uint32_t> policy; // 0..15
};

EarlyExit parseUpmOption(const Arguments &arguments, Request &request) {
    const int k = optind;
    const char *const *words = arguments.words;
    // No form of -u leaves anything for the pass to read.
    optind = arguments.count;
    if (!arguments.has(k)) {
        request.upmView = dumpUpmData;
        return keepParsing;
    }
    if (arguments.is(k, "-h")) {
        if (arguments.has(k + 1) && !arguments.isOption(k + 1)) {
            printf("Error: Unexpected argument '%s' after -u -h\n", words[k + 1]);
            return upmErrorStatus;
        }
        printUpmHelp();
        return 0;
    }
    if (arguments.is(k, "-t")) {
        request.upmView = showThermalData;
        return keepParsing;
    }
    if (!arguments.is(k, "-p")) {
        printf("Error: Invalid argument '%s' after -u\n", words[k]);
        return upmErrorStatus;
    }
    if (!arguments.has(k + 1)) {
        puts("Error: Missing argument after -u -p");
        return upmErrorStatus;
    }
    if (arguments.is(k + 1, "-c")) {
        request.upmView = showCpuPowerLimits;
        return keepParsing;
    }
    if (arguments.is(k + 1, "-a")) {
        request.upmView = showAllPolicies;
        return keepParsing;
    }
    long policy = 0;
    if (!parseLong(words[k + 1], policy)) {
        printf("Error: Invalid policy index '%s' after -u -p\n", words[k + 1]);
        return upmErrorStatus;
    }
    if (isOutOfRange(policy, lastPolicy)) {
        printf("Error: policy index %ld out of range [0..15]\n", policy);
        return upmErrorStatus;
    }
    request.policy = static_cast<uint32_t>(policy);
    return keepParsing;
}

// The low 32 bits of a base-10 number; 0 for a text without leading digits.
int32_t parseInt32(const char *text) {
    return static_cast<int32_t>(strtol(text, nullptr, 10));
}

EarlyExit parseOption(const Arguments &arguments, const Option &option, Request &request) {
    switch (option.action) {
    case Action::storeLocator:
        request.locator = parseInt32(optarg);
        break;
    case Action::storeIndex:
        request.index = parseInt32(optarg);
        break;
    case Action::selectReport:
        break;
    case Action::parseUpm:
        if (const EarlyExit exit = parseUpmOption(arguments, request)) {
            return exit;
        }
        break;
    case Action::parseWrite:
        return parseWriteOption(arguments);
    case Action::printUsage:
        printUsage();
        return keepParsing;
    }
    request.first = std::min(request.first, &option);
    return keepParsing;
}

// Reads all options, or those up to one that ends the run.
EarlyExit parseOptions(const Arguments &arguments, Request &request) {
    EarlyExit exit = keepParsing;
    while (!exit) {
        flushStandardOutput(); // before what getopt says on standard error
        const int letter = getopt(arguments.count, arguments.words, optionLetters.data());
        if (letter == -1) {
            break;
        }
        ++request.optionCount;
        // The last option stands for all that getopt does not know.
        const Option *option =
            std::find_if(options, std::end(options) - 1,
                         [letter](const Option &other) { return other.letter == letter; });
        exit = parseOption(arguments, *option, request);
    }
    return exit;
}

void printReport(const Request &request) {
    if (request.optionCount == 0) {
        puts("Error: No option passed");
        printUsage();
    }
    if (request.first == std::end(options)) {
        return;
    }
    if (request.first->report != nullptr) {
        request.first->report();
    } else if (request.first->action != Action::parseUpm) {
        printf("locator=%d, index=%d\n", request.locator, request.index);
    } else if (request.policy) {
        showPolicy(*request.policy);
    } else {
        request.upmView();
    }
}

} // namespace

int runCommandLine(int argc, char **argv) {
    const Arguments arguments{argc, argv};
    Request request;
    if (const EarlyExit exit = parseOptions(arguments, request)) {
        return *exit;
    }
    printReport(request);
    return 0;
}
