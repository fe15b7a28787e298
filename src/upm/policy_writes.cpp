#include "upm/policy_writes.h"

#include "sections/power_reporting.h"

#include <cstdio>

using Record = sTolmAbsPowerReporting;

void writePolicyState(uint32_t policy, int32_t state) {
    if (policy >= policyCount) {
        puts("Invalid policy ID");
        return;
    }
    const auto value = static_cast<decltype(sPolicy::state)>(state);
    const size_t offset =
        offsetof(Record, policyData.policies) + policy * sizeof(sPolicy) + offsetof(sPolicy, state);
    writePowerReporting(static_cast<int32_t>(offset), &value, sizeof value);
}

void clearPolicyData() {
    const SectionBuffer section =
        readWholeSection(Section::powerReporting, powerReportingSize, MessageEnd::open);
    if (!section) {
        return;
    }
    auto *data = reinterpret_cast<sPolicyData *>(section.get() + offsetof(Record, policyData));
    for (sPolicy &policy : data->policies) {
        policy.state = 0;
        policy.policyPowerLimit = 0;
    }
    writePowerReporting(offsetof(Record, policyData), data, sizeof *data);
    puts("Cleared policyPowerLimit and state for all 0 -15 policies.");
}
