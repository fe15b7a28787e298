// The commands of orbelstatctl. Each prints its results on standard output and its complaints on
// standard error, and returns the exit status. A command line that is wrong ends in Stop, before
// anything is read or written. An empty list of paths names everything.
#pragma once

#include "orbelstatctl/messages.h"
#include "orbelstatctl/source.h"

using Words = std::vector<std::string>;

// Runs the program. Output that cannot be written is the caller's business.
int runCompanion(int argc, const char *const *argv);

// Prints a line for each member that the paths name, or with `perElement` for each of its elements:
// path, type, section, offset and, if it may be written, its bounds, separated by tabs. Reads
// nothing.
int listFields(const Words &words, bool perElement, bool onlyWritable);

// Prints "PATH=VALUE" for each field, or the values alone. With `onlyWritable` leaves out what
// setFields would not take back, and says so of those that may be written.
int getFields(Source &source, const Words &words, bool onlyValues, bool onlyWritable);

// Prints one JSON document of what the path names; nothing if a part of it cannot be read.
int printJson(Source &source, const std::string &path);

// Prints a table with a row for each element of an array of records and a column for each field of
// an element; nothing if the section cannot be read. No fields: all that are members themselves.
int printTable(Source &source, const std::string &path, const Words &names);

// Prints the numbers in the text format of Prometheus, with the paths as names.
int printMetrics(Source &source, const Words &words);

// Prints "PATH: OLD -> NEW" for every field whose values differ. `after` is "" for the live memory.
// Returns, as diff does, 0 if none differs, 1 if some do and 2 if something could not be compared.
int compareCaptures(const std::string &before, const std::string &after);

// Watches fields of the live memory: at once and then every `seconds`, `count` times in all or, if
// that is 0, until a signal or a closed pipe ends it. Prints "TIME PATH: OLD -> NEW" for each
// change, or with `isCsv` a row each time. Returns 1 if a read has failed.
int watchFields(const Words &words, double seconds, uint64_t count, bool isCsv);

// Checks all assignments PATH=VALUE, of the arguments or, if "-" is the only one, of the lines of
// standard input. Then prints "PATH: OLD -> NEW" for each field that holds another value, writes
// each with one write, reads again and compares. With `isDryRun` writes nothing.
int setFields(const Words &words, bool isDryRun);

// Saves a capture of the live memory: a new directory with a file for each section, the policies'
// names and what is to be known about them. It is there whole or not at all.
int saveCapture(const std::string &directory);
