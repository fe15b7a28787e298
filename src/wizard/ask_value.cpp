#include "wizard/ask_value.h"

#include "output/standard_streams.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

int readInputLine(char *buffer, size_t capacity) {
    if (isatty(fileno(stdin)) == 0) {
        return -1;
    }
    char *line = nullptr;
    size_t allocated = 0;
    const ssize_t length = getdelim(&line, &allocated, '\n', stdin);
    if (length > 0) {
        const auto read = static_cast<size_t>(length);
        const size_t kept = std::min(line[read - 1] == '\n' ? read - 1 : read, capacity - 1);
        memcpy(buffer, line, kept);
        buffer[kept] = '\0';
    }
    free(line);
    return length > 0 ? 0 : -1;
}

// The dialogue that the numeric prompts share. `convert` takes the line and where to leave the end
// of what it converted, and returns whether the value is within its bounds.
template <typename PrintPrompt, typename Convert>
static int askForNumber(const char *malformed, PrintPrompt printPrompt, Convert convert) {
    char line[64];
    for (;;) {
        printPrompt();
        flushStandardOutput();
        if (readInputLine(line, sizeof line) != 0) {
            return -1;
        }
        if (line[0] == '\0') {
            puts("Please enter a number.");
            continue;
        }
        char *rest = line;
        errno = 0;
        const bool isInRange = convert(line, &rest);
        if (errno != 0 || *rest != '\0') {
            puts(malformed);
        } else if (!isInRange) {
            puts("Out of range.");
        } else {
            return 0;
        }
    }
}

int promptUnsigned(const char *label, uint64_t max, uint32_t &out) {
    uint64_t value = 0;
    const int status = askForNumber(
        "Invalid unsigned integer.", [&] { printf("%s [0..%lu]: ", label, max); },
        [&](const char *line, char **rest) {
            value = strtoul(line, rest, 10); // a minus sign negates modulo 2^64
            return value <= max;
        });
    if (status == 0) {
        out = static_cast<uint32_t>(value);
    }
    return status;
}

static int askForLong(const char *malformed, const char *label, int64_t min, int64_t max,
                      int64_t &out) {
    int64_t value = 0;
    const int status = askForNumber(
        malformed, [&] { printf("%s [%ld..%ld]: ", label, min, max); },
        [&](const char *line, char **rest) {
            value = strtol(line, rest, 10);
            return min <= value && value <= max;
        });
    if (status == 0) {
        out = value;
    }
    return status;
}

int promptLong(const char *label, int64_t max, int64_t &out) {
    return askForLong("Invalid integer.", label, 0, max, out);
}

int promptInt(const char *label, int32_t min, int32_t max, int32_t &out) {
    int64_t value = out;
    const int status = askForLong("Invalid number.", label, min, max, value);
    out = static_cast<int32_t>(value);
    return status;
}

int promptDouble(const char *label, double min, double max, double &out) {
    double value = 0;
    const int status = askForNumber(
        "Invalid floating value.", [&] { printf("%s [%.2f..%.2f]: ", label, min, max); },
        [&](const char *line, char **rest) {
            value = strtod(line, rest);
            return !(value < min) && !(value > max);
        });
    if (status == 0) {
        out = value;
    }
    return status;
}

int promptYesNo(const char *question) {
    char line[32];
    for (;;) {
        printf("%s (default: n) [y/n]: ", question);
        flushStandardOutput();
        if (readInputLine(line, sizeof line) != 0) {
            return 0;
        }
        switch (line[0]) {
        case 'y':
        case 'Y':
            return 1;
        case 'n':
        case 'N':
        case '\0':
            return 0;
        default:
            puts("Please answer y or n.");
        }
    }
}
