// Values of fields as text: what get prints, what set takes and what json prints.
#pragma once

#include "orbelstatctl/fields.h"
#include "output/text_buffer.h"

// The type in the terms of `list`: u8, i16, double, time32, char[64] ...
void putType(TextBuffer &out, const Row &row);

// Puts the value that a field has in its section: integers in decimal, times as seconds since
// 1970-01-01 UTC, a floating-point number as the shortest text that reads back to the same one, a
// text up to its first NUL.
void putValue(TextBuffer &out, const Field &field, const uint8_t *section);

// The same as a JSON value: a number that is not finite is null, and a text is a string in which
// every byte stands for the code point of its number.
void putJsonValue(TextBuffer &out, const Field &field, const uint8_t *section);

// Room for the bytes of any field that may be written.
inline constexpr size_t maxValueSize = 8;

// Converts a text to the bytes of a field that may be written: digits, with a sign for a negative
// number, or for a double what strtod takes. Returns null, or what is wrong with the text.
const char *parseValue(const Row &row, const char *text, uint8_t (&bytes)[maxValueSize]);
