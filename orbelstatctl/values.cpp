#include "orbelstatctl/values.h"

#include "orbelstatctl/messages.h"
#include "rows/print_rows.h"

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>

std::string typeNameOf(const Node &field) {
    if (field.isPolicyName()) {
        return "text";
    }
    switch (field.row->type) {
    case Type::u8:
        return "u8";
    case Type::u16:
    case Type::domain:
        return "u16";
    case Type::u32:
        return "u32";
    case Type::u64:
        return "u64";
    case Type::i16:
        return "i16";
    case Type::i32:
        return "i32";
    case Type::f32:
        return "float";
    case Type::f64:
        return "double";
    case Type::time:
        return "time32";
    case Type::text:
        return "char[" + std::to_string(field.row->size) + ']';
    case Type::bytes:
        return "byte[" + std::to_string(field.row->size) + ']';
    case Type::none:
    case Type::record:
        break;
    }
    return ""; // no field's type
}

static bool isReal(const Row &row) {
    return row.type == Type::f32 || row.type == Type::f64;
}

// The largest whole number that a field may be set to.
static uint32_t largestOf(const Row &row) {
    return std::min(*row.bound, typeInfo(row.type).max);
}

std::string boundsOf(const Row &row) {
    const std::string max = std::to_string(isReal(row) ? *row.bound : largestOf(row));
    return (isReal(row) ? '-' + max : "0") + ".." + max;
}

template <typename Number> static std::string textIn(std::chars_format format, Number number) {
    char text[32];
    return {text, std::to_chars(text, std::end(text), number, format).ptr};
}

std::string textAt(const Row &row, const uint8_t *at) {
    const auto *text = reinterpret_cast<const char *>(at);
    return {text, strnlen(text, row.size)};
}

// Of a float by way of its shortest text.
static std::string realText(const Row &row, const uint8_t *at) {
    const double number = row.type == Type::f64
                              ? load<double>(at)
                              : std::stod(textIn(std::chars_format::scientific, load<float>(at)));
    const double magnitude = std::fabs(number);
    const bool isPlain = number == 0 || (magnitude >= 1e-5 && magnitude < 1e16);
    return textIn(isPlain ? std::chars_format::fixed : std::chars_format::scientific, number);
}

std::string valueOf(const Row &row, const uint8_t *at) {
    std::string digits;
    uint64_t number = 0;
    switch (row.type) {
    case Type::i16:
        return std::to_string(load<int16_t>(at));
    case Type::i32:
        return std::to_string(load<int32_t>(at));
    case Type::f32:
    case Type::f64:
        return realText(row, at);
    case Type::text:
        return escaped(textAt(row, at));
    case Type::bytes:
        for (uint32_t i = 0; i < row.size; ++i) {
            digits += "0123456789abcdef"[at[i] / 16];
            digits += "0123456789abcdef"[at[i] % 16];
        }
        return digits;
    case Type::u8:
    case Type::u16:
    case Type::u32:
    case Type::u64:
    case Type::time:
    case Type::domain:
        memcpy(&number, at, row.size);
        return std::to_string(number);
    case Type::none:
    case Type::record:
        break;
    }
    return ""; // shows no field
}

static std::string parseReal(const Row &row, const std::string &text, double &value) {
    char *rest = nullptr;
    errno = 0;
    value = strtod(text.c_str(), &rest); // infinite if it is too large
    if (text.empty() || isspace(static_cast<unsigned char>(text[0])) != 0 || *rest != '\0') {
        return "not a number";
    }
    if (value == 0 && errno == ERANGE) {
        return "too small for a double";
    }
    return std::fabs(value) > *row.bound ? "not within " + boundsOf(row) : "";
}

static std::string parseWhole(const Row &row, const std::string &text, uint64_t &value) {
    const bool isNegative = text.starts_with('-');
    const std::string digits = text.substr(isNegative ? 1 : 0);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) {
        return "not a whole number";
    }
    value = strtoull(digits.c_str(), nullptr, 10); // the largest if it is too large
    return value > largestOf(row) || (isNegative && value != 0) ? "not within " + boundsOf(row)
                                                                : "";
}

std::string parseValue(const Row &row, const std::string &text, std::string &bytes) {
    double real = 0;
    uint64_t whole = 0; // its low bytes are the field's, and they come first
    std::string error = isReal(row) ? parseReal(row, text, real) : parseWhole(row, text, whole);
    const void *value = isReal(row) ? static_cast<const void *>(&real) : &whole;
    bytes.assign(static_cast<const char *>(value), row.size);
    return error;
}
