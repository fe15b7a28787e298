// Standard input, output and error. The platform's library may open descriptors of its own and
// write to shared memory through them: such a descriptor must never get number 1 or 2.
#pragma once

// If descriptor 0, 1 or 2 is closed, opens /dev/null on it, read-only so that output to it fails
// and is reported as lost. Gives standard output a large buffer unless it is a terminal. Must be
// called before anything else. Returns false, after a message on standard error that begins with
// `program`, if standard output or error is closed and /dev/null cannot be opened; nothing may be
// read or written then.
bool openStandardStreams(const char *program);

// Remembers for closeStandardOutput why text could not be written to standard output. Must be
// called right after the output, while errno is still set; does nothing if the output was
// successful. If errno is 0, the reason is EIO.
void recordOutputError();

// Flushes standard output and records an error.
void flushStandardOutput();

// If output was lost because its reader is gone (EPIPE), forgets that and the output: watch ends
// normally then.
void forgetClosedReader();

// Closes standard output. Returns whether everything that was printed has been written; if not,
// prints one line with the reason on standard error, which begins with `program`.
bool closeStandardOutput(const char *program);
