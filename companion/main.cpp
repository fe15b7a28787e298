// orbelstatctl: the shared memory's fields by name, for scripts.
#include "companion/commands.h"
#include "shm/standard_streams.h"

int main(int argc, char **argv) {
    if (!openStandardStreams()) {
        return failed;
    }
    const int status = runCompanion(argc, argv);
    const bool isWritten = closeStandardOutput("orbelstatctl: standard output");
    return isWritten || status != succeeded ? status : failed;
}
