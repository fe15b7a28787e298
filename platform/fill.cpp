// Fills the stand-in's shared memory with plausible data, so that every report has something to
// show: every field that a report prints is non-zero and differs from its neighbours.
#include "sections/power_config.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int failed = 1;
constexpr int existed = 2;

time32 secondsAgo(int seconds) {
    return static_cast<time32>(static_cast<uint32_t>(time(nullptr) - seconds));
}

void fillPowerConfig(sTolmAbsPowerConfigClr &record) {
    record.peakHeadroom = 412.5F;
    record.instHeadroom = 287;
    record.peakPowerTime = static_cast<int32_t>(secondsAgo(5400));
    record.peakPowerStartTime = static_cast<int32_t>(secondsAgo(86400));
    record.peakAmpsTime = secondsAgo(5340);
    record.peakAmpsStartTime = secondsAgo(86340);
    record.cumulativePower = 19342;
    record.cumulativePowerStartTime = static_cast<int32_t>(secondsAgo(2592000));
    record.cumulativeStartEnergy = 1024.75F;
}

// Writes one section to its file. Returns the exit status that it stands for.
int writeSection(const char *folder, Section section, const void *bytes, size_t size, bool force) {
    char path[512];
    snprintf(path, sizeof path, "%s/section-%d", folder, static_cast<int>(section));
    const int descriptor =
        open(path, O_WRONLY | O_CREAT | O_CLOEXEC | (force ? O_TRUNC : O_EXCL), 0666);
    if (descriptor < 0 && errno == EEXIST) {
        printf("%s is there already: left as it is\n", path);
        return existed;
    }
    if (descriptor < 0 || write(descriptor, bytes, size) != static_cast<ssize_t>(size) ||
        close(descriptor) != 0) {
        printf("%s: %s\n", path, strerror(errno));
        return failed;
    }
    printf("%s: %zu bytes\n", path, size);
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    const bool force = argc == 2 && strcmp(argv[1], "--force") == 0;
    if (argc > 1 && !force) {
        printf(
            "Usage: %s [--force]\n"
            "Creates the sections of the stand-in's shared memory in TOLM_SHM_DIR, or in\n"
            "/dev/shm/tolm, and fills them with plausible data. Sections that are there already\n"
            "stay as they are (exit status 2) unless --force is given.\n",
            argv[0]);
        return failed;
    }
    const char *named = getenv("TOLM_SHM_DIR");
    const char *folder = named != nullptr ? named : "/dev/shm/tolm";
    mkdir(folder, 0777); // if this fails, so does every section, and says why

    static sTolmAbsPowerConfigClr powerConfig;
    fillPowerConfig(powerConfig);

    const struct {
        Section section;
        const void *bytes;
        size_t size;
    } sections[] = {
        {Section::powerConfig, &powerConfig, sizeof powerConfig},
    };
    int status = 0;
    for (const auto &s : sections) {
        const int result = writeSection(folder, s.section, s.bytes, s.size, force);
        status = status == failed ? failed : result != 0 ? result : status;
    }
    return status;
}
