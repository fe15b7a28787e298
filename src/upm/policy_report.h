// The policy report: the policy state data and the thirty fields of a policy, 0..15.
#pragma once

#include <cstdint>

// How the lines of a policy begin, and whether its power limit is shown signed or unsigned.
struct PolicyStyle {
    const char *indent;
    bool unsignedPowerLimit;
};

// Prints the UPM timestamp and the policy state data (9 lines) of a copy of the power reporting
// section.
void printPolicyStateData(const uint8_t *section);

// Prints the 30 fields of a policy, 0..15, which the caller has checked, of a copy of the section.
void printPolicy(const uint8_t *section, int32_t policy);
void printPolicy(const uint8_t *section, int32_t policy, const PolicyStyle &style);

// Reads the section and prints the state data and one policy. A failed allocation or read, and a
// policy above 15, print their message, without a line end, and nothing else.
void showPolicy(uint32_t policy);

// The same for all sixteen policies, between separator lines (521 lines).
void showAllPolicies();
