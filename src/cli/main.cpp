#include "cli/command_line.h"
#include "shm/standard_streams.h"

#include <sysexits.h>

int main(int argc, char **argv) {
    if (!openStandardStreams()) {
        return EX_IOERR;
    }
    const int status = runCommandLine(argc, argv);
    const bool isWritten = closeStandardOutput("orbelstatprobe: standard output");
    return isWritten || status == wizardStatus ? status : EX_IOERR;
}
