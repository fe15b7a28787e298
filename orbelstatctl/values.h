// Formats values as `get` prints them, and parses values that `set` accepts.
#pragma once

#include "orbelstatctl/messages.h"
#include "orbelstatctl/tree.h"

// Returns the range that `set` accepts for a writable field, such as "0..100000". It ends at the
// smaller of the bound and the type's maximum. A double's range begins at minus the bound.
std::string formatBounds(const Row &row);

// Formats a number with the fewest digits that read back to it, without an exponent from 1e-5 to
// below 1e16.
std::string formatFloat(double number);

// Formats the value that a field has with these bytes. Integers are decimal, and a time is in
// seconds since 1970-01-01 UTC. Text ends at its first NUL and is escaped; bytes are hexadecimal
// digits.
std::string formatValue(const Row &row, std::string_view bytes);

// Whether a field is a float or a double.
bool isFloat(const Row &row);

// Parses a decimal number that is exactly the whole text. "+1", " 1" and "0x10" are not numbers.
Result<double> parseFloat(std::string_view text);

// Whether a text is an integer of any size: decimal digits, after a "-" for a negative one.
bool isInteger(std::string_view text);

enum class Bounds { check, ignore };

// Parses a value for a writable field and returns its bytes. An integer must fit the field's type
// and, like a double, be within the bounds unless they are ignored. A NaN is within all bounds.
Result<std::string> parseValue(const Row &row, std::string_view text, Bounds bounds);
