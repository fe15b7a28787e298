#include "upm/policy_report.h"

#include "rows/print_rows.h"
#include "upm/timestamp.h"
#include "upm/upm_block.h"

#include <cstdio>

void printPolicyStateData(const uint8_t *section) {
    printUpmTimestamp(loadTimestamp(section));
    printRows({.prefix = "   ", .hyphens = 5}, policyStateRows,
              blockIn(section) + offsetof(sUpmBlock, policyState));
}

void printPolicyLines(const uint8_t *section, int32_t policy, std::string_view indent, Views view) {
    const uint8_t *record = blockIn(section) + policyOffset(static_cast<size_t>(policy));
    char index[16];
    snprintf(index, sizeof index, "(%d).", policy);
    const Style fieldStyle{.prefix = index, .hyphens = 5};
    TextBuffer out;
    for (const Row &row : policyRows) {
        if ((row.views & view) != 0) {
            out.put(indent);
            out.put(policyName(policy)); // the library is called again for every line
            putRow(out, fieldStyle, row, record);
        }
    }
}

void printPolicy(const uint8_t *section, int32_t policy) {
    printPolicyLines(section, policy, " ", inPolicyReport);
}

void showPolicy(uint32_t policy) {
    const SectionBuffer section = readWholeSection(powerReportingSection, "");
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
    const SectionBuffer section = readWholeSection(powerReportingSection, "");
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
