// The vocabulary of the reports: the types of a record's members, and the row that stands for one
// member in a report.
//
// A record is one packed struct. A row is made from a member's path with ROW: the path is its
// label, the member's place its offset, and the member's type says how it is shown:
//
//     uint8_t, uint16_t, uint32_t, uint64_t   unsigned decimal
//     int16_t        unsigned decimal of the value widened with its sign to 32 bits
//     int32_t        signed decimal
//     float          decimal with the style's number of places
//     double         %g
//     Time32         local time, followed by an empty line
//     PowerDomain    unsigned decimal and the domain's name
//     char[n]        text up to its first NUL or the end of the field
//     a struct       the rows that `nested` gives it, for each element of an array
//     any other [n]  one line an element, "[k]" behind the label
//
// What else a line has of its own is said in its row: another label (ROW_LABEL), all that stands
// before the value (ROW_VERBATIM), another kind (shownAs, SIGNED, ARRAY), views that lack it
// (onlyIn).
//
// A table is an array of rows, made where it is named from a lambda whose `Record` is the struct
// that the paths start from:
//
//     static constexpr auto rows = [] {
//         using Record = sSomeRecord;
//         return rowsOf(ROW(first), ROW(second));
//     }();
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

// Seconds since 1970-01-01 00:00:00 UTC, unsigned.
enum class Time32 : uint32_t {};
// What a policy governs: 0 cpu, 1 mem, 2 system, 3 gpu.
enum class PowerDomain : uint16_t {};

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
    sample, // a byte padded to three places
    text,
    // Arrays shown as a heading line and lines of at most sixteen values:
    hexBytes,
    hexBytesAndText, // and one more line with the bytes as they stand
    hexWords,
    hexWords4, // padded to four digits
    decimalBytes,
    decimalWords,
    // Without a value of its own:
    line,     // the label is the whole line
    record,   // a struct: its nested rows follow
    readings, // a struct whose elements take one line each: label, index to two places and
    reading,  // nested rows of this kind, u16 padded to three places
};

// Whether a row of this kind shows an array as one value, not one line an element.
constexpr bool showsArrayWhole(Kind kind) {
    switch (kind) {
    case Kind::text:
    case Kind::hexBytes:
    case Kind::hexBytesAndText:
    case Kind::hexWords:
    case Kind::hexWords4:
    case Kind::decimalBytes:
    case Kind::decimalWords:
        return true;
    default:
        return false;
    }
}

// The reports, of those that share a table, in which a row appears; each such table names its own.
using Views = uint8_t;
inline constexpr Views allViews = 0xFF;

struct RowShape {
    Kind kind;       // how the member is shown
    bool isVerbatim; // the label is all that stands before the value
    Views views;
    uint8_t nestedRows; // so many of the rows that follow are those of the member's own struct
    uint16_t count;     // of elements; 0 for a scalar
    uint16_t size;      // of one element in bytes
    uint16_t offset;    // of the first byte within the record
};

struct Row {
    const char *label;
    RowShape shape;
    const char *path; // of the member; "" if the row shows none
    Kind type;        // the kind that the member's type stands for, however it is shown
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
    } else if constexpr (std::is_same_v<T, Time32>) {
        return Kind::time;
    } else if constexpr (std::is_same_v<T, PowerDomain>) {
        return Kind::domain;
    } else if constexpr (std::is_same_v<T, char>) {
        return Kind::text;
    } else {
        static_assert(std::is_class_v<T>, "a type that no kind shows");
        return Kind::record;
    }
}

template <typename Member>
consteval Row makeRow(const char *label, const char *path, size_t offset, bool isVerbatim) {
    using Element = std::remove_extent_t<Member>;
    const Kind kind = kindOf<Element>();
    return {label,
            {kind, isVerbatim, allViews, 0, std::extent_v<Member>, sizeof(Element),
             static_cast<uint16_t>(offset)},
            path,
            kind};
}

#define ROW(path) ROW_LABEL(#path, path)
#define ROW_LABEL(label, path) makeRow<TYPE_OF(path)>(label, #path, offsetof(Record, path), false)
#define ROW_VERBATIM(text, path) makeRow<TYPE_OF(path)>(text, #path, offsetof(Record, path), true)
#define TYPE_OF(path) std::remove_reference_t<decltype(std::declval<Record &>().path)>
// An unsigned word that its report shows as a signed one.
#define SIGNED(path) shownAs(Kind::i32, ROW(path))
// An array's label says that it is one, its values stand on lines of their own.
#define ARRAY(kind, path) shownAs(kind, ROW_LABEL(#path "[]", path))

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
    return {text, {Kind::line, true, allViews, 0, 0, 0, 0}, "", Kind::line};
}

// What is written in a table may have more columns than the row.
constexpr const Row &rowOf(const auto &written) {
    if constexpr (requires { written.row; }) {
        return written.row;
    } else {
        return written;
    }
}

template <typename Part> inline constexpr size_t rowCount = std::tuple_size_v<Part>;
template <> inline constexpr size_t rowCount<Row> = 1;

// Puts rows, and arrays of them such as `nested` returns, into one array.
template <typename... Parts> consteval auto rowsOf(const Parts &...parts) {
    std::array<Row, (rowCount<Parts> + ...)> rows{};
    auto *end = rows.data();
    const auto append = [&end](const auto &part) {
        if constexpr (std::is_same_v<decltype(part), const Row &>) {
            *end++ = part;
        } else {
            for (const auto &entry : part) {
                *end++ = rowOf(entry);
            }
        }
    };
    (append(parts), ...);
    return rows;
}

// The row of a struct, or of an array of them, and the rows of that struct.
template <typename Entry, size_t count>
consteval auto nested(Row record, const std::array<Entry, count> &rows) {
    record.shape.nestedRows = count;
    return rowsOf(record, rows);
}
