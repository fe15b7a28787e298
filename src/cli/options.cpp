#include "cli/options.h"

#include "cli/help.h"
#include "sections/upm_block.h"
#include "upm/policy_writes.h"
#include "wizard/wizard.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace {

constexpr int upmErrorStatus = 1;
constexpr int writeErrorStatus = -1; // 255 to the shell
constexpr unsigned long lastPolicy = policyCount - 1;

enum class Step { goOn, end };

// The command line on its way through the pass, and what becomes of the run if a step ends it.
struct Pass {
    int argc;
    char **argv;
    int status = 0;

    [[nodiscard]] bool has(int position) const {
        return position < argc;
    }
    [[nodiscard]] bool is(int position, const char *word) const {
        return has(position) && strcmp(argv[position], word) == 0;
    }
    [[nodiscard]] bool isOption(int position) const {
        return argv[position][0] == '-';
    }
    Step end(int exitStatus) {
        status = exitStatus;
        return Step::end;
    }
};

// Converts a base-10 number; false if it stops before the end of the text. An overflow gives the
// nearest long, which no caller's range holds.
bool parseLong(const char *text, long &value) {
    char *rest = nullptr;
    value = strtol(text, &rest, 10);
    return *rest == '\0';
}

bool exceeds(long value, unsigned long limit) {
    return static_cast<unsigned long>(value) > limit; // so every negative value does
}

void want(Request &request, Report report) {
    request.report = std::min(request.report, report);
}

Step readUpmOptions(Pass &pass, Request &request) {
    const int k = optind;
    const char *const *argv = pass.argv;
    // No form of -u leaves anything for the pass to read.
    optind = pass.argc;
    if (!pass.has(k)) {
        want(request, Report::upmData);
        return Step::goOn;
    }
    if (pass.is(k, "-h")) {
        if (pass.has(k + 1) && !pass.isOption(k + 1)) {
            printf("Error: Unexpected argument '%s' after -u -h\n", argv[k + 1]);
            return pass.end(upmErrorStatus);
        }
        printUpmHelp();
        return pass.end(0);
    }
    if (pass.is(k, "-t")) {
        want(request, Report::thermalData);
        return Step::goOn;
    }
    if (!pass.is(k, "-p")) {
        printf("Error: Invalid argument '%s' after -u\n", argv[k]);
        return pass.end(upmErrorStatus);
    }
    if (!pass.has(k + 1)) {
        puts("Error: Missing argument after -u -p");
        return pass.end(upmErrorStatus);
    }
    if (pass.is(k + 1, "-c")) {
        want(request, Report::cpuPowerLimits);
        return Step::goOn;
    }
    if (pass.is(k + 1, "-a")) {
        want(request, Report::allPolicies);
        return Step::goOn;
    }
    long policy = 0;
    if (!parseLong(argv[k + 1], policy)) {
        printf("Error: Invalid policy index '%s' after -u -p\n", argv[k + 1]);
        return pass.end(upmErrorStatus);
    }
    if (exceeds(policy, lastPolicy)) {
        printf("Error: policy index %ld out of range [0..15]\n", policy);
        return pass.end(upmErrorStatus);
    }
    request.policy = static_cast<uint32_t>(policy);
    want(request, Report::onePolicy);
    return Step::goOn;
}

Step failWithWriteHints(Pass &pass, const char *error) {
    printf("%s\n"
           "  orbelstatprobe -w -u -c\n"
           "  orbelstatprobe -w -u -p <id> -s <0/1>\n"
           "  orbelstatprobe -w -u -m\n",
           error);
    return pass.end(writeErrorStatus);
}

Step failWithPolicyUsage(Pass &pass) {
    printf("Usage: %s -w -u -p <policy_id> -s <0/1>\n", pass.argv[0]);
    return pass.end(writeErrorStatus);
}

