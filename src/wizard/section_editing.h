// What the CPU power limits editor and the thermal editor have in common: a copy of the power
// reporting section, and questions whose confirmed answers are written to the section at once.
#pragma once

#include "upm/writable_fields.h"

#include <span>

// How an editor asks for one field that it offers to overwrite.
struct Question {
    char question[32];
    char label[16];
    RowShape field; // in the UPM block
    uint32_t max;   // of an integer
};

#define QUESTION(question, label, path)                                                            \
    makeQuestion(question, label, limitOrThermalField(offsetof(sUpmBlock, path)))

template <size_t questionSize, size_t labelSize>
consteval Question makeQuestion(const char (&question)[questionSize],
                                const char (&label)[labelSize], const WritableField &field) {
    Question made{{}, {}, field.row.shape, field.max};
    std::copy_n(question, questionSize, made.question);
    std::copy_n(label, labelSize, made.label);
    return made;
}

// Reads the whole section into `copy`. On failure prints a message, leaves in the copy what the
// library left there and returns false.
bool readCopy(uint8_t *copy);

// Asks the questions in turn, of the given element where the field is an array, and writes each
// confirmed value, and nothing else, to its field.
void askQuestions(std::span<const Question> questions, int32_t element);
