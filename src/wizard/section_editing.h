// What the CPU power limits editor and the thermal editor have in common: a copy of the power
// reporting section, and questions whose confirmed answers are written to the section at once.
#pragma once

#include "sections/power_reporting.h"

#include <span>

// One field that an editor offers to overwrite. A double asks for a floating-point number of up to
// a thousand million either way, any other for an unsigned one.
struct Question {
    char question[32];
    char label[16];
    uint32_t max;   // of an unsigned number
    RowShape field; // in an sTolmAbsPowerReporting
};

// Reads the whole section into `copy`. On failure prints a message, leaves in the copy what the
// library left there and returns false.
bool readCopy(uint8_t *copy);

// Asks the questions in turn, of the given element where the field is an array, and writes each
// confirmed value, and nothing else, to its field.
void askQuestions(std::span<const Question> questions, int32_t element);
