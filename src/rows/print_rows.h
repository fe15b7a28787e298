// Prints rows as lines of a report.
#pragma once

#include "output/text_buffer.h"
#include "rows/row.h"

// How a report lays out its lines: prefix, label, hyphens, value.
struct Style {
    std::string_view prefix; // before every label that is not verbatim
    int hyphens = 0;         // number of hyphens between label and value
    int column = 0;          // if not 0: label and hyphens together have this length instead; does
                             // not apply to nested rows
    int floatPlaces = 2;     // decimals of a float, 1 to 6
};

// The struct that contains a nested row.
struct Parent {
    const Row &row;
    int index; // of the struct in its array; noIndex if it is not in one
};

// Writes everything before a row's value: the label of the parent, if there is one (else null),
// then the row's own label, followed by "[index]" unless that is noIndex, or by "[]" for a list.
void putLabel(TextBuffer &out, const Style &style, const Parent *parent, const Row &row, int index);

// Writes an integer, or the number of a domain, in decimal. Writes nothing for any other type.
void putInteger(TextBuffer &out, Type type, const uint8_t *at);

// Writes the lines of one row. `record` is the first byte of the row's record. For a struct, writes
// the nested rows that appear in the view, once for each struct of an array.
void putRow(TextBuffer &out, const Style &style, const Row &row, const uint8_t *record,
            Views view = inAllViews);

// Prints the rows that appear in the view, in order.
void printRows(const Style &style, std::span<const Row> rows, const uint8_t *record,
               Views view = inAllViews);