// Whether an exact "-u" follows from position k on, with nothing but options before it.
bool findsUpmOption(const Pass &pass, int k) {
    while (pass.has(k) && pass.isOption(k) && !pass.is(k, "-u")) {
        ++k;
    }
    return pass.is(k, "-u");
}

// Handles "-p <id> -s <0/1>", which starts at position k.
Step readPolicyStateWrite(Pass &pass, int k) {
    const char *const *argv = pass.argv;
    long policy = 0;
    long state = 0;
    if (!pass.has(k + 2)) {
        return failWithPolicyUsage(pass);
    }
    if (!parseLong(argv[k + 1], policy)) {
        printf("Error: invalid policy_id '%s'\n", argv[k + 1]);
        return pass.end(writeErrorStatus);
    }
    if (exceeds(policy, lastPolicy)) {
        printf("Error: policy_id %ld out of range [0..15]\n", policy);
        return pass.end(writeErrorStatus);
    }
    if (!pass.is(k + 2, "-s") || !pass.has(k + 3)) {
        return failWithPolicyUsage(pass);
    }
    if (!parseLong(argv[k + 3], state)) {
        printf("Error: invalid policy_state '%s'\n", argv[k + 3]);
        return pass.end(writeErrorStatus);
    }
    if (exceeds(state, 1)) {
        printf("Error: policy_state must be 0 or 1, got %ld\n", state);
        return pass.end(writeErrorStatus);
    }
    optind = k + 4;
    writePolicyState(static_cast<uint32_t>(policy), static_cast<int32_t>(state));
    return Step::goOn;
}

Step readWriteOptions(Pass &pass) {
    const int k = optind;
    if (!findsUpmOption(pass, k)) {
        return failWithWriteHints(pass, "Error: -w now requires -u. Try:");
    }
    if (!pass.is(k, "-u")) {
        return failWithWriteHints(pass, "Error: -w -u is required. Try:");
    }
    if (!pass.has(k + 1)) {
        printf("Usage: %s -w -u where:\n"
               "  -c                     : clear policy data\n"
               "  -m                     : interactive overwrite wizard\n"
               "  -p <policy_id> -s <0/1> : write UPM policy state only\n",
               pass.argv[0]);
        return pass.end(writeErrorStatus);
    }
    if (pass.is(k + 1, "-c")) {
        optind = k + 2;
        clearPolicyData();
        return Step::goOn;
    }
    if (pass.is(k + 1, "-m")) {
        runOverwriteWizard();
        return pass.end(writeErrorStatus);
    }
    if (pass.is(k + 1, "-p")) {
        return readPolicyStateWrite(pass, k + 1);
    }
    printf("Error: Unknown sub-option '%s' for -w -u\n", pass.argv[k + 1]);
    return pass.end(writeErrorStatus);
}

// The low 32 bits of a base-10 number; 0 for a text without leading digits.
int32_t lowBits(const char *text) {
    return static_cast<int32_t>(strtol(text, nullptr, 10));
}

} // namespace

bool readOptions(int argc, char **argv, Request &request, int &status) {
    Pass pass{argc, argv};
    Step step = Step::goOn;
    int option = 0;
    while (step == Step::goOn && (option = getopt(argc, argv, "deorcul:i:w?h")) != -1) {
        ++request.optionCount;
        switch (option) {
        case 'd':
            want(request, Report::globalSection);
            break;
        case 'o':
            want(request, Report::offsets);
            break;
        case 'e':
            want(request, Report::psuInfo);
            break;
        case 'r':
            want(request, Report::powerReporting);
            break;
        case 'c':
            want(request, Report::powerConfig);
            break;
        case 'l':
            request.locator = lowBits(optarg);
            want(request, Report::locator);
            break;
        case 'i':
            request.index = lowBits(optarg);
            want(request, Report::locator);
            break;
        case 'u':
            step = readUpmOptions(pass, request);
            break;
        case 'w':
            step = readWriteOptions(pass);
            break;
        default:
            printUsage();
        }
    }
    status = pass.status;
    return step == Step::goOn;
}
