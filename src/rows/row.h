// The language of the tables. A row describes one member of a record: its place, its type, and how
// a report prints it. Each record is one packed struct with its table next to it, an array of rows
// with one member per line, in the order of the report:
//
//     inline constexpr Row policyRows[] = {
//         ROW(sPolicy, state).asFlag(),
//         ROW(sPolicy, policyPowerLimit).upTo(100000),
//         ROW(sPolicy, SFOffset).truncatingUpTo(100000).as(Format::signExtended),
//     };
//
// The reports, the wizard and orbelstatctl all read these tables. There are three kinds of rows:
//
//     ROW(record, member)          a member that is not a struct, or an array of such members
//     GROUP(record, member, rows)  a struct, or an array of structs, with the table of that struct
//     line(text)                   a line of text that shows no member
//
// ROW and GROUP take path, type, offset and size from the member. Chained calls, each of which
// returns a modified copy of the row, set everything else:
//
//     .as(format)           prints the value in a format other than the usual one of its type
//     .labelled(text)       replaces the member's name in the line
//     .verbatim(text)       replaces everything before the value
//     .onlyIn(views)        shows the row in only some of the reports that share the table
//     .upTo(max)            makes the member writable from 0 to max (a double from -max to max)
//     .truncatingUpTo(max)  like upTo, but the member may be too small to hold max
//     .asFlag()             makes the member writable with 0 or 1
//
// Invalid combinations do not compile, and the error message has the reason.
#pragma once

#include "rows/types.h"

#include <algorithm>
#include <optional>
#include <span>

// How the value of a row is printed. No switch over formats has a default, so the compiler names
// each place that a new format needs.
enum class Format : uint8_t {
    // The usual format of the type. Numbers are decimal, a float with the number of decimals that
    // the report's style has, a double as printf's %g prints it. A domain is followed by its name,
    // and a time by an empty line. Text ends at its first NUL. An array has one line per element.
    plain,
    signedDecimal,   // a uint32_t as if it were an int32_t
    unsignedDecimal, // an int32_t as if it were a uint32_t
    signExtended,    // an int16_t, sign-extended to 32 bits, as a uint32_t
    hex,             // a uint8_t as "0x" and two digits
    threePlaces,     // a uint8_t padded with blanks to three places
    timeOnly,        // a time without the empty line
    // List formats: "[]" after the label, then lines of at most sixteen values. They are for arrays
    // and, byte by byte, for text and bytes.
    hexList,             // at least two digits per value
    hexList4,            // at least four digits per value
    hexListAndText,      // text, followed by a line with all of its bytes as characters
    decimalList,         // decimal
    labelledDecimalList, // decimal, with "In DEC: " before the first value
};

// Returns whether the format is a list format.
constexpr bool isList(Format format) {
    return format >= Format::hexList;
}

// Returns whether the format suits a member of this type, or an array of such members.
constexpr bool canShow(Format format, Type type, bool isArray) {
    switch (format) {
    case Format::plain:
        return true;
    case Format::signedDecimal:
        return type == Type::u32;
    case Format::unsignedDecimal:
        return type == Type::i32;
    case Format::signExtended:
        return type == Type::i16;
    case Format::hex:
    case Format::threePlaces:
        return type == Type::u8;
    case Format::timeOnly:
        return type == Type::time;
    case Format::hexList:
        return isByteString(type) || (isArray && (type == Type::u8 || type == Type::u16));
    case Format::hexList4:
    case Format::decimalList:
        return isArray && type == Type::u16;
    case Format::hexListAndText:
        return type == Type::text;
    case Format::labelledDecimalList:
        return isArray && type == Type::u8;
    }
    return false;
}

// A set of reports (bit mask). Where several reports share a table, the header of the table defines
// one bit for each.
using Views = uint8_t;
inline constexpr Views inAllViews = 0xFF;
inline constexpr Views inNoView = 0;

// The index of a member that is not an element of an array.
inline constexpr int noIndex = -1;

// Declared only: a table that reaches a call of it does not compile, and the error message shows
// the reason.
void rejectRow(const char *reason);

