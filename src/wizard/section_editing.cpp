#include "wizard/section_editing.h"

#include "wizard/prompts.h"

#include <cstdio>

bool readCopy(uint8_t *copy) {
    const int result = readSection(powerReportingSection, copy, 0, powerReportingSection.size);
    if (result != 0) {
        printf("ERROR reading PowerReporting from shm! ret=%d\n", result);
    }
    return result == 0;
}

void askQuestions(std::span<const Question> questions, int32_t element) {
    for (const Question &question : questions) {
        const RowShape &field = question.field;
        const size_t offset = field.offset + static_cast<size_t>(element) * field.size;
        double real = 0;
        uint32_t number = 0;
        if (promptYesNo(question.question) == 0) {
            continue;
        }
        if (field.kind == Kind::f64) {
            if (promptDouble(question.label, -maxDouble, maxDouble, real) == 0) {
                writeUpmBlock(offset, &real, field.size);
            }
        } else if (promptUnsigned(question.label, question.max, number) == 0) {
            writeUpmBlock(offset, &number, field.size);
        }
    }
}
