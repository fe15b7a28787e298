#include "upm/policy_report.h"

#include "sections/rows/fields.h"
#include "sections/rows/print_rows.h"
#include "upm/timestamp.h"
#include "upm/writable_fields.h"

#include <cstdio>

static constexpr PolicyStyle reportStyle{.indent = " ", .powerLimit = Kind::i32};

// The labels are the bare member names.
#define STATE_ROW(member) ROW_LABEL(#member, policyState.member)

// One row a line.
// clang-format off
static constexpr auto stateRows = [] {
    using Record = sUpmBlock;
    return rowsOf(
        line("Policy State Data:"),
        STATE_ROW(policyUpdInx),
        STATE_ROW(policyId),
        STATE_ROW(policyExcursionState),
        line("-----------------------------------------------------------------------------------------------------------"),
        STATE_ROW(cpuWattsPowerFloor),
        STATE_ROW(safePolicyPsuPowerReadingTimeout),
        line("------------------------------------------------------------------------------------------------------------"));
}();
// clang-format on

Rows policyStateFields() {
    return fieldsOf<stateRows>();
}

void printPolicyStateData(const uint8_t *section) {
    printUpmTimestamp(section);
    printRows({.prefix = "   ", .hyphens = 5}, tableOf<stateRows>(), blockIn(section));
}

void printPolicy(const uint8_t *section, int32_t policy, const PolicyStyle &style) {
    const uint8_t *record = blockIn(section) + policyOffset(static_cast<size_t>(policy));
    char index[16];
    snprintf(index, sizeof index, "(%d).", policy);
    const Style fieldStyle{.prefix = index, .hyphens = 5};
    TextBuffer out;
    forEachRow(tableOf<policyFields>(), allViews, [&](RowView row, const Rows & /*none*/) {
        if (row.shape.offset == offsetof(sPolicy, policyPowerLimit)) {
            row.shape.kind = style.powerLimit;
        }
        out.put(style.indent);
        out.put(policyName(policy));
        putRow(out, fieldStyle, row, record);
    });
}

void printPolicy(const uint8_t *section, int32_t policy) {
    printPolicy(section, policy, reportStyle);
}

void showPolicy(uint32_t policy) {
    const SectionBuffer section = readSectionOfBlock(MessageEnd::open);
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
    const SectionBuffer section = readSectionOfBlock(MessageEnd::open);
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
