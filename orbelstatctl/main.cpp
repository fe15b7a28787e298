// orbelstatctl: the shared memory's fields by name, for scripts and for people.
#include "orbelstatctl/commands.h"
#include "output/standard_streams.h"

int main(int argc, char **argv) {
    if (!openStandardStreams("orbelstatctl")) {
        const bool isDiff =
            argc > 1 && argv[1] == std::string_view("diff"); // where 1 means different
        return static_cast<int>(isDiff ? ExitStatus::usageError : ExitStatus::failure);
    }
    const auto [status, ifOutputIsLost] = runOrbelstatctl(argc, argv);
    const bool isWritten = closeStandardOutput("orbelstatctl");
    return static_cast<int>(isWritten || status == ExitStatus::usageError ? status
                                                                          : ifOutputIsLost);
}
