// The prompts of the wizard. Each prints a question, reads one line from standard input and asks
// again until the answer is acceptable or input fails.
//
// The numeric prompts print "LABEL [MIN..MAX]: ". They return 0 after storing an accepted value in
// `out`, or -1, leaving `out` unchanged, if input fails: standard input is not a terminal, has
// ended or cannot be read. Only the first 63 characters of a line are used, 31 by promptYesNo, and
// anything after a NUL byte is ignored.
#pragma once

#include <cstddef>
#include <cstdint>

// Reads one line into `buffer`, without its newline, truncated to `capacity` - 1 characters and
// terminated with NUL. Returns 0, or -1 if input fails.
int readInputLine(char *buffer, size_t capacity);

// Asks for an integer from 0 to `max`, which must not be above 4294967295.
int promptUnsigned(const char *label, uint64_t max, uint32_t &out);

// Like promptUnsigned, but parses a signed number and has a different error message.
int promptLong(const char *label, int64_t max, int64_t &out);

// Asks for an integer from `min` to `max`.
int promptInt(const char *label, int32_t min, int32_t max, int32_t &out);

// Asks for a floating-point number from `min` to `max`. Also accepts NaN, which is neither below
// `min` nor above `max`.
int promptDouble(const char *label, double min, double max, double &out);

// Asks a question. Returns 1 for yes and 0 for no, for an empty line, and if input fails.
int promptYesNo(const char *question);
