#include "upm/policy_report.h"

#include "sections/field.h"
#include "upm/policy_fields.h"
#include "upm/timestamp.h"

#include <cstdio>

using Record = sTolmAbsPowerReporting;

static constexpr PolicyStyle reportStyle{.indent = " ", .unsignedPowerLimit = false};
static constexpr Style stateStyle{.prefix = "   ", .hyphens = 5};

// The state data's labels are the bare member names.
#define STATE_ROW(member) ROW_LABELLED(#member, policyData.stateData.member)

// One row a line.
// clang-format off
static constexpr Row stateRows[] = {
    line("Policy State Data:"),
    STATE_ROW(policyUpdInx),
    STATE_ROW(policyId),
    STATE_ROW(policyExcursionState),
    line("-----------------------------------------------------------------------------------------------------------"),
    STATE_ROW(cpuWattsPowerFloor),
    STATE_ROW(safePolicyPsuPowerReadingTimeout),
    line("------------------------------------------------------------------------------------------------------------"),
};
// clang-format on
static constexpr auto stateFields = makeTable<stateRows>();

void printPolicyStateData(const uint8_t *section) {
    printUpmTimestamp(load<uint64_t>(section + offsetof(Record, upmTimestamp)));
    printRows(stateStyle, stateFields, section);
}

void printPolicy(const uint8_t *section, int32_t policy, const PolicyStyle &style) {
    const uint8_t *record = section + offsetof(Record, policyData.policies) +
                            static_cast<size_t>(policy) * sizeof(sPolicy);
    char index[16];
    snprintf(index, sizeof index, "(%d).", policy);
    const Style fieldStyle{
        .prefix = index, .hyphens = 5, .unsignedWords = style.unsignedPowerLimit};
    Output out;
    for (int i = 0; i < policyFieldCount; ++i) {
        out.put(style.indent);
        out.put(policyName(policy));
        putRow(out, fieldStyle, policyRow(i), record);
    }
}

void printPolicy(const uint8_t *section, int32_t policy) {
    printPolicy(section, policy, reportStyle);
}

void showPolicy(uint32_t policy) {
    const SectionBuffer section =
        readWholeSection(Section::powerReporting, powerReportingSize, MessageEnd::open);
    if (!section) {
        return;
    }
    if (policy >= policyCount) {
        printf("Error: policy index %d out of range [0..%d]", static_cast<int32_t>(policy),
               policyCount - 1);
        return;
    }
    printPolicyStateData(section.get());
    printPolicy(section.get(), static_cast<int32_t>(policy));
}

void showAllPolicies() {
    static constexpr char separator[] =
        ">>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>><<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<";
    const SectionBuffer section =
        readWholeSection(Section::powerReporting, powerReportingSize, MessageEnd::open);
    if (!section) {
        return;
    }
    printPolicyStateData(section.get());
    for (int32_t policy = 0; policy < policyCount; ++policy) {
        puts(separator);
        printPolicy(section.get(), policy);
        puts(separator);
    }
}
