// The first line of every UPM report.
#pragma once

#include <cstdint>

// Prints the UPM timestamp, milliseconds since 1970-01-01 00:00:00 UTC, as local date and time with
// milliseconds. If the system cannot convert it, or the year has more than seven characters, prints
// a line with an error instead.
void printUpmTimestamp(uint64_t milliseconds);
