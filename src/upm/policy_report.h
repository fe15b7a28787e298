// The policy report: the policy state data and the fields of a policy, 0..15.
#pragma once

#include "rows/row.h"

// Prints the UPM timestamp and the policy state data of a copy of the power reporting section.
void printPolicyStateData(const uint8_t *section);

// Prints the fields of a policy, 0..15, which the caller has checked, of a copy of the section.
void printPolicy(const uint8_t *section, int32_t policy);

// The same for any report: the lines begin with the indent, and show what appears in the view.
void printPolicyLines(const uint8_t *section, int32_t policy, std::string_view indent, Views view);

// Reads the section and prints the state data and one policy. A failed allocation or read, and a
// policy above 15, print their message, without a line end, and nothing else.
void showPolicy(uint32_t policy);

// The same for all policies, between separator lines.
void showAllPolicies();
