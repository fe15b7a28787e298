#include "upm/policy_writes.h"

#include "upm/block.h"

#include <cstdio>

void writePolicyState(uint32_t policy, int32_t state) {
    if (policy >= policyCount) {
        puts("Invalid policy ID");
        return;
    }
    const auto value = static_cast<decltype(sPolicy::state)>(state);
    writeUpmBlock(policyOffset(policy) + offsetof(sPolicy, state), &value, sizeof value);
}

void clearPolicyData() {
    const SectionBuffer section = readSectionOfBlock(MessageEnd::open);
    if (!section) {
        return;
    }
    uint8_t *block = blockIn(section.get());
    for (size_t i = 0; i < policyCount; ++i) {
        auto *policy = reinterpret_cast<sPolicy *>(block + policyOffset(i));
        policy->state = 0;
        policy->policyPowerLimit = 0;
    }
    writeUpmBlock(policyDataOffset, block + policyDataOffset, policyDataSize);
    puts("Cleared policyPowerLimit and state for all 0 -15 policies.");
}
