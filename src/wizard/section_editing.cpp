#include "wizard/section_editing.h"

#include "sections/field.h"
#include "wizard/prompts.h"

#include <cstdio>

static constexpr double doubleLimit = 1e9;

bool readCopy(uint8_t *copy) {
    const int result = readSection(Section::powerReporting, copy, 0, powerReportingSize);
    if (result != 0) {
        printf("ERROR reading PowerReporting from shm! ret=%d\n", result);
    }
    return result == 0;
}

void askQuestions(std::span<const Question> questions, int32_t element) {
    for (const Question &question : questions) {
        const auto size = static_cast<int32_t>(elementSize(question.field.kind));
        const int32_t offset = question.field.offset + element * size;
        double real = 0;
        uint32_t number = 0;
        if (promptYesNo(question.question) == 0) {
            continue;
        }
        if (question.field.kind == Kind::f64) {
            if (promptDouble(question.label, -doubleLimit, doubleLimit, real) == 0) {
                writePowerReporting(offset, &real, size);
            }
        } else if (promptUnsigned(question.label, question.max, number) == 0) {
            writePowerReporting(offset, &number, size);
        }
    }
}
