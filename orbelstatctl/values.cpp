#include "orbelstatctl/values.h"

#include "rows/print_rows.h"

#include <cctype>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static std::string_view typeName(Type type) {
    switch (type) {
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
    default:
        return "char";
    }
}

void putType(TextBuffer &out, const Row &row) {
    out.put(typeName(row.type));
    if (row.type == Type::text) {
        out.put('[');
        out.putUnsigned(row.size);
        out.put(']');
    }
}

// Takes trailing zeros out of a number such as "1.500e+09". Returns its new length.
static int cutZeros(char *text) {
    const char *exponent = strchr(text, 'e');
    char *end = text + (exponent - text);
    while (end[-1] == '0') {
        --end;
    }
    if (end[-1] == '.') {
        --end;
    }
    memmove(end, exponent, strlen(exponent) + 1);
    return static_cast<int>(strlen(text));
}

// Puts a number as the shortest text that reads back to it, plain or with an exponent: `enough`
// digits do for every number that can be written with so many and is not below `normal`, `maximum`
// for all.
template <typename Number>
static void putShortest(TextBuffer &out, Number value, int enough, int maximum, Number normal,
                        Number (*read)(const char *, char **)) {
    const auto number = static_cast<double>(value);
    char plain[32];
    char alternative[32];
    int digits = std::fabs(value) < normal ? 1 : enough;
    int length = snprintf(plain, sizeof plain, "%.*g", digits, number);
    while (digits < maximum && read(plain, nullptr) != value) {
        length = snprintf(plain, sizeof plain, "%.*g", ++digits, number);
    }
    const double magnitude = std::fabs(number);
    int alternativeLength = length;
    if (strchr(plain, 'e') == nullptr) {
        if (length > 5) { // no number with an exponent is shorter, and inf and nan are left out
            snprintf(alternative, sizeof alternative, "%.*e", digits - 1, number);
            alternativeLength = cutZeros(alternative);
        }
    } else if (magnitude > 1 && magnitude < 1e20) { // a whole number, then
        alternativeLength = snprintf(alternative, sizeof alternative, "%.0f", number);
    }
    out.put(alternativeLength < length
                ? std::string_view(alternative, static_cast<size_t>(alternativeLength))
                : std::string_view(plain, static_cast<size_t>(length)));
}

static std::string_view textOf(const Field &field, const uint8_t *section) {
    const auto *text = reinterpret_cast<const char *>(section + field.offset);
    return {text, strnlen(text, field.row->size)};
}

void putValue(TextBuffer &out, const Field &field, const uint8_t *section) {
    const uint8_t *at = section + field.offset;
    switch (field.row->type) {
    case Type::f32:
        putShortest(out, load<float>(at), FLT_DIG, FLT_DECIMAL_DIG, FLT_MIN, strtof);
        break;
    case Type::f64:
        putShortest(out, load<double>(at), DBL_DIG, DBL_DECIMAL_DIG, DBL_MIN, strtod);
        break;
    case Type::text:
        out.put(textOf(field, section));
        break;
    default:
        putWhole(out, field.row->type, at);
    }
}

static void putJsonString(TextBuffer &out, std::string_view text) {
    out.put('"');
    for (const char character : text) {
        const auto byte = static_cast<uint8_t>(character);
        if (character == '"' || character == '\\') {
            out.put('\\');
            out.put(character);
        } else if (byte >= ' ' && byte <= '~') {
            out.put(character);
        } else {
            char escape[8];
            snprintf(escape, sizeof escape, "\\u%04x", byte);
            out.put(escape);
        }
    }
    out.put('"');
}

static bool isFinite(const Field &field, const uint8_t *section) {
    const uint8_t *at = section + field.offset;
    return (field.row->type != Type::f32 || std::isfinite(load<float>(at))) &&
           (field.row->type != Type::f64 || std::isfinite(load<double>(at)));
}

void putJsonValue(TextBuffer &out, const Field &field, const uint8_t *section) {
    if (field.row->type == Type::text) {
        putJsonString(out, textOf(field, section));
    } else if (isFinite(field, section)) {
        putValue(out, field, section);
    } else {
        out.put("null");
    }
}

static constexpr char outOfBounds[] = "not within the bounds that list shows";

static const char *parseDouble(const char *text, double max, double &value) {
    char *rest = nullptr;
    value = strtod(text, &rest); // infinite if it overflows
    if (rest == text || *rest != '\0' || isspace(static_cast<unsigned char>(*text)) != 0) {
        return "not a number";
    }
    return value < -max || value > max ? outOfBounds : nullptr;
}

static const char *parseWhole(const char *text, uint32_t max, uint64_t &value) {
    const bool isNegative = *text == '-';
    const char *digits = text + (isNegative ? 1 : 0);
    if (*digits == '\0' || digits[strspn(digits, "0123456789")] != '\0') {
        return "not a whole number";
    }
    value = strtoull(digits, nullptr, 10); // the largest there is if it overflows
    return value > (isNegative ? 0 : max) ? outOfBounds : nullptr;
}

const char *parseValue(const Row &row, const char *text, uint8_t (&bytes)[maxValueSize]) {
    double real = 0;
    uint64_t whole = 0;
    static_assert(sizeof real == maxValueSize && sizeof whole == maxValueSize);
    const bool isReal = row.type == Type::f64;
    const char *wrong =
        isReal ? parseDouble(text, *row.bound, real) : parseWhole(text, maxWritable(row), whole);
    // Of a whole number the low bytes are the field's, and they come first.
    memcpy(bytes, isReal ? static_cast<void *>(&real) : &whole, sizeof bytes);
    return wrong;
}
