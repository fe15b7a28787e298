// What the CPU power limits editor and the thermal editor have in common: a copy of the power
// reporting section, and asking field by field whether to overwrite it.
#pragma once

#include "upm/upm_block.h"

// How an editor asks for one field that it offers to overwrite.
struct Question {
    const char *question;
    const char *label; // of the prompt for the value
    const Row *field;  // in its struct; may be written
};

// Reads the whole section into `copy`. On failure prints a message, leaves in the copy what the
// library left there and returns false.
bool readPowerReporting(uint8_t *copy);

// Asks the questions in turn about a struct that begins at `offset` of the block, of the given
// element where the field is an array. Writes each confirmed value, and nothing else, to its field.
void askToOverwrite(std::span<const Question> questions, size_t offset, int32_t element);
