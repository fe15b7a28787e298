// Standard input, output and error. The platform's library may open descriptors of its own and
// write to shared memory through them: none of them may be taken for standard output or error.
#pragma once

// Opens those of the descriptors 0, 1 and 2 that are closed on /dev/null, for reading only, so that
// what is printed to them counts as lost. Standard output then goes out in a few large writes,
// unless it is a terminal. To be called before anything else. Returns false if a closed standard
// output or error could not be opened; then nothing may be read or written. The reason goes to
// standard error, if that is open, in one line that begins with `program`.
bool openStandardStreams(const char *program);

// To be called right after text has been handed to standard output. If it could not be written,
// remembers the reason in errno for closeStandardOutput.
void recordOutputError();

// Flushes standard output, and notes what is lost.
void flushStandardOutput();

// Closes standard output. Returns whether all that was printed has been written; if not, says why
// on standard error, in one line that begins with `program`.
bool closeStandardOutput(const char *program);