// One row of a table. Made by ROW, GROUP and line.
struct [[nodiscard]] Row {
    std::string_view label; // a string literal, so a NUL follows its last character
    std::string_view path;  // of the member in its record; "" if the row shows no member
    Type type;
    Format format = Format::plain;
    bool isVerbatim = false;  // whether the label is everything that precedes the value
    bool isFlag = false;      // whether the wizard asks for 0 or 1
    Views views = inAllViews; // the reports in which the row appears
    uint16_t count = 0;       // number of elements; 0 if the member is not an array
    uint32_t size = 0;        // of the member, or of one element, in bytes
    uint32_t offset = 0;      // of the member in its record, in bytes
    // The largest value that may be written; the smallest is 0, or -bound for a double. Empty if
    // the member is read-only.
    std::optional<uint32_t> bound = {};
    std::span<const Row> nested = {}; // the table of the struct, if the member is one

    [[nodiscard]] constexpr bool isArray() const {
        return count != 0;
    }
    // Returns the number of elements; 1 if the member is not an array.
    [[nodiscard]] constexpr uint32_t elementCount() const {
        return std::max<uint32_t>(count, 1);
    }
    // Returns the index to print in brackets, noIndex if the member is not an array.
    [[nodiscard]] constexpr int indexOf(uint32_t element) const {
        return isArray() ? static_cast<int>(element) : noIndex;
    }

    // The calls that are described at the top of this file.
    consteval Row as(Format other) const {
        if (format != Format::plain || !canShow(other, type, isArray())) {
            rejectRow("the row already has a format, or the format does not suit the member");
        }
        Row changed = *this;
        changed.format = other;
        return changed;
    }
    consteval Row labelled(std::string_view text) const {
        Row changed = *this;
        changed.label = text;
        return changed;
    }
    consteval Row verbatim(std::string_view text) const {
        Row changed = labelled(text);
        changed.isVerbatim = true;
        return changed;
    }
    consteval Row onlyIn(Views some) const {
        Row changed = *this;
        changed.views = some;
        return changed;
    }
    consteval Row upTo(uint32_t max) const {
        if (typeInfo(type).canHaveBound() && max > typeInfo(type).max) {
            rejectRow("the member cannot hold the bound");
        }
        return truncatingUpTo(max);
    }
    // Writers store the low bytes of the value, as many as the member has.
    consteval Row truncatingUpTo(uint32_t max) const {
        if (bound || !typeInfo(type).canHaveBound()) {
            rejectRow("the row already has a bound, or its member cannot have one");
        }
        Row changed = *this;
        changed.bound = max;
        return changed;
    }
    consteval Row asFlag() const {
        Row changed = upTo(1);
        changed.isFlag = true;
        return changed;
    }
};

// Returns the row of a member. To be called through ROW and GROUP.
template <typename Member>
consteval Row makeRow(std::string_view path, size_t offset, std::span<const Row> nested = {}) {
    constexpr bool isArray = typeOf<Member> == Type::none;
    using Element = std::conditional_t<isArray, std::remove_extent_t<Member>, Member>;
    static_assert(typeOf<Element> != Type::none, "unsupported member type");
    if ((typeOf<Element> == Type::record) == nested.empty()) {
        rejectRow("a struct needs GROUP and the rows of its members, any other member needs ROW");
    }
    for (const Row &row : nested) {
        if (!row.nested.empty() || row.offset + row.size * row.elementCount() > sizeof(Element)) {
            rejectRow("the nested rows belong to another struct, or nest rows themselves");
        }
    }
    return {.label = path,
            .path = path,
            .type = typeOf<Element>,
            .format = typeOf<Element> == Type::bytes ? Format::hexList : Format::plain,
            .count = isArray ? std::extent_v<Member> : 0,
            .size = sizeof(Element),
            .offset = static_cast<uint32_t>(offset),
            .nested = nested};
}
#define ROW(record, member)                                                                        \
    makeRow<std::remove_reference_t<decltype(record::member)>>(#member, offsetof(record, member))
#define GROUP(record, member, rows)                                                                \
    makeRow<std::remove_reference_t<decltype(record::member)>>(#member, offsetof(record, member),  \
                                                               rows)

// Returns a row that shows a text and no member.
consteval Row line(std::string_view text) {
    return {.label = text, .path = "", .type = Type::none, .isVerbatim = true};
}

// Returns the row with this path. Does not compile if there is none.
consteval const Row *findRow(std::span<const Row> rows, std::string_view path) {
    for (const Row &row : rows) {
        if (row.path == path) {
            return &row;
        }
    }
    rejectRow("no row has this path");
    return nullptr;
}
