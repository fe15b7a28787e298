#include "sections/field.h"
#include "upm/policy_fields.h"
#include "upm/policy_report.h"
#include "wizard/editors.h"
#include "wizard/prompts.h"

#include <cstdio>

using Record = sTolmAbsPowerReporting;

static void printMenu(int32_t policy) {
    printf("Policy editor fields (policy %d):\n", policy);
    for (int field = 0; field < policyFieldCount; ++field) {
        printf("%3d) %s%s\n", field + 1, policyRow(field).label, policyPrompt(field).menuHint);
    }
    puts("  0) Back ");
}

// Asks for a field's value. Returns whether one was accepted.
static bool askForValue(int field, uint32_t &value) {
    const PolicyPrompt &prompt = policyPrompt(field);
    char label[64];
    snprintf(label, sizeof label, "%s%s", policyRow(field).label, prompt.promptHint);
    if (!prompt.isLong) {
        return promptUnsigned(label, prompt.max, value) == 0;
    }
    int64_t number = 0;
    const bool isAccepted = promptLong(label, prompt.max, number) == 0;
    value = static_cast<uint32_t>(number);
    return isAccepted;
}

static void editField(int32_t policy, int field) {
    uint32_t value = 0;
    if (askForValue(field, value)) {
        const RowShape place = policyRow(field).shape;
        const size_t offset = offsetof(Record, policyData.policies) +
                              static_cast<size_t>(policy) * sizeof(sPolicy) + place.offset;
        // Of a value wider than its field the low bytes are written, which come first.
        writePowerReporting(static_cast<int32_t>(offset), &value,
                            static_cast<int32_t>(elementSize(place.kind)));
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
        editField(policy, number - 1);
    }
}
