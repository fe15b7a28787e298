#include "output/standard_streams.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdio_ext.h>
#include <unistd.h>

// The errno of the first write to standard output that failed; 0 if none has.
static int outputErrno = 0;

// If the descriptor is closed, opens /dev/null on it, read-only. Returns whether it is open now.
static bool openNullIfClosed(int descriptor) {
    if (fcntl(descriptor, F_GETFD) >= 0) {
        return true;
    }
    const int opened = open("/dev/null", O_RDONLY);
    return opened == descriptor || (opened >= 0 && dup2(opened, descriptor) == descriptor);
}

bool openStandardStreams(const char *program) {
    static char outputBuffer[16384];
    openNullIfClosed(STDIN_FILENO); // on failure, reads fail as if the input had ended
    if (!openNullIfClosed(STDOUT_FILENO) || !openNullIfClosed(STDERR_FILENO)) {
        fprintf(stderr, "%s: standard output is closed, and /dev/null cannot take its place: %s\n",
                program, strerror(errno));
        return false;
    }
    if (isatty(STDOUT_FILENO) == 0) {
        setvbuf(stdout, outputBuffer, _IOFBF, sizeof outputBuffer);
    }
    return true;
}

void recordOutputError() {
    if (outputErrno == 0 && ferror(stdout) != 0) {
        outputErrno = errno != 0 ? errno : EIO; // errno may have been reset since the failure
    }
}

void flushStandardOutput() {
    fflush(stdout);
    recordOutputError();
}

void forgetClosedReader() {
    if (outputErrno == EPIPE) {
        __fpurge(stdout);
        clearerr(stdout);
        outputErrno = 0;
    }
}

bool closeStandardOutput(const char *program) {
    flushStandardOutput();
    if (fclose(stdout) != 0 && outputErrno == 0) {
        outputErrno = errno != 0 ? errno : EIO;
    }
    if (outputErrno != 0) {
        fprintf(stderr, "%s: standard output: %s\n", program, strerror(outputErrno));
    }
    return outputErrno == 0;
}
