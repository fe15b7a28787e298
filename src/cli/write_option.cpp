#include "cli/write_option.h"

#include "upm/policy_writes.h"
#include "wizard/wizard.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int errorStatus = -1; // 255 in the shell; also the status after the wizard

// These two functions print an error and return errorStatus.
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

// Returns whether one of the arguments from `next` on is exactly "-u", with only options before it.
bool hasUpmOption(const Arguments &arguments, int next) {
    while (arguments.has(next) && arguments.isOption(next) && !arguments.is(next, "-u")) {
        ++next;
    }
    return arguments.is(next, "-u");
}

// Parses "-p <id> -s <0/1>", which begins at position `next`, and writes the policy's state.
EarlyExit parsePolicyStateWrite(const Arguments &arguments, int next) {
    const char *const *words = arguments.words;
    long policy = 0;
    long state = 0;
    if (!arguments.has(next + 2)) {
        return failWithPolicyUsage(arguments);
    }
    if (!parseLong(words[next + 1], policy)) {
        printf("Error: invalid policy_id '%s'\n", words[next + 1]);
        return errorStatus;
    }
    if (isOutOfRange(policy, lastPolicy)) {
        printf("Error: policy_id %ld out of range [0..15]\n", policy);
        return errorStatus;
    }
    if (!arguments.is(next + 2, "-s") || !arguments.has(next + 3)) {
        return failWithPolicyUsage(arguments);
    }
    if (!parseLong(words[next + 3], state)) {
        printf("Error: invalid policy_state '%s'\n", words[next + 3]);
        return errorStatus;
    }
    if (isOutOfRange(state, 1)) {
        printf("Error: policy_state must be 0 or 1, got %ld\n", state);
        return errorStatus;
    }
    optind = next + 4;
    writePolicyState(static_cast<uint32_t>(policy), static_cast<int32_t>(state));
    return keepParsing;
}

} // namespace

EarlyExit parseWriteOption(const Arguments &arguments) {
    const int next = optind;
    if (!hasUpmOption(arguments, next)) {
        return failWithWriteHints("Error: -w now requires -u. Try:");
    }
    if (!arguments.is(next, "-u")) {
        return failWithWriteHints("Error: -w -u is required. Try:");
    }
    if (!arguments.has(next + 1)) {
        printf("Usage: %s -w -u where:\n"
               "  -c                     : clear policy data\n"
               "  -m                     : interactive overwrite wizard\n"
               "  -p <policy_id> -s <0/1> : write UPM policy state only\n",
               arguments.words[0]);
        return errorStatus;
    }
    if (arguments.is(next + 1, "-c")) {
        optind = next + 2;
        clearPolicyData();
        return keepParsing;
    }
    if (arguments.is(next + 1, "-m")) {
        runOverwriteWizard();
        return errorStatus;
    }
    if (arguments.is(next + 1, "-p")) {
        return parsePolicyStateWrite(arguments, next + 1);
    }
    printf("Error: Unknown sub-option '%s' for -w -u\n", arguments.words[next + 1]);
    return errorStatus;
}
