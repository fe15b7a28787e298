#include "cli/command_line.h"
#include "output/standard_streams.h"

#include <sysexits.h>

static constexpr char program[] = "orbelstatprobe";

int main(int argc, char **argv) {
    if (!openStandardStreams(program)) {
        return EX_IOERR;
    }
    const int status = runCommandLine(argc, argv);
    const bool isWritten = closeStandardOutput(program);
    return isWritten || status != 0 ? status : EX_IOERR;
}
