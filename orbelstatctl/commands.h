// The commands of orbelstatctl. Each returns the exit status. A command line that is wrong ends in
// Stop, before anything is read or written. An empty list of paths names everything.
#pragma once

#include "orbelstatctl/messages.h"
#include "orbelstatctl/source.h"

using Words = std::vector<std::string>;

// Runs the program. Output that cannot be written is the caller's business.
int runCompanion(int argc, const char *const *argv);

// Prints a line for each member, or for each of its elements: path, type, section, offset and, if
// it may be written, its bounds, separated by tabs. Reads nothing.
int listFields(const Words &words, bool perElement, bool onlyWritable);

// Prints "PATH=VALUE" for each field, or the values alone. With `onlyWritable` leaves out what
// setFields would not take back, and says so of those that may be written.
int getFields(Source &source, const Words &words, bool onlyValues, bool onlyWritable);

// Prints one JSON document of what the path names; nothing if a part of it cannot be read.
int printJson(Source &source, const std::string &path);

// Prints a table, a row for each element of an array of records; nothing if it cannot be read. The
// columns are the fields that are named, or all members that are no arrays or groups.
int printTable(Source &source, const std::string &path, const Words &names);

// Prints the numbers in the text format of Prometheus, with the paths as names.
int printMetrics(Source &source, const Words &words);

// Prints "PATH: OLD -> NEW" for every field whose values differ. `after` is "" for the live memory.
// Returns, as diff does, 0 if none differs, 1 if some do and 2 if something could not be compared.
int compareCaptures(const std::string &before, const std::string &after);

// Looks at once and then every `seconds`, `count` times or, if that is 0, until a signal or a
// closed pipe ends it. Prints "TIME PATH: OLD -> NEW" for each change, or a row for each look.
int watchFields(const Words &words, double seconds, uint64_t count, bool isCsv);

// Checks all assignments PATH=VALUE, which "-" takes from standard input. Then prints "PATH: OLD ->
// NEW" for each field that holds another value, writes it with one write, reads again and compares.
int setFields(const Words &words, bool isDryRun);

// Saves a capture of the live memory: a new directory, there whole or not at all.
int saveCapture(const std::string &directory);
