#include "companion/values.h"

#include "sections/rows/print_rows.h"
#include "upm/writable_fields.h"

#include <cctype>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

static std::string_view typeName(Kind type) {
    switch (type) {
    case Kind::u8:
        return "u8";
    case Kind::u16:
    case Kind::domain:
        return "u16";
    case Kind::u32:
        return "u32";
    case Kind::u64:
        return "u64";
    case Kind::i16:
        return "i16";
    case Kind::i32:
        return "i32";
    case Kind::f32:
        return "float";
    case Kind::f64:
        return "double";
    case Kind::time:
        return "time32";
    default:
        return "char";
    }
}

void putType(TextBuffer &out, const Field &field) {
    out.put(typeName(field.type));
    if (field.type == Kind::text) {
        out.put('[');
        out.putUnsigned(static_cast<uint32_t>(field.size));
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
// digits do for every number that can be written with so many and is not below `normal`, `most` for
// all.
template <typename Number>
static void putShortest(TextBuffer &out, Number value, int enough, int most, Number normal,
                        Number (*read)(const char *, char **)) {
    const auto number = static_cast<double>(value);
    char plain[32];
    char alternative[32];
    int digits = std::fabs(value) < normal ? 1 : enough;
    int length = snprintf(plain, sizeof plain, "%.*g", digits, number);
    while (digits < most && read(plain, nullptr) != value) {
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
    return {text, strnlen(text, static_cast<size_t>(field.size))};
}

void putValue(TextBuffer &out, const Field &field, const uint8_t *section) {
    const uint8_t *at = section + field.offset;
    switch (field.type) {
    case Kind::domain:
        putInteger(out, Kind::u16, at);
        break;
    case Kind::time:
        putInteger(out, Kind::u32, at);
        break;
    case Kind::i16:
        out.putSigned(load<int16_t>(at));
        break;
    case Kind::f32:
        putShortest(out, load<float>(at), FLT_DIG, FLT_DECIMAL_DIG, FLT_MIN, strtof);
        break;
    case Kind::f64:
        putShortest(out, load<double>(at), DBL_DIG, DBL_DECIMAL_DIG, DBL_MIN, strtod);
        break;
    case Kind::text:
        out.put(textOf(field, section));
        break;
    default:
        putInteger(out, field.type, at);
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
    return (field.type != Kind::f32 || std::isfinite(load<float>(at))) &&
           (field.type != Kind::f64 || std::isfinite(load<double>(at)));
}

void putJsonValue(TextBuffer &out, const Field &field, const uint8_t *section) {
    if (field.type == Kind::text) {
        putJsonString(out, textOf(field, section));
    } else if (isFinite(field, section)) {
        putValue(out, field, section);
    } else {
        out.put("null");
    }
}

static constexpr char outOfBounds[] = "not within the bounds that list shows";

static const char *parseDouble(const char *text, double &value) {
    char *rest = nullptr;
    value = strtod(text, &rest); // infinite if it overflows
    if (rest == text || *rest != '\0' || isspace(static_cast<unsigned char>(*text)) != 0) {
        return "not a number";
    }
    return value < -maxDouble || value > maxDouble ? outOfBounds : nullptr;
}

static const char *parseInteger(const char *text, uint32_t max, uint64_t &value) {
    const bool isNegative = *text == '-';
    const char *digits = text + (isNegative ? 1 : 0);
    if (*digits == '\0' || digits[strspn(digits, "0123456789")] != '\0') {
        return "not a whole number";
    }
    value = strtoull(digits, nullptr, 10); // the greatest there is if it overflows
    return value > (isNegative ? 0 : max) ? outOfBounds : nullptr;
}

const char *parseValue(const Field &field, uint32_t max, const char *text,
                       uint8_t (&bytes)[maxValueSize]) {
    double real = 0;
    uint64_t whole = 0;
    static_assert(sizeof real == maxValueSize && sizeof whole == maxValueSize);
    const bool isReal = field.type == Kind::f64;
    const char *wrong = isReal ? parseDouble(text, real) : parseInteger(text, max, whole);
    // Of an integer the low bytes are the field's, and they come first.
    memcpy(bytes, isReal ? static_cast<void *>(&real) : &whole, sizeof bytes);
    return wrong;
}
