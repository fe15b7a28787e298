// The policy report: the policy state data and the fields of a policy, 0..15.
#pragma once

#include "sections/rows/table.h"

// How the lines of a policy begin, and how its power limit is shown: Kind::i32 or Kind::u32.
struct PolicyStyle {
    const char *indent;
    Kind powerLimit;
};

// The fields of the policy state data in the block, read off the report's rows.
Rows policyStateFields();

// Prints the UPM timestamp and the policy state data of a copy of the power reporting section.
void printPolicyStateData(const uint8_t *section);

// Prints the fields of a policy, 0..15, which the caller has checked, of a copy of the section.
void printPolicy(const uint8_t *section, int32_t policy);
void printPolicy(const uint8_t *section, int32_t policy, const PolicyStyle &style);

// Reads the section and prints the state data and one policy. A failed allocation or read, and a
// policy above 15, print their message, without a line end, and nothing else.
void showPolicy(uint32_t policy);

// The same for all policies, between separator lines.
void showAllPolicies();
