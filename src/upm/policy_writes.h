#pragma once
#include <cstdint>
void writePolicyState(uint32_t policy, int32_t state);
void clearPolicyData();
