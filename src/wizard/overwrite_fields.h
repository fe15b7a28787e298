// Code that the CPU power limits editor and the thermal editor share: they keep a copy of the power
// reporting section, and ask for each field whether to overwrite it.
#pragma once

#include "upm/upm_block.h"

// How an editor asks for the value of a field.
struct Question {
    const char *prompt; // asks whether to overwrite the field
    const char *label;  // names the field in the prompt for its value
    const Row *field;   // must be writable
};

// Reads the whole section into `copy`. On failure prints a message and returns false; the contents
// of `copy` are then unspecified.
bool readPowerReporting(uint8_t *copy);

// Asks the questions one after the other and writes each confirmed value at once. `offset` is that
// of the fields' struct in the block; `element` selects the element of a field that is an array,
// and must be 0 for other fields.
void overwriteFields(std::span<const Question> questions, size_t offset, int32_t element);
