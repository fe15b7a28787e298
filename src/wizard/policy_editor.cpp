#include "upm/policy_fields.h"
#include "upm/policy_report.h"
#include "wizard/editors.h"
#include "wizard/prompts.h"

#include <cstdio>

using Record = sTolmAbsPowerReporting;

static void printMenu(int32_t policy) {
    printf("Policy editor fields (policy %d):\n", policy);
    for (int number = 1; number <= policyFieldCount; ++number) {
        const PolicyField &field = policyFields[number - 1];
        printf("%3d) %s%s\n", number, field.row.label, field.menuHint);
    }
    puts("  0) Back ");
}

// Asks for the field's value. Returns whether one was accepted.
static bool askForValue(const PolicyField &field, uint32_t &value) {
    char label[sizeof field.row.label + sizeof field.promptHint];
    snprintf(label, sizeof label, "%s%s", field.row.label, field.promptHint);
    if (field.prompt == PolicyPrompt::unsignedNumber) {
        return promptUnsigned(label, field.max, value) == 0;
    }
    int64_t number = 0;
    const bool isAccepted = promptLong(label, field.max, number) == 0;
    value = static_cast<uint32_t>(number);
    return isAccepted;
}

static void editField(int32_t policy, const PolicyField &field) {
    uint32_t value = 0;
    if (askForValue(field, value)) {
        const size_t offset = offsetof(Record, policyData.policies) +
                              static_cast<size_t>(policy) * sizeof(sPolicy) + field.row.offset;
        // Of a value wider than its field the low bytes are written, which come first.
        writePowerReporting(static_cast<int32_t>(offset), &value,
                            static_cast<int32_t>(elementSize(field.row.kind)));
    }
}

void editPolicy() {
    int32_t policy = 0;
    int32_t number = 0;
    if (promptInt("Select policy index", 0, policyCount - 1, policy) != 0) {
        return;
    }
    for (;;) {
        showPolicy(static_cast<uint32_t>(policy));
        printMenu(policy);
        if (promptInt("Select", 0, policyFieldCount, number) != 0 || number == 0) {
            return;
        }
        editField(policy, policyFields[number - 1]);
    }
}
