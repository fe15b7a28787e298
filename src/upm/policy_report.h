// The policy report: the policy state data and the fields of the policies. `section` is a copy of
// the power reporting section.
#pragma once

#include "rows/row.h"

// Prints the UPM timestamp and the policy state data.
void printPolicyStateData(const uint8_t *section);

// Prints the fields of one policy. The caller must have checked that `policy` is within 0..15.
void printPolicy(const uint8_t *section, int32_t policy);

// Prints the fields of a policy, 0..15, that appear in the view. Every line begins with `indent`.
void printPolicyLines(const uint8_t *section, int32_t policy, std::string_view indent, Views view);

// Reads the section and prints the policy state data and one policy. If the allocation or the read
// fails, or the policy is above 15, prints only a message, which does not end in a newline.
void showPolicy(uint32_t policy);

// Like showPolicy, but prints all policies, each between two separator lines.
void showAllPolicies();
