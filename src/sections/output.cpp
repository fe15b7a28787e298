#include "sections/output.h"

#include <charconv>
#include <cmath>
#include <cstdio>

void Output::flush() {
    fwrite_unlocked(text, 1, used, stdout);
    flushed += used;
    used = 0;
}

void Output::putLong(const char *characters, size_t count) {
    flush();
    fwrite_unlocked(characters, 1, count, stdout);
    flushed += count;
}

void Output::putLine(const char *string) {
    put(string);
    put('\n');
}

void Output::putRun(char character, int count) {
    char *at = room();
    for (; count > 0; --count) {
        *at++ = character;
    }
    used = static_cast<size_t>(at - text);
}

void Output::putUnsigned(uint64_t value, int width, char padding) {
    char digits[20];
    const char *end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    putRun(padding, width - static_cast<int>(end - digits));
    put(digits, static_cast<size_t>(end - digits));
}

void Output::putSigned(int64_t value) {
    if (value < 0) {
        put('-');
    }
    putUnsigned(value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value));
}

void Output::putHex(uint64_t value, int digits) {
    static constexpr char numerals[] = "0123456789abcdef";
    while (digits < 16 && value >> (4 * digits) != 0) {
        ++digits;
    }
    char *at = room();
    *at++ = '0';
    *at++ = 'x';
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        *at++ = numerals[value >> shift & 0xF];
    }
    used = static_cast<size_t>(at - text);
}

void Output::putFixed(float value, int places) {
    static constexpr uint64_t powersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
    static constexpr double tooLarge = 1e15;
    // A float has 24 significant bits and the power at most 14, so the product is exact, and so is
    // what truncation leaves of it: rounding half to even here is what printf does.
    const uint64_t power = powersOfTen[places];
    const double scaled = std::fabs(static_cast<double>(value)) * static_cast<double>(power);
    if (!(scaled < tooLarge)) { // nor is NaN
        char number[64];        // the largest float has 39 digits before the point
        const int count =
            snprintf(number, sizeof number, "%.*f", places, static_cast<double>(value));
        put(number, static_cast<size_t>(count));
        return;
    }
    auto units = static_cast<uint64_t>(scaled);
    const double rest = scaled - static_cast<double>(units);
    if (rest > 0.5 || (rest == 0.5 && units % 2 != 0)) {
        ++units;
    }
    if (std::signbit(value)) {
        put('-');
    }
    putUnsigned(units / power);
    if (places > 0) {
        put('.');
        putUnsigned(units % power, places, '0');
    }
}

void Output::putGeneral(double value) {
    char number[32];
    const int count = snprintf(number, sizeof number, "%g", value);
    put(number, static_cast<size_t>(count));
}
