#include "shm/standard_streams.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

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

bool closeStandardOutput(const char *name) {
    const bool lostEarlier = ferror(stdout) != 0;
    if (fclose(stdout) == 0) {
        if (!lostEarlier) {
            return true;
        }
        errno = EIO; // why the earlier write failed is not known any more
    }
    perror(name);
    return false;
}
