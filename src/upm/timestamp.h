// The line that every UPM report begins with.
#pragma once

#include <cstdint>

// Prints the UPM timestamp, milliseconds since 1970-01-01 00:00:00 UTC, as local date and time with
// milliseconds. A time that the system cannot convert, or a year of more than seven characters,
// prints a line that says so.
void printUpmTimestamp(uint64_t milliseconds);
