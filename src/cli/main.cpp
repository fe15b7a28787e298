#include "cli/command_line.h"

#include <cstdio>
#include <unistd.h>

int main(int argc, char **argv) {
    // A report goes out in a few large writes, unless a person watches it line by line.
    static char outputBuffer[16384];
    if (isatty(STDOUT_FILENO) == 0) {
        setvbuf(stdout, outputBuffer, _IOFBF, sizeof outputBuffer);
    }
    return runCommandLine(argc, argv);
}
