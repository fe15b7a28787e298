#include "wizard/policy_editor.h"

#include "upm/policy_report.h"
#include "upm/upm_block.h"
#include "wizard/prompts.h"

#include <cstdio>

// The number of writable fields, which is all of them. The menu numbers them from 1.
static constexpr int32_t fieldCount =
    std::count_if(std::begin(policyRows), std::end(policyRows),
                  [](const Row &row) { return row.bound.has_value(); });

static void printMenu(int32_t policy) {
    int32_t number = 0;
    printf("Policy editor fields (policy %d):\n", policy);
    for (const Row &row : policyRows) {
        if (row.bound) {
            const char *hint = row.type == Type::domain ? " (0=cpu,1=mem,2=system,3=gpu)" : "";
            printf("%3d) %s%s\n", ++number, row.label.data(), row.isFlag ? " (0/1)" : hint);
        }
    }
    puts("  0) Back ");
}

// Returns the field with this number in the menu, 1..fieldCount.
static const Row &findField(int32_t number) {
    const Row *row = policyRows;
    while (!row->bound || --number > 0) {
        ++row;
    }
    return *row;
}

// Prompts for the value of a field. Returns false if input fails.
static bool promptValue(const Row &field, uint32_t &value) {
    const uint32_t max = *field.bound;
    if (!field.isFlag && field.type != Type::domain) {
        return promptUnsigned(field.label.data(), max, value) == 0;
    }
    char label[64];
    int64_t number = 0;
    snprintf(label, sizeof label, "%s%s", field.label.data(),
             field.type == Type::domain ? " (0=cpu..3=gpu)" : "");
    const int status = promptLong(label, max, number);
    value = static_cast<uint32_t>(number);
    return status == 0;
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
        const Row &field = findField(number);
        uint32_t value = 0;
        if (promptValue(field, value)) {
            // Little-endian: if the value is wider than the field, this writes its low bytes.
            writeUpmBlock(policyOffset(static_cast<size_t>(policy)) + field.offset, &value,
                          field.size);
        }
    }
}
