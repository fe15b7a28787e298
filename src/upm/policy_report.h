#pragma once
#include <cstdint>
void showPolicy(uint32_t policy);
void showAllPolicies();
