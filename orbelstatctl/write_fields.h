// The code that set and undo share: lines of input, and the checked write of fields.
#pragma once

#include "orbelstatctl/source.h"

// An argument, or a line of input that is neither blank nor a comment.
struct InputLine {
    size_t number;    // from 1; 0 for an argument
    std::string text; // without its newline and a carriage return before it
    bool isComplete;  // whether it ends in a newline; if not, the input may be truncated
};

// Returns "line 3: TEXT"; just TEXT for an argument.
inline std::string description(const InputLine &line) {
    return (line.number != 0 ? "line " + std::to_string(line.number) + ": " : "") + line.text;
}

// Returns the lines of a file, or of standard input for "-", without blank lines and those whose
// first character after blanks is "#". Throws a failure if the file cannot be read.
std::vector<InputLine> readLines(const std::string &path);

// A writable field and the bytes that it is to hold.
struct Assignment {
    Field field;
    std::string bytes;
    // writeFields sets the rest.
    std::string before = {};  // the bytes before all writes; if equal, nothing is written
    bool isAttempted = false; // whether the library was called to write them
    int error = 0;            // the result of that call
};

// Prints "PATH: OLD -> NEW" for each field that does not hold its bytes yet. Unless `isDryRun`
// holds or standard output fails, then writes these fields one at a time, in this order, until a
// write fails. Finally reads all fields back and prints an error for each one that does not hold
// its bytes. `source` is the live memory. A failed read before the writes prevents them.
ExitStatus writeFields(std::vector<Assignment> assignments, Source &source, bool isDryRun);
