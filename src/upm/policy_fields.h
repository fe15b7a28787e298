// The one table of the fields of a policy record, in record order. The reports print it, the policy
// editor numbers it from 1 and asks for its values.
#pragma once

#include "sections/power_reporting.h"

enum class PolicyPrompt : uint8_t { unsignedNumber, longNumber };

struct PolicyField {
    Row row; // in an sPolicy
    PolicyPrompt prompt;
    uint32_t max;      // what the prompt accepts; more than a 2-byte field holds, where it says so
    char menuHint[32]; // behind the name in the editor's menu
    char promptHint[20]; // behind the name in the prompt
};

inline constexpr int policyFieldCount = 30;
extern const PolicyField policyFields[policyFieldCount];
