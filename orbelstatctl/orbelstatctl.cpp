// orbelstatctl: the shared memory's fields by name, for scripts and for people.
#include "orbelstatctl/commands.h"
#include "output/standard_streams.h"

#include <new>

int main(int argc, char **argv) {
    if (!openStandardStreams("orbelstatctl")) {
        return failed;
    }
    int status = failed;
    try {
        status = runCompanion(argc, argv);
    } catch (const Stop &stop) {
        status = stop.status;
        if (!stop.message.empty()) {
            complain(stop.message);
        }
    } catch (const std::bad_alloc &) {
        complain("no memory");
    } catch (const std::exception &error) {
        complain(error.what());
    }
    return closeStandardOutput("orbelstatctl") || status != succeeded ? status : failed;
}
