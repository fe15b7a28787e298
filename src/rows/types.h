// The types of a record's members, and the facts about each type.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

// Seconds since 1970-01-01 00:00:00 UTC, unsigned.
enum class Time32 : uint32_t {};

// The domain that a policy governs: 0 cpu, 1 mem, 2 system, 3 gpu.
enum class PowerDomain : uint16_t {};

// The type of a member, or of its elements if it is an array. Text (char[n]) and opaque bytes
// (std::byte[n]) are not arrays; each is a single value. A record is a nested struct; `none` is for
// lines that show no member. No switch over types has a default, so the compiler names every place
// that a new type needs.
// clang-format off
enum class Type : uint8_t {
    none, u8, u16, u32, u64, i16, i32, f32, f64, time, domain, text, bytes, record
};
// clang-format on

// The Type of a C++ type; `none` if members of that type are not supported.
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

// The facts about a type.
struct TypeInfo {
    std::string_view name; // as `orbelstatctl list` prints it; text and bytes add "[size]"
    uint32_t max = 0;      // the largest bound of a writable member; 0 if none is writable

    // Returns whether members of the type can be writable, up to a bound.
    [[nodiscard]] constexpr bool canHaveBound() const {
        return max != 0;
    }
};

// Returns the facts about a type. They are listed only here. Only integers of at most four bytes
// and doubles can be written, because the wizard and orbelstatctl parse no others.
constexpr TypeInfo typeInfo(Type type) {
    switch (type) {
    case Type::u8:
        return {"u8", UINT8_MAX};
    case Type::u16:
    case Type::domain:
        return {"u16", UINT16_MAX};
    case Type::u32:
        return {"u32", UINT32_MAX};
    case Type::u64:
        return {"u64"};
    case Type::i16:
        return {"i16", INT16_MAX};
    case Type::i32:
        return {"i32", INT32_MAX};
    case Type::f32:
        return {"float"};
    case Type::f64:
        return {"double", UINT32_MAX};
    case Type::time:
        return {"time32", UINT32_MAX};
    case Type::text:
        return {"char"};
    case Type::bytes:
        return {"byte"};
    case Type::none:
    case Type::record:
        break;
    }
    return {""}; // not the type of a field
}

// Returns whether values of the type are byte strings, which list formats print byte by byte.
constexpr bool isByteString(Type type) {
    return type == Type::text || type == Type::bytes;
}

// Reads a value from a record's bytes, which may be unaligned. All values are read through this
// function.
template <typename T> T load(const uint8_t *at) {
    T value;
    memcpy(&value, at, sizeof value);
    return value;
}
