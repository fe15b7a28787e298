// The members that a table's rows show, for whoever looks a field up by its path. A report may show
// a member twice, in two views for instance, and not in the order of the record: here each is there
// once and in its place.
#pragma once

#include "sections/rows/table.h"

#include <algorithm>

// Rows of a table without their order and repetitions.
template <size_t capacity> struct DistinctFields {
    struct Entry {
        Row row;
        uint16_t outerOffset; // of the row itself, or of the one that it is nested in
        bool isNested;
    };
    std::array<Entry, capacity> entries{};
    size_t count = 0;

    constexpr void add(Row row, uint16_t outerOffset, bool isNested) {
        const std::string_view path = row.path;
        const auto isSame = [&](const Entry &entry) {
            return entry.outerOffset == outerOffset && entry.isNested == isNested &&
                   entry.row.path == path;
        };
        if (!path.empty() && std::none_of(entries.begin(), entries.begin() + count, isSame)) {
            row.label = row.path;
            row.shape.kind = row.type;
            row.shape.views = allViews;
            entries[count++] = {row, outerOffset, isNested};
        }
    }
    constexpr void sort() {
        std::sort(entries.begin(), entries.begin() + count, [](const Entry &a, const Entry &b) {
            if (a.outerOffset != b.outerOffset) {
                return a.outerOffset < b.outerOffset;
            }
            return a.isNested != b.isNested ? b.isNested : a.row.shape.offset < b.row.shape.offset;
        });
    }
};

template <const auto &written>
inline constexpr auto distinctFields = [] {
    DistinctFields<std::size(written)> fields;
    size_t nestedRows = 0;
    uint16_t outerOffset = 0;
    for (const auto &entry : written) {
        const Row &row = rowOf(entry);
        const bool isNested = nestedRows > 0;
        if (isNested) {
            --nestedRows;
        } else {
            nestedRows = row.shape.nestedRows;
            outerOffset = row.shape.offset;
        }
        fields.add(row, outerOffset, isNested);
    }
    fields.sort();
    return fields;
}();

template <const auto &written>
inline constexpr auto fieldRows = [] {
    std::array<Row, distinctFields<written>.count> distinct{};
    const auto *entries = distinctFields<written>.entries.data();
    std::transform(entries, entries + distinct.size(), distinct.begin(),
                   [](const auto &entry) { return entry.row; });
    return distinct;
}();

// The members that an array of rows shows, each once and in record order. The label of such a row
// is the member's path, its kind the member's type.
template <const auto &written> constexpr Rows fieldsOf() {
    return tableOf<fieldRows<written>>();
}
