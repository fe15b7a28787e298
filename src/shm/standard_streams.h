// Standard input, output and error. The platform's library may open descriptors of its own and
// write to shared memory through them: none of them may be taken for standard output.
#pragma once

// Opens those of the descriptors 0, 1 and 2 that are not open on /dev/null, for reading only, so
// that what is printed to them counts as lost. A report goes out in a few large writes, unless a
// person watches it line by line. To be called before anything else; returns whether all are open.
bool openStandardStreams();

// If standard output could just now not be written, remembers why, which errno says, for
// closeStandardOutput. To be called right after text has been handed to it.
void noteLostOutput();

// Closes standard output. Returns whether all that was printed has been written; if not, says why
// on standard error, in one line that begins with `name`.
bool closeStandardOutput(const char *name);
