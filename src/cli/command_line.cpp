#include "cli/command_line.h"

#include "cli/arguments.h"
#include "cli/help.h"
#include "cli/write_option.h"
#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"
#include "upm/policy_report.h"
#include "upm/views.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

constexpr int upmErrorStatus = 1;
constexpr char optionLetters[] = "deorcul:i:w?h";

// The reports that have a letter of their own, in order of precedence: of those that a command line
// asks for only the first runs.
constexpr struct {
    int letter;
    void (*print)();
} letterReports[] = {
    {'d', dumpGlobalSection},  {'o', printGlobalSectionOffsets}, {'e', dumpPSUInfo},
    {'r', dumpPowerReporting}, {'c', dumpPowerConfig},
};
constexpr size_t noReport = std::size(letterReports);

// What a command line asks for, again in order of precedence.
struct Request {
    int optionCount = 0; // options met, unrecognised ones included
    bool wantsLocator = false;
    int32_t locator = -1;
    int32_t index = -1;
    size_t letterReport = noReport;
    // The form of -u, which is always the last option that is read.
    void (*upmView)() = nullptr;
    std::optional<uint32_t> policy; // 0..15
};

Ending readUpmOption(const Arguments &arguments, Request &request) {
    const int k = optind;
    const char *const *words = arguments.words;
    // No form of -u leaves anything for the pass to read.
    optind = arguments.count;
    if (!arguments.has(k)) {
        request.upmView = dumpUpmData;
        return goOn;
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
        return goOn;
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
        return goOn;
    }
    if (arguments.is(k + 1, "-a")) {
        request.upmView = showAllPolicies;
        return goOn;
    }
    long policy = 0;
    if (!parseLong(words[k + 1], policy)) {
        printf("Error: Invalid policy index '%s' after -u -p\n", words[k + 1]);
        return upmErrorStatus;
    }
    if (exceeds(policy, lastPolicy)) {
        printf("Error: policy index %ld out of range [0..15]\n", policy);
        return upmErrorStatus;
    }
    request.policy = static_cast<uint32_t>(policy);
    return goOn;
}

// The low 32 bits of a base-10 number; 0 for a text without leading digits.
int32_t lowBits(const char *text) {
    return static_cast<int32_t>(strtol(text, nullptr, 10));
}

// Handles a letter that has a report of its own, and every other by the usage text.
void wantReportOrPrintUsage(int option, Request &request) {
    size_t report = 0;
    while (report < noReport && letterReports[report].letter != option) {
        ++report;
    }
    if (report == noReport) {
        printUsage();
    }
    request.letterReport = std::min(request.letterReport, report);
}

// Reads all options, or those up to one that ends the run.
Ending readOptions(const Arguments &arguments, Request &request) {
    Ending ending = goOn;
    int option = 0;
    while (!ending && (option = getopt(arguments.count, arguments.words, optionLetters)) != -1) {
        ++request.optionCount;
        switch (option) {
        case 'l':
            request.wantsLocator = true;
            request.locator = lowBits(optarg);
            break;
        case 'i':
            request.wantsLocator = true;
            request.index = lowBits(optarg);
            break;
        case 'u':
            ending = readUpmOption(arguments, request);
            break;
        case 'w':
            ending = readWriteOption(arguments);
            break;
        default:
            wantReportOrPrintUsage(option, request);
        }
    }
    return ending;
}

void printReport(const Request &request) {
    if (request.wantsLocator) {
        printf("locator=%d, index=%d\n", request.locator, request.index);
    } else if (request.letterReport != noReport) {
        letterReports[request.letterReport].print();
    } else if (request.policy) {
        showPolicy(*request.policy);
    } else if (request.upmView != nullptr) {
        request.upmView();
    } else if (request.optionCount == 0) {
        puts("Error: No option passed");
        printUsage();
    }
}

} // namespace

int runCommandLine(int argc, char **argv) {
    const Arguments arguments{argc, argv};
    Request request;
    if (const Ending ending = readOptions(arguments, request)) {
        return *ending;
    }
    printReport(request);
    return 0;
}
