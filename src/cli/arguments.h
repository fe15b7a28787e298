// The command line's arguments, and helpers to parse them.
#pragma once

#include "upm/upm_block.h"

#include <cstdlib>
#include <cstring>
#include <optional>

inline constexpr long lastPolicy = policyCount - 1;

// The exit status if the option just parsed ends the program; empty to continue parsing.
using EarlyExit = std::optional<int>;
inline constexpr EarlyExit keepParsing = std::nullopt;

// The arguments of main. Position 0 is the program's name.
struct Arguments {
    int count;
    char **words;

    [[nodiscard]] bool has(int position) const {
        return position < count;
    }
    // Returns whether the argument exists and is exactly this word.
    [[nodiscard]] bool is(int position, const char *word) const {
        return has(position) && strcmp(words[position], word) == 0;
    }
    // Returns whether the argument, which must exist, begins with "-".
    [[nodiscard]] bool isOption(int position) const {
        return words[position][0] == '-';
    }
};

// Parses a decimal number; empty text gives 0. Returns false if other text follows. On overflow,
// `value` is LONG_MIN or LONG_MAX, which every caller's range check rejects.
inline bool parseLong(const char *text, long &value) {
    char *rest = nullptr;
    value = strtol(text, &rest, 10);
    return *rest == '\0';
}

// Returns whether the value is not within 0..max.
inline bool isOutOfRange(long value, long max) {
    return value < 0 || value > max;
}
