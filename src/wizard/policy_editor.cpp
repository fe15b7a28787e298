#include "sections/rows/table.h"
#include "upm/policy_report.h"
#include "upm/writable_fields.h"
#include "wizard/editors.h"
#include "wizard/prompts.h"

#include <cstdio>

static constexpr int32_t fieldCount = std::size(policyFields);

static constexpr auto bounds = boundsOf<policyFields>;

// What stands behind a field's name.
struct Hints {
    const char *menu;
    const char *prompt;
};

static RowView rowOfField(size_t field) {
    return tableOf<policyFields>()[field];
}

static bool isDomain(size_t field) {
    return rowOfField(field).shape.kind == Kind::domain;
}

static bool isSwitch(size_t field) {
    return bounds[field] == 1;
}

static Hints hintsOf(size_t field) {
    if (isDomain(field)) {
        return {" (0=cpu,1=mem,2=system,3=gpu)", " (0=cpu..3=gpu)"};
    }
    return {isSwitch(field) ? " (0/1)" : "", ""};
}

static void printMenu(int32_t policy) {
    printf("Policy editor fields (policy %d):\n", policy);
    for (size_t field = 0; field < fieldCount; ++field) {
        const std::string_view name = rowOfField(field).label;
        printf("%3zu) %.*s%s\n", field + 1, static_cast<int>(name.size()), name.data(),
               hintsOf(field).menu);
    }
    puts("  0) Back ");
}

// Asks for a field's value. Returns whether one was accepted.
static bool askForValue(size_t field, uint32_t &value) {
    const std::string_view name = rowOfField(field).label;
    char label[64];
    snprintf(label, sizeof label, "%.*s%s", static_cast<int>(name.size()), name.data(),
             hintsOf(field).prompt);
    if (!isSwitch(field) && !isDomain(field)) {
        return promptUnsigned(label, bounds[field], value) == 0;
    }
    int64_t number = 0;
    const bool isAccepted = promptLong(label, bounds[field], number) == 0;
    value = static_cast<uint32_t>(number);
    return isAccepted;
}

static void editField(int32_t policy, size_t field) {
    uint32_t value = 0;
    if (askForValue(field, value)) {
        const RowShape shape = rowOfField(field).shape;
        // Of a value wider than its field the low bytes are written, which come first.
        writeUpmBlock(policyOffset(static_cast<size_t>(policy)) + shape.offset, &value, shape.size);
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
        if (promptInt("Select", 0, fieldCount, number) != 0 || number == 0) {
            return;
        }
        editField(policy, static_cast<size_t>(number) - 1);
    }
}
