#include "orbelstatctl/values.h"

#include "orbelstatctl/messages.h"
#include "rows/print_rows.h"

#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>

std::string typeNameOf(const Node &field) {
    if (field.isPolicyName()) {
        return "text";
    }
    static const std::map<Type, std::string> names = {
        {Type::i16, "i16"},     {Type::i32, "i32"},   {Type::f32, "float"}, {Type::f64, "double"},
        {Type::time, "time32"}, {Type::text, "char"}, {Type::bytes, "byte"}};
    const auto name = names.find(field.row->type);
    const std::string size = std::to_string(field.row->size);
    return name == names.end()      ? 'u' + std::to_string(8 * field.row->size)
           : isRun(field.row->type) ? name->second + '[' + size + ']'
                                    : name->second;
}

static bool isReal(const Row &row) {
    return row.type == Type::f32 || row.type == Type::f64;
}

// The largest whole number that a field may be set to.
static uint32_t maxOf(const Row &row) {
    return std::min(*row.bound, maxOf(row.type));
}

std::string boundsOf(const Row &row) {
    const std::string max = std::to_string(isReal(row) ? *row.bound : maxOf(row));
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
    default:
        memcpy(&number, at, row.size);
        return std::to_string(number);
    }
}

static double parseReal(const std::string &text, const std::string &shown) {
    char *rest = nullptr;
    errno = 0;
    const double value = strtod(text.c_str(), &rest); // infinite if it is too large
    const bool isNumber = !text.empty() && isspace(static_cast<unsigned char>(text[0])) == 0;
    refuseIf(!isNumber || *rest != '\0', shown + ": not a number");
    refuseIf(value == 0 && errno == ERANGE, shown + ": too small for a double");
    return value;
}

static uint64_t parseWhole(const std::string &text, const std::string &shown) {
    const size_t sign = text.starts_with('-') ? 1 : 0;
    const bool isNumber = text.find_first_not_of("0123456789", sign) == std::string::npos;
    refuseIf(!isNumber || text.size() == sign, shown + ": not a whole number");
    const uint64_t value = strtoull(text.c_str() + sign, nullptr, 10); // the largest if too large
    return sign == 1 && value != 0 ? UINT64_MAX : value;
}

std::string bytesOf(const Row &row, const std::string &text, const std::string &shown) {
    const double real = isReal(row) ? parseReal(text, shown) : 0;
    const uint64_t whole = isReal(row) ? 0 : parseWhole(text, shown);
    refuseIf(std::fabs(real) > *row.bound || whole > maxOf(row),
             shown + ": not within " + boundsOf(row));
    // Of a whole number the low bytes are the field's, and they come first.
    const void *bytes = isReal(row) ? static_cast<const void *>(&real) : &whole;
    return {static_cast<const char *>(bytes), row.size};
}
