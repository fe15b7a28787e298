// Values as text and back: what `get` prints and `set` takes.
#pragma once

#include "orbelstatctl/tree.h"

#include <string>

// The type as `list` has it: u8, i16, double, time32, char[64], byte[256] ...
std::string typeNameOf(const Node &field);

// Between which numbers a field may be written, "0..100000": the wizard's bound, or what its bytes
// hold if that is less; of a double from minus the bound. It must be one that may be written.
std::string boundsOf(const Row &row);

// A text up to its first NUL.
std::string textAt(const Row &row, const uint8_t *at);

// The value of a field. Whole numbers in decimal, times as seconds since 1970-01-01 UTC; other
// numbers in the fewest digits that read back to the same one, without an exponent from 1e-5 to
// below 1e16; a text up to its first NUL and escaped; bytes as hexadecimal digits.
std::string valueOf(const Row &row, const uint8_t *at);

// Takes the bytes of a field that may be written from a text: digits, with a sign for a negative
// number, or for a double what strtod takes. Returns why the text is refused, or "".
std::string parseValue(const Row &row, const std::string &text, std::string &bytes);
