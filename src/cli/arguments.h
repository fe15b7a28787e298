// The argument vector on its way through the option pass.
#pragma once

#include "upm/upm_block.h"

#include <cstdlib>
#include <cstring>
#include <optional>

inline constexpr long lastPolicy = policyCount - 1;

// The exit status of a run that ends with the option just read; nothing if the pass goes on.
using EarlyExit = std::optional<int>;
inline constexpr EarlyExit keepParsing = std::nullopt;

struct Arguments {
    int count;
    char **words;

    [[nodiscard]] bool has(int position) const {
        return position < count;
    }
    [[nodiscard]] bool is(int position, const char *word) const {
        return has(position) && strcmp(words[position], word) == 0;
    }
    [[nodiscard]] bool isOption(int position) const {
        return words[position][0] == '-';
    }
};

// Converts a base-10 number; false if it stops before the end of the text. An overflow gives the
// nearest long, which no caller's range holds.
inline bool parseLong(const char *text, long &value) {
    char *rest = nullptr;
    value = strtol(text, &rest, 10);
    return *rest == '\0';
}

inline bool isOutOfRange(long value, long max) {
    return value < 0 || value > max;
}
