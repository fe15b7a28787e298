#include "cli/write_option.h"

#include "upm/policy_writes.h"
#include "wizard/wizard.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int errorStatus = -1; // 255 to the shell; the wizard always ends with it

EarlyExit failWithWriteHints(const char *error) {
    printf("%s\n"
           "  orbelstatprobe -w -u -c\n"
           "  orbelstatprobe -w -u -p <id> -s <0/1>\n"
           "  orbelstatprobe -w -u -m\n",
           error);
    return errorStatus;
}

EarlyExit failWithPolicyUsage(const Arguments &arguments) {
    printf("Usage: %s -w -u -p <policy_id> -s <0/1>\n", arguments.words[0]);
    return errorStatus;
}

// Whether an exact "-u" follows from position k on, with nothing but options before it.
bool findsUpmOption(const Arguments &arguments, int k) {
    while (arguments.has(k) && arguments.isOption(k) && !arguments.is(k, "-u")) {
        ++k;
    }
    return arguments.is(k, "-u");
}

// Handles "-p <id> -s <0/1>", which starts at position k.
EarlyExit parsePolicyStateWrite(const Arguments &arguments, int k) {
    const char *const *words = arguments.words;
    long policy = 0;
    long state = 0;
    if (!arguments.has(k + 2)) {
        return failWithPolicyUsage(arguments);
    }
    if (!parseLong(words[k + 1], policy)) {
        printf("Error: invalid policy_id '%s'\n", words[k + 1]);
        return errorStatus;
    }
    if (isOutOfRange(policy, lastPolicy)) {
        printf("Error: policy_id %ld out of range [0..15]\n", policy);
        return errorStatus;
    }
    if (!arguments.is(k + 2, "-s") || !arguments.has(k + 3)) {
        return failWithPolicyUsage(arguments);
    }
    if (!parseLong(words[k + 3], state)) {
        printf("Error: invalid policy_state '%s'\n", words[k + 3]);
        return errorStatus;
    }
    if (isOutOfRange(state, 1)) {
        printf("Error: policy_state must be 0 or 1, got %ld\n", state);
        return errorStatus;
    }
    optind = k + 4;
    writePolicyState(static_cast<uint32_t>(policy), static_cast<int32_t>(state));
    return keepParsing;
}

} // namespace

EarlyExit parseWriteOption(const Arguments &arguments) {
    const int k = optind;
    if (!findsUpmOption(arguments, k)) {
        return failWithWriteHints("Error: -w now requires -u. Try:");
    }
    if (!arguments.is(k, "-u")) {
        return failWithWriteHints("Error: -w -u is required. Try:");
    }
    if (!arguments.has(k + 1)) {
        printf("Usage: %s -w -u where:\n"
               "  -c                     : clear policy data\n"
               "  -m                     : interactive overwrite wizard\n"
               "  -p <policy_id> -s <0/1> : write UPM policy state only\n",
               arguments.words[0]);
        return errorStatus;
    }
    if (arguments.is(k + 1, "-c")) {
        optind = k + 2;
        clearPolicyData();
        return keepParsing;
    }
    if (arguments.is(k + 1, "-m")) {
        runOverwriteWizard();
        return errorStatus;
    }
    if (arguments.is(k + 1, "-p")) {
        return parsePolicyStateWrite(arguments, k + 1);
    }
    printf("Error: Unknown sub-option '%s' for -w -u\n", arguments.words[k + 1]);
    return errorStatus;
}
