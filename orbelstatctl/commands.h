// The commands of orbelstatctl. Each returns the exit status.
#pragma once

#include <span>

enum ExitStatus {
    succeeded = 0,
    failed = 1,  // a read, a write or a comparison, or standard input
    refused = 2, // wrong usage, an unknown path or a value that is not taken; nothing was written
};

// Arguments of a command.
using Words = std::span<char *const>;

// Runs the program. Output that cannot be written is the caller's business.
int runCompanion(int argc, char **argv);

// Prints every field that the path names, or all: path, type, section, offset and, if it may be
// written, its bounds, separated by tabs. Reads no shared memory.
int listFields(Words arguments);

// Prints the value of one field, or lines PATH=VALUE of several.
int getFields(Words arguments);

// Prints one JSON document of what the path names, or of everything; nothing if a section cannot be
// read.
int printJson(Words arguments);

// Checks all assignments PATH=VALUE, of the arguments or of the lines of standard input, then
// writes each field with one write of its own, reads the section again and compares. With --dry-run
// writes nothing. Prints "PATH: OLD -> NEW" for each.
int setFields(Words arguments);

// Saves every section as a file of its own, section-<identifier>, in a directory, which is made if
// it is missing. A file is replaced as a whole or not at all.
int saveSections(Words arguments);
