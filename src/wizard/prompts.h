// The console prompts of the wizard: each asks a question, reads one line from standard input and
// asks again until the answer is acceptable or input fails. They write no shared memory.
//
// A numeric prompt returns 0 once a value is accepted and stored in `out`. It returns -1, with
// `out` untouched, when input fails: standard input is not a terminal, has ended or cannot be read.
// Only the first 63 characters of a line count, for the yes/no prompt 31; it is taken as C text.
#pragma once

#include <cstddef>
#include <cstdint>

// Reads one line into `buffer`, without its line end, cut to `capacity` - 1 characters and
// terminated with NUL. Returns 0, or -1 on failure.
int readInputLine(char *buffer, size_t capacity);

// A decimal number from 0 to `max`, which is at most 4294967295.
int promptUnsigned(const char *label, uint64_t max, uint32_t &out);

// A decimal number from 0 to `max`, read as a signed one, with a message of its own.
int promptLong(const char *label, int64_t max, int64_t &out);

// A decimal number from `min` to `max`.
int promptInt(const char *label, int32_t min, int32_t max, int32_t &out);

// A floating-point number that is neither below `min` nor above `max`, so NaN is one.
int promptDouble(const char *label, double min, double max, double &out);

// Returns 1 for yes and 0 for no, for an empty line and for failed input.
int promptYesNo(const char *question);
