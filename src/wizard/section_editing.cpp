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

static void askQuestion(const Question &question, int32_t offset) {
    if (promptYesNo(question.question) == 0) {
        return;
    }
    if (question.field.kind == Kind::f64) {
        double value = 0;
        if (promptDouble(question.label, -doubleLimit, doubleLimit, value) == 0) {
            writePowerReporting(offset, &value, sizeof value);
        }
    } else {
        uint32_t value = 0;
        if (promptUnsigned(question.label, question.max, value) == 0) {
            writePowerReporting(offset, &value, sizeof value);
        }
    }
}

void askQuestions(std::span<const Question> questions, int32_t element) {
    for (const Question &question : questions) {
        const auto size = static_cast<int32_t>(elementSize(question.field.kind));
        askQuestion(question, question.field.offset + element * size);
    }
}
