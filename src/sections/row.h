// The vocabulary of the reports: the types of a record's members, and the row that stands for one
// member in a report.
//
// A record is one packed struct. A row is made from a member's path with ROW: the path is its
// label, the member's place its offset, and the member's type says how it is shown:
//
//     uint8_t, uint16_t, uint32_t, uint64_t   unsigned decimal
//     int32_t        signed decimal; also the words that their report shows signed whatever they
//                    count (Style::unsignedWords shows them unsigned)
//     int16_t        unsigned decimal of the value widened with its sign to 32 bits
//     float          decimal with the style's number of places
//     double         %g
//     time32         local time, followed by an empty line
//     powerDomain    unsigned decimal and the domain's name
//     char[n]        text up to its first NUL or the end of the field
//     any other [n]  one line an element, "[k]" behind the label
//
// What else a line has of its own is said in its row: another label (ROW_LABELLED), a whole lead in
// place of label and hyphens (ROW_LEAD), another kind (shownAs), views that lack it (onlyIn).
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

// Seconds since 1970-01-01 00:00:00 UTC, unsigned.
enum class time32 : uint32_t {};
// What a policy governs: 0 cpu, 1 mem, 2 system, 3 gpu.
enum class powerDomain : uint16_t {};

enum class Kind : uint8_t {
    u8,
    u16,
    u32,
    u64,
    i16,
    i32,
    f32,
    f64,
    time,
    timeUnspaced, // without the empty line after it
    domain,
    hexByte,
    // From here on an array is one value, not one line an element:
    text,
    // Arrays shown as a heading line and lines of at most sixteen values:
    hexBytes,
    hexBytesAndText, // and one more line with the bytes as they stand
    hexWords,
    hexWords4, // padded to four digits
    decimalBytes,
    decimalWords,
    // Without a value of its own:
    line,   // the label is the whole line
    record, // a nested record, which its report prints itself
};

// The reports, of those that share a table, in which a row appears; each such table names its own.
using Views = uint8_t;
inline constexpr Views allViews = 0xFF;

struct RowShape {
    bool isWholeLead; // the label is all that stands before the value
    Kind kind;
    Views views;
    uint16_t count;  // of elements; 0 for a scalar
    uint16_t offset; // of the first byte within the record
};

struct Row {
    const char *label;
    RowShape shape;
};

template <typename T> consteval Kind kindOf() {
    if constexpr (std::is_same_v<T, uint8_t>) {
        return Kind::u8;
    } else if constexpr (std::is_same_v<T, uint16_t>) {
        return Kind::u16;
    } else if constexpr (std::is_same_v<T, uint32_t>) {
        return Kind::u32;
    } else if constexpr (std::is_same_v<T, uint64_t>) {
        return Kind::u64;
    } else if constexpr (std::is_same_v<T, int16_t>) {
        return Kind::i16;
    } else if constexpr (std::is_same_v<T, int32_t>) {
        return Kind::i32;
    } else if constexpr (std::is_same_v<T, float>) {
        return Kind::f32;
    } else if constexpr (std::is_same_v<T, double>) {
        return Kind::f64;
    } else if constexpr (std::is_same_v<T, time32>) {
        return Kind::time;
    } else if constexpr (std::is_same_v<T, powerDomain>) {
        return Kind::domain;
    } else if constexpr (std::is_same_v<T, char>) {
        return Kind::text;
    } else {
        static_assert(std::is_class_v<T>, "a type that no kind shows");
        return Kind::record;
    }
}

// Bytes of one value of a kind, or of one element where the kind is an array's.
constexpr size_t elementSize(Kind kind) {
    switch (kind) {
    case Kind::u16:
    case Kind::i16:
    case Kind::domain:
    case Kind::hexWords:
    case Kind::hexWords4:
    case Kind::decimalWords:
        return 2;
    case Kind::u32:
    case Kind::i32:
    case Kind::f32:
    case Kind::time:
    case Kind::timeUnspaced:
        return 4;
    case Kind::u64:
    case Kind::f64:
        return 8;
    default:
        return 1;
    }
}

consteval Row makeRow(const char *label, Kind kind, size_t count, size_t offset) {
    return {label,
            {false, kind, allViews, static_cast<uint16_t>(count), static_cast<uint16_t>(offset)}};
}

// Each needs an alias `Record` for the struct that the path starts from.
#define ROW(path) ROW_LABELLED(#path, path)
#define ROW_LABELLED(label, path)                                                                  \
    makeRow(label, kindOf<std::remove_extent_t<TYPE_OF(path)>>(), std::extent_v<TYPE_OF(path)>,    \
            offsetof(Record, path))
#define ROW_LEAD(lead, path) wholeLead(ROW_LABELLED(lead, path))
#define TYPE_OF(path) std::remove_reference_t<decltype(std::declval<Record &>().path)>

consteval Row wholeLead(Row row) {
    row.shape.isWholeLead = true;
    return row;
}

consteval Row shownAs(Kind kind, Row row) {
    row.shape.kind = kind;
    return row;
}

consteval Row onlyIn(Views views, Row row) {
    row.shape.views = views;
    return row;
}

// A line that shows no member.
consteval Row line(const char *text) {
    return makeRow(text, Kind::line, 0, 0);
}
