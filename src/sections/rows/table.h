// Tables of rows, as the program carries them: with the labels in one piece behind the rows, since
// a pointer in every row would cost a relocation at every start and four times the bytes.
#pragma once

#include "sections/rows/row.h"

#include <string_view>

struct StoredRow {
    uint16_t label; // where it begins in the labels, and the one before it ends
    RowShape shape;
};

template <size_t rowCount, size_t labelSize> struct Table {
    StoredRow rows[rowCount + 1]; // the last only ends the label before it
    char labels[labelSize];
};

// A row as it comes out of a table.
struct RowView {
    std::string_view label;
    RowShape shape;
};

// The rows of a table, or a part of them.
class Rows {
  public:
    template <size_t rowCount, size_t labelSize>
    constexpr explicit Rows(const Table<rowCount, labelSize> &table)
        : Rows(table.rows, table.labels, rowCount) {}

    [[nodiscard]] constexpr size_t size() const {
        return count;
    }
    constexpr RowView operator[](size_t i) const {
        return {{labels + rows[i].label, labels + rows[i + 1].label}, rows[i].shape};
    }
    // The rows nested in row i, which follow it.
    [[nodiscard]] constexpr Rows nestedIn(size_t i) const {
        return {rows + i + 1, labels, rows[i].shape.nestedRows};
    }

  private:
    constexpr Rows(const StoredRow *first, const char *allLabels, size_t size)
        : rows(first), labels(allLabels), count(size) {}

    const StoredRow *rows;
    const char *labels;
    size_t count;
};

// Calls visit(RowView, Rows nested in it), in order, for the rows that appear in any of the views.
template <typename Visit> void forEachRow(const Rows &rows, Views views, Visit visit) {
    for (size_t i = 0; i < rows.size(); ++i) {
        const RowView row = rows[i];
        if ((row.shape.views & views) != 0) {
            visit(row, rows.nestedIn(i));
        }
        i += row.shape.nestedRows;
    }
}

template <const auto &written> consteval auto makeTable() {
    constexpr size_t labelSize = [] {
        size_t size = 0;
        for (const auto &entry : written) {
            size += std::string_view(rowOf(entry).label).size();
        }
        return size;
    }();
    Table<std::size(written), labelSize> table{};
    uint16_t used = 0;
    for (size_t i = 0; i < std::size(written); ++i) {
        const Row &row = rowOf(written[i]);
        table.rows[i] = {used, row.shape};
        for (const char character : std::string_view(row.label)) {
            table.labels[used++] = character;
        }
    }
    table.rows[std::size(written)].label = used;
    return table;
}

template <const auto &written> inline constexpr auto storedTable = makeTable<written>();

// The rows of an array of rows, as the program carries them.
template <const auto &written> constexpr Rows tableOf() {
    return Rows(storedTable<written>);
}
