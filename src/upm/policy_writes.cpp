#include "upm/policy_writes.h"

#include "upm/upm_block.h"

#include <cstdio>
#include <cstring>

void writePolicyState(uint32_t policy, int32_t state) {
    if (policy >= policyCount) {
        puts("Invalid policy ID");
        return;
    }
    const auto value = static_cast<decltype(sPolicy::state)>(state);
    writeUpmBlock(policyOffset(policy) + offsetof(sPolicy, state), &value, sizeof value);
}

void clearPolicyData() {
    constexpr size_t clearedSize = sizeof(sPolicy::state) + sizeof(sPolicy::policyPowerLimit);
    static_assert(offsetof(sPolicy, policyPowerLimitMultiplier) == clearedSize);
    const SectionBuffer section = readWholeSection(powerReportingSection, "");
    if (!section) {
        return;
    }
    uint8_t *block = section.get() + upmBlockOffset;
    for (size_t policy = 0; policy < policyCount; ++policy) {
        memset(block + policyOffset(policy), 0, clearedSize);
    }
    writeUpmBlock(policyDataOffset, block + policyDataOffset, policyDataSize);
    puts("Cleared policyPowerLimit and state for all 0 -15 policies.");
}
