// orbelstatctl: the shared memory's fields by name, for scripts.
#include "orbelstatctl/commands.h"
#include "output/standard_streams.h"

#include <cstdio>
#include <new>

static constexpr char program[] = "orbelstatctl";

int main(int argc, char **argv) {
    if (!openStandardStreams(program)) {
        return failed;
    }
    int status = failed;
    try {
        status = runCompanion(argc, argv);
    } catch (const std::bad_alloc &) {
        fprintf(stderr, "%s: no memory\n", program);
    }
    const bool isWritten = closeStandardOutput(program);
    return isWritten || status != succeeded ? status : failed;
}
