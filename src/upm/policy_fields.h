// The one table of the fields of a policy record, in record order. The reports print it, the policy
// editor numbers it from 1 and asks for its values.
#pragma once

#include "sections/power_reporting.h"

// How the policy editor asks for a field's value.
struct PolicyPrompt {
    bool isLong;         // promptLong, not promptUnsigned
    uint32_t max;        // what is accepted; more than a 2-byte field holds, where it says so
    char menuHint[32];   // behind the name in the editor's menu
    char promptHint[20]; // behind the name in the prompt
};

inline constexpr int policyFieldCount = 30;

// The row, in an sPolicy, and the prompt of the field with this index, 0..29.
Row policyRow(int index);
const PolicyPrompt &policyPrompt(int index);
