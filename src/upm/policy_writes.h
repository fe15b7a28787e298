// The two policy writes of the command line. Errors of the writes themselves are not detected.
#pragma once

#include <cstdint>

// Writes the low 16 bits of `state` to the state of a policy, 0..15: one write of 2 bytes. If the
// policy is above 15, prints a message and writes nothing.
void writePolicyState(uint32_t policy, int32_t state);

// Sets the state and the power limit of all policies to 0: reads the section and writes its policy
// data back with a single write, in which all other bytes are unchanged. If the allocation or the
// read fails, prints a message, which does not end in a newline, and writes nothing.
void clearPolicyData();
