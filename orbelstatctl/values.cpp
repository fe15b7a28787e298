#include "orbelstatctl/values.h"

#include <charconv>
#include <cmath>

bool isFloat(const Row &row) {
    return row.type == Type::f32 || row.type == Type::f64;
}

// Returns the largest integer that `set` accepts.
static uint32_t maxOf(const Row &row) {
    return std::min(*row.bound, typeInfo(row.type).max);
}

std::string formatBounds(const Row &row) {
    const std::string max = std::to_string(isFloat(row) ? *row.bound : maxOf(row));
    return (isFloat(row) ? '-' + max : "0") + ".." + max;
}

std::string formatFloat(double number) {
    if (std::isnan(number)) {
        return std::signbit(number) ? "-nan" : "nan"; // C++ libraries differ
    }
    const double magnitude = std::fabs(number);
    const bool isPlain = number == 0 || (magnitude >= 1e-5 && magnitude < 1e16);
    char text[32];
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    return {text, std::to_chars(text, std::end(text), number, format).ptr};
}

// Returns the number with the fewest digits that read back to a float: 0.1 for 0.1F.
static double toDouble(float number) {
    char text[32] = {};
    return parseFloat({text, std::to_chars(text, std::end(text), number).ptr}).value;
}

std::string formatValue(const Row &row, std::string_view bytes) {
    const auto *at = reinterpret_cast<const uint8_t *>(bytes.data());
    std::string digits;
    uint64_t number = 0;
    switch (row.type) {
    case Type::i16:
        return std::to_string(load<int16_t>(at));
    case Type::i32:
        return std::to_string(load<int32_t>(at));
    case Type::f32:
        return formatFloat(toDouble(load<float>(at)));
    case Type::f64:
        return formatFloat(load<double>(at));
    case Type::text:
        return escaped(bytes.substr(0, bytes.find('\0')));
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
    return ""; // not the type of a field
}

Result<double> parseFloat(std::string_view text) {
    double number = 0;
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (rest != end || error == std::errc::invalid_argument) {
        return {0, "not a number"};
    }
    return {number, error == std::errc() ? "" : "out of range for a double"};
}

bool isInteger(std::string_view text) {
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

static Result<std::string> parseInteger(const Row &row, std::string_view text, Bounds bounds) {
    int64_t value = INT64_MAX; // stays if the text is out of range
    std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isSigned = row.type == Type::i16 || row.type == Type::i32;
    const int64_t typeMax = typeInfo(row.type).max;
    const int64_t max = bounds == Bounds::check ? maxOf(row) : typeMax;
    const int64_t min = bounds == Bounds::ignore && isSigned ? -typeMax - 1 : 0;
    // Little-endian: the field takes the low bytes, which come first.
    return {{reinterpret_cast<const char *>(&value), row.size},
            !isInteger(text)             ? "not an integer"
            : value < min || value > max ? "not within " + formatBounds(row)
                                         : ""};
}

Result<std::string> parseValue(const Row &row, std::string_view text, Bounds bounds) {
    if (!isFloat(row)) {
        return parseInteger(row, text, bounds);
    }
    const auto [number, error] = parseFloat(text);
    const bool isOutside = bounds == Bounds::check && std::fabs(number) > *row.bound;
    return {{reinterpret_cast<const char *>(&number), row.size},
            error.empty() && isOutside ? "not within " + formatBounds(row) : error};
}
