// The walker: prints a table of rows from a record's bytes.
#pragma once

#include "sections/output.h"
#include "sections/table.h"

#include <cstring>

// What the rows of one table have in common.
struct Style {
    const char *prefix;         // before every label
    int hyphens = 0;            // length of the run between label and value...
    int column = 0;             // ...or, if not 0, of label and run together
    int floatPlaces = 2;        // decimals of a float
    bool unsignedWords = false; // shows int32_t unsigned
};

// The one place where values come out of a record's bytes: by copy, since they lie unaligned.
template <typename T> T load(const uint8_t *at) {
    T value;
    memcpy(&value, at, sizeof value);
    return value;
}

// Puts what stands before a row's value, with "[element]" behind the label unless it is -1.
void putLead(Output &out, const Style &style, const Row &row, int element);

// Puts the line or lines of one row of the record that starts at `record`.
void putRow(Output &out, const Style &style, const Row &row, const uint8_t *record);

// Puts, in order, the rows that appear in any of the views.
void putRows(Output &out, const Style &style, const Rows &rows, const uint8_t *record,
             Views views = allViews);

// Puts the rows of each element, of `size` bytes, of an array of nested records: their labels are
// led by the array's, at most 24 characters, and the element's index, "label[0].".
void putArray(Output &out, const Style &style, const Row &array, const Rows &rows,
              const uint8_t *record, size_t size);

// putRows, on their own.
void printRows(const Style &style, const Rows &rows, const uint8_t *record, Views views = allViews);
