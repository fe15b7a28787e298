#include "wizard/prompts.h"

#include "output/standard_streams.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

// Large enough for a label of 40 characters and two bounds of 33 in total.
static constexpr size_t promptSize = 128;

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

static void showPrompt(const char *prompt) {
    fputs(prompt, stdout);
    flushStandardOutput();
}

// The dialogue of all numeric prompts. `malformed` is the message for a line that is not a number.
// `parse` returns the number at the start of a line and sets a pointer to the end of the number.
template <typename Number>
static int promptNumber(const char *prompt, const char *malformed,
                        Number (*parse)(const char *, char **), Number min, Number max,
                        Number &out) {
    char line[64];
    for (;;) {
        showPrompt(prompt);
        if (readInputLine(line, sizeof line) != 0) {
            return -1;
        }
        if (line[0] == '\0') {
            puts("Please enter a number.");
            continue;
        }
        char *rest = line;
        errno = 0;
        const Number value = parse(line, &rest);
        if (errno != 0 || *rest != '\0') {
            puts(malformed);
        } else if (value < min || value > max) {
            puts("Out of range.");
        } else {
            out = value;
            return 0;
        }
    }
}

static uint64_t parseUnsigned(const char *line, char **rest) {
    return strtoul(line, rest, 10); // a negative number wraps: "-1" gives 2^64 - 1
}

static int64_t parseSigned(const char *line, char **rest) {
    return strtol(line, rest, 10);
}

int promptUnsigned(const char *label, uint64_t max, uint32_t &out) {
    char prompt[promptSize];
    uint64_t value = out;
    snprintf(prompt, sizeof prompt, "%s [0..%lu]: ", label, max);
    const int status =
        promptNumber<uint64_t>(prompt, "Invalid unsigned integer.", parseUnsigned, 0, max, value);
    out = static_cast<uint32_t>(value);
    return status;
}

int promptLong(const char *label, int64_t max, int64_t &out) {
    char prompt[promptSize];
    snprintf(prompt, sizeof prompt, "%s [0..%ld]: ", label, max);
    return promptNumber<int64_t>(prompt, "Invalid integer.", parseSigned, 0, max, out);
}

int promptInt(const char *label, int32_t min, int32_t max, int32_t &out) {
    char prompt[promptSize];
    int64_t value = out;
    snprintf(prompt, sizeof prompt, "%s [%d..%d]: ", label, min, max);
    const int status =
        promptNumber<int64_t>(prompt, "Invalid number.", parseSigned, min, max, value);
    out = static_cast<int32_t>(value);
    return status;
}

int promptDouble(const char *label, double min, double max, double &out) {
    char prompt[promptSize];
    snprintf(prompt, sizeof prompt, "%s [%.2f..%.2f]: ", label, min, max);
    return promptNumber(prompt, "Invalid floating value.", strtod, min, max, out);
}

int promptYesNo(const char *question) {
    char line[32];
    char prompt[promptSize];
    snprintf(prompt, sizeof prompt, "%s (default: n) [y/n]: ", question);
    for (;;) {
        showPrompt(prompt);
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
