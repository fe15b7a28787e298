// Prints a table of rows from a record's bytes.
#pragma once

#include "sections/rows/table.h"
#include "sections/rows/text_buffer.h"

#include <cstring>

// What the rows of one table have in common.
struct Style {
    std::string_view prefix; // before every label that is not verbatim
    int hyphens = 0;         // length of the run between label and value...
    int column = 0;          // ...or, if not 0 and not in nested rows, of label and run together
    int floatPlaces = 2;     // decimals of a float
};

// The one place where values come out of a record's bytes: by copy, since they lie unaligned.
template <typename T> T load(const uint8_t *at) {
    T value;
    memcpy(&value, at, sizeof value);
    return value;
}

// Puts an integer in decimal, of Kind::u8, u16, u32, u64 or i32.
void putInteger(TextBuffer &out, Kind kind, const uint8_t *at);

// Puts what stands before a row's value, with "[element]" behind the label unless it is -1.
void putLabel(TextBuffer &out, const Style &style, const RowView &row, int element);

// Puts the line or lines of one row, which has no nested ones, of the record that starts at
// `record`.
void putRow(TextBuffer &out, const Style &style, const RowView &row, const uint8_t *record);

// Puts, in order, the rows that appear in any of the views. Before the labels of nested rows stands
// that of their struct, "label[0].", or "label." if it is no array.
void putRows(TextBuffer &out, const Style &style, const Rows &rows, const uint8_t *record,
             Views views = allViews);

// putRows, on their own.
void printRows(const Style &style, const Rows &rows, const uint8_t *record, Views views = allViews);
