#include "wizard/overwrite_fields.h"

#include "wizard/prompts.h"

#include <cstdio>

bool readPowerReporting(uint8_t *copy) {
    const int result = readSection(powerReportingSection, copy, 0, powerReportingSection.size);
    if (result != 0) {
        printf("ERROR reading PowerReporting from shm! ret=%d\n", result);
    }
    return result == 0;
}

void overwriteFields(std::span<const Question> questions, size_t offset, int32_t element) {
    for (const Question &question : questions) {
        const Row &field = *question.field;
        const size_t fieldOffset =
            offset + field.offset + static_cast<size_t>(element) * field.size;
        const uint32_t max = *field.bound;
        double floating = 0;
        uint32_t integer = 0;
        if (promptYesNo(question.prompt) == 0) {
            continue;
        }
        if (field.type == Type::f64) {
            if (promptDouble(question.label, -static_cast<double>(max), max, floating) == 0) {
                writeUpmBlock(fieldOffset, &floating, field.size);
            }
        } else if (promptUnsigned(question.label, max, integer) == 0) {
            writeUpmBlock(fieldOffset, &integer, field.size);
        }
    }
}
