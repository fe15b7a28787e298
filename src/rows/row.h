// The row: what is known of one member of a record, said once. A record is one packed struct; its
// table is a plain array of rows, one member a line, in the order of its report:
//
//     inline constexpr Row policyRows[] = {
//         ROW(sPolicy, state).asFlag(),
//         ROW(sPolicy, policyPowerLimit).upTo(100000),
//         ROW(sPolicy, SFOffset).truncatingUpTo(100000).as(Format::signExtended),
//     };
//
// ROW takes path, type, place and size from the member, GROUP those of a struct and the rows in it.
// What else a row says is said by its functions that return a changed row. What cannot be right
// does not compile.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

// Seconds since 1970-01-01 00:00:00 UTC, unsigned.
enum class Time32 : uint32_t {};
// What a policy governs: 0 cpu, 1 mem, 2 system, 3 gpu.
enum class PowerDomain : uint16_t {};

// What a member is, or each element of it if it is an array; none of a line that shows no member.
// A text and bytes without a meaning are no arrays: each is one whole. No switch over types has a
// default, so the compiler names all that a new one needs.
// clang-format off
enum class Type : uint8_t {
    none, u8, u16, u32, u64, i16, i32, f32, f64, time, domain, text, bytes, record
};
// clang-format on

template <typename T> inline constexpr Type typeOf = Type::none;
template <> inline constexpr Type typeOf<uint8_t> = Type::u8;
template <> inline constexpr Type typeOf<uint16_t> = Type::u16;
template <> inline constexpr Type typeOf<uint32_t> = Type::u32;
template <> inline constexpr Type typeOf<uint64_t> = Type::u64;
template <> inline constexpr Type typeOf<int16_t> = Type::i16;
template <> inline constexpr Type typeOf<int32_t> = Type::i32;
template <> inline constexpr Type typeOf<float> = Type::f32;
template <> inline constexpr Type typeOf<double> = Type::f64;
template <> inline constexpr Type typeOf<Time32> = Type::time;
template <> inline constexpr Type typeOf<PowerDomain> = Type::domain;
template <size_t size> inline constexpr Type typeOf<char[size]> = Type::text;
template <size_t size> inline constexpr Type typeOf<std::byte[size]> = Type::bytes;
template <typename T>
requires std::is_class_v<T>
inline constexpr Type typeOf<T> = Type::record;

// Reads a value from a record's bytes, which may be unaligned. All values are read through this
// function.
template <typename T> T load(const uint8_t *at) {
    T value;
    memcpy(&value, at, sizeof value);
    return value;
}

// The largest whole number, of those up to UINT32_MAX, that a member of this type can hold.
constexpr uint32_t maxOf(Type type) {
    switch (type) {
    case Type::u8:
        return UINT8_MAX;
    case Type::u16:
    case Type::domain:
        return UINT16_MAX;
    case Type::i16:
        return INT16_MAX;
    case Type::i32:
        return INT32_MAX;
    case Type::none:
    case Type::u32:
    case Type::u64:
    case Type::f32:
    case Type::f64:
    case Type::time:
    case Type::text:
    case Type::bytes:
    case Type::record:
        break;
    }
    return UINT32_MAX;
}

// How a line shows a member.
enum class Format : uint8_t {
    // As its type is shown: a number in decimal (float with the style's number of places, double as
    // %g), a domain with its name, a text up to its first NUL, a time with an empty line after it;
    // an array as one line for each element.
    plain,
    signedDecimal,   // a uint32_t as if it were an int32_t
    unsignedDecimal, // an int32_t as if it were a uint32_t
    signExtended,    // an int16_t, widened with its sign to 32 bits, as a uint32_t
    hex,             // a uint8_t as two digits
    threePlaces,     // a uint8_t padded to three places
    timeOnly,        // without the empty line
    // An array, a text or bytes as a heading, "[]" after the label, and lines of at most sixteen
    // values:
    hexList,        // numbers of at least two digits
    hexList4,       // numbers of at least four digits
    hexListAndText, // a text's bytes, and one more line with all of the text
    decimalList,
    labelledDecimalList, // decimal, with "In DEC: " before the first
};
constexpr bool isList(Format format) {
    return format >= Format::hexList;
}

