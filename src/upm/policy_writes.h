// The two policy writes of the command line. The library's results are not examined.
#pragma once

#include <cstdint>

// Writes the low 16 bits of `state` to the state of a policy, 0..15: one write of 2 bytes. For a
// policy above 15 prints a message and writes nothing.
void writePolicyState(uint32_t policy, int32_t state);

// Sets state and power limit of all policies to 0: one read of the section and one write of its
// policy data run, in which all other bytes are those just read. A failed allocation or read prints
// its message, without a line end, and writes nothing.
void clearPolicyData();
