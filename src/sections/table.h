// Tables of rows, as the program carries them: with the labels in one piece behind the rows, since
// a pointer in every row would cost a relocation at every start and four times the bytes.
#pragma once

#include "sections/row.h"

#include <iterator>
#include <string>

struct StoredRow {
    uint16_t label; // where it begins in the labels
    RowShape shape;
};

template <size_t rowCount, size_t labelSize> struct Table {
    StoredRow rows[rowCount];
    char labels[labelSize];
};

// The rows of a table, or the first of them.
struct Rows {
    template <size_t rowCount, size_t labelSize>
    constexpr Rows(const Table<rowCount, labelSize> &table, size_t firstRows = rowCount)
        : rows(table.rows), labels(table.labels), count(firstRows) {}
    Row operator[](size_t i) const {
        return {labels + rows[i].label, rows[i].shape};
    }

    const StoredRow *rows;
    const char *labels;
    size_t count;
};

// What is written down may have more columns than the row.
constexpr const Row &rowOf(const auto &written) {
    if constexpr (requires { written.row; }) {
        return written.row;
    } else {
        return written;
    }
}

// Makes a table of an array of rows.
template <const auto &written> consteval auto makeTable() {
    constexpr size_t labelSize = [] {
        size_t size = 0;
        for (const auto &entry : written) {
            size += std::char_traits<char>::length(rowOf(entry).label) + 1;
        }
        return size;
    }();
    Table<std::size(written), labelSize> table{};
    size_t used = 0;
    for (size_t i = 0; i < std::size(written); ++i) {
        const Row &row = rowOf(written[i]);
        table.rows[i] = {static_cast<uint16_t>(used), row.shape};
        for (const char *from = row.label; *from != '\0'; ++from) {
            table.labels[used++] = *from;
        }
        table.labels[used++] = '\0';
    }
    return table;
}