// Whether a type is a run of bytes, of which lists show each.
constexpr bool isByteString(Type type) {
    return type == Type::text || type == Type::bytes;
}

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

// Whether a member of this type can have a bound: who writes knows whole numbers of up to four
// bytes, and doubles.
constexpr bool canHaveBound(Type type) {
    switch (type) {
    case Type::none:
    case Type::u64:
    case Type::f32:
    case Type::text:
    case Type::bytes:
    case Type::record:
        return false;
    case Type::u8:
    case Type::u16:
    case Type::u32:
    case Type::i16:
    case Type::i32:
    case Type::f64:
    case Type::time:
    case Type::domain:
        return true;
    }
    return false;
}

// The reports, of those that share a table, in which a row appears; each such table names its own.
using Views = uint8_t;
inline constexpr Views inAllViews = 0xFF;
inline constexpr Views inNoView = 0;

inline constexpr int noIndex = -1;

// Neither constexpr nor defined: a row that would call it does not compile, and the compiler shows
// the reason.
void refuseRow(const char *reason);

struct [[nodiscard]] Row {
    std::string_view label; // a string literal, so its data end with NUL
    std::string_view path;  // of the member in its record; "" if the row shows none
    Type type;
    Format format = Format::plain;
    bool isVerbatim = false; // the label is all that stands before the value
    bool isFlag = false;     // 0 or 1, to whoever asks for a value
    Views views = inAllViews;
    uint16_t count = 0;  // of elements; 0 if it is no array
    uint32_t size = 0;   // of one element in bytes
    uint32_t offset = 0; // of the first byte in the record
    // Up to which it may be written: a whole number from 0, a double from -bound. None if it may
    // not.
    std::optional<uint32_t> bound = {};
    std::span<const Row> nested = {}; // the rows of the struct that the member or its element is

    [[nodiscard]] constexpr bool isArray() const {
        return count != 0;
    }
    // How often there is one: each element of an array, and what is no array once.
    [[nodiscard]] constexpr uint32_t elementCount() const {
        return std::max<uint32_t>(count, 1);
    }
    // What names one of them in brackets.
    [[nodiscard]] constexpr int indexOf(uint32_t element) const {
        return isArray() ? static_cast<int>(element) : noIndex;
    }

    // Writable from 0 to a bound that the member can hold.
    consteval Row upTo(uint32_t max) const {
        if (max > maxOf(type)) {
            refuseRow("a bound that the member cannot hold");
        }
        return truncatingUpTo(max);
    }
    // Writable from 0 to a bound that the member need not hold: its low bytes are written.
    consteval Row truncatingUpTo(uint32_t max) const {
        if (bound || !canHaveBound(type)) {
            refuseRow("a second bound, or a bound of a type that nobody writes");
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
    consteval Row as(Format other) const {
        if (format != Format::plain || !canShow(other, type, isArray())) {
            refuseRow("a second format, or one that is not for the member's type");
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
};

template <typename Member>
consteval Row makeRow(std::string_view path, size_t offset, std::span<const Row> nested = {}) {
    constexpr bool isArray = typeOf<Member> == Type::none;
    using Element = std::conditional_t<isArray, std::remove_extent_t<Member>, Member>;
    static_assert(typeOf<Element> != Type::none, "a type that no row shows");
    if ((typeOf<Element> == Type::record) == nested.empty()) {
        refuseRow("a struct without the rows of its members, or rows in what is no struct");
    }
    for (const Row &row : nested) {
        if (!row.nested.empty() || row.offset + row.size * row.elementCount() > sizeof(Element)) {
            refuseRow("rows of another struct, or rows that nest rows themselves");
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
// A member that is a struct, or an array of them, with the rows of that struct.
#define GROUP(record, member, rows)                                                                \
    makeRow<std::remove_reference_t<decltype(record::member)>>(#member, offsetof(record, member),  \
                                                               rows)

// A line that shows no member.
consteval Row line(std::string_view text) {
    return {.label = text, .path = "", .type = Type::none, .isVerbatim = true};
}

// The row with this path; there must be one.
consteval const Row *findRow(std::span<const Row> rows, std::string_view path) {
    for (const Row &row : rows) {
        if (row.path == path) {
            return &row;
        }
    }
    refuseRow("no row has this path");
    return nullptr;
}
