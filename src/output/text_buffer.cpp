#include "output/text_buffer.h"

#include "output/standard_streams.h"

#include <charconv>
#include <cmath>
#include <cstdio>

void TextBuffer::flush() {
    fwrite_unlocked(text, 1, used, stdout);
    recordOutputError();
    flushed += used;
    used = 0;
}

void TextBuffer::putUnbuffered(std::string_view characters) {
    flush();
    fwrite_unlocked(characters.data(), 1, characters.size(), stdout);
    recordOutputError();
    flushed += characters.size();
}

void TextBuffer::putRepeated(char character, int count) {
    if (count > 0) {
        memset(reserve(), character, static_cast<size_t>(count));
        used += static_cast<size_t>(count);
    }
}

void TextBuffer::putUnsigned(uint64_t value) {
    used = static_cast<size_t>(std::to_chars(reserve(), std::end(text), value).ptr - text);
}

void TextBuffer::putPadded(uint64_t value, int width, char padding) {
    char digits[20];
    const char *end = std::to_chars(digits, std::end(digits), value).ptr;
    putRepeated(padding, width - static_cast<int>(end - digits));
    put({digits, end});
}

void TextBuffer::putSigned(int32_t value) {
    used = static_cast<size_t>(std::to_chars(reserve(), std::end(text), value).ptr - text);
}

static constexpr char hexDigits[] = "0123456789abcdef";

void TextBuffer::putHexByte(uint8_t value) {
    put("0x");
    put(hexDigits[value / 16]);
    put(hexDigits[value % 16]);
}

void TextBuffer::putHex(uint16_t value, int minDigits) {
    put("0x");
    for (int digit = 3; digit >= 0; --digit) {
        const int rest = value >> (4 * digit);
        if (digit < minDigits || rest != 0) {
            put(hexDigits[rest % 16]);
        }
    }
}

void TextBuffer::putFixed(float value, int decimals) {
    static constexpr uint64_t powersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
    static constexpr double tooLarge = 1e15;
    // A float has 24 significant bits and the power of ten at most 14, so a double holds the
    // product exactly, and its fraction too. Rounding half to even, as printf does, is therefore
    // exact.
    const uint64_t power = powersOfTen[decimals];
    const double scaled = std::fabs(static_cast<double>(value)) * static_cast<double>(power);
    if (!(scaled < tooLarge)) { // also true for NaN
        char number[64];        // the largest float has 39 digits before the decimal point
        const int count =
            snprintf(number, sizeof number, "%.*f", decimals, static_cast<double>(value));
        put({number, static_cast<size_t>(count)});
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
    put('.');
    putPadded(units % power, decimals, '0');
}

void TextBuffer::putGeneral(double value) {
    char number[32];
    const int count = snprintf(number, sizeof number, "%g", value);
    put({number, static_cast<size_t>(count)});
}
