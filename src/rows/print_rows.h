// How rows become lines: the walker of the tables, the formats and the types.
#pragma once

#include "output/text_buffer.h"
#include "rows/row.h"

// What the rows of one table have in common.
struct Style {
    std::string_view prefix; // before every label that is not verbatim
    int hyphens = 0;         // length of the run between label and value...
    int column = 0;          // ...or, if not 0 and not in nested rows, of label and run together
    int floatPlaces = 2;     // decimals of a float
};

// Puts a whole number in decimal: an integer, or the number of a domain.
void putInteger(TextBuffer &out, Type type, const uint8_t *at);

// The struct whose rows are put: the one with this index in an array, or one of its own (noIndex).
struct Outer {
    const Row &row;
    int index;
};

// Puts what stands before a row's value: before the label that of the outer struct, if there is
// one, and after it "[index]", unless that is noIndex, and "[]" if the row is shown as a list.
void putLabel(TextBuffer &out, const Style &style, const Outer *outer, const Row &row, int index);

// Puts the lines of one row, of the record that starts at `record`. Where the row nests rows, puts
// those of them that appear in the view, for each element: before their labels stands that of
// their struct, "label[0]." or, if it is no array, "label.".
void putRow(TextBuffer &out, const Style &style, const Row &row, const uint8_t *record,
            Views view = inAllViews);

// Prints the rows that appear in the view, in order.
void printRows(const Style &style, std::span<const Row> rows, const uint8_t *record,
               Views view = inAllViews);
