// orbelstatctl: the shared memory's fields by name, for scripts and for people.
#include "orbelstatctl/commands.h"
#include "output/standard_streams.h"

int main(int argc, char **argv) {
    if (!openStandardStreams("orbelstatctl")) {
        return argc > 1 && argv[1] == std::string_view("diff") ? 2 : 1; // diff(1) exits with 2, too
    }
    const auto [status, ifLost] = runOrbelstatctl(argc, argv);
    const bool isWritten = closeStandardOutput("orbelstatctl");
    return static_cast<int>(isWritten || status == ExitStatus::usageError ? status : ifLost);
}
