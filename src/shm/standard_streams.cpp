#include "shm/standard_streams.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

// Why the first write that failed did so; 0 as long as none has.
static int lostReason = 0;

bool openStandardStreams() {
    static char outputBuffer[16384];
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // The lowest that is free is this one, since those below it are open.
        if (fcntl(descriptor, F_GETFD) < 0 && open("/dev/null", O_RDONLY) != descriptor) {
            return false;
        }
    }
    if (isatty(STDOUT_FILENO) == 0) {
        setvbuf(stdout, outputBuffer, _IOFBF, sizeof outputBuffer);
    }
    return true;
}

void noteLostOutput() {
    if (lostReason == 0 && ferror(stdout) != 0) {
        lostReason = errno;
    }
}

bool closeStandardOutput(const char *name) {
    fflush(stdout);
    noteLostOutput();
    if (fclose(stdout) == 0 && lostReason == 0) {
        return true;
    }
    if (lostReason != 0) {
        errno = lostReason;
    }
    perror(name);
    return false;
}
