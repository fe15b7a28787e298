// Creates the sections of the stand-in's shared memory and fills them with demo data.
#include "demo_data.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static constexpr int failedStatus = 1;
static constexpr int existedStatus = 2;

static int fail(const char *path, int error) {
    printf("%s: %s\n", path, strerror(error));
    return failedStatus;
}

// Writes one section to its file, in place: somebody may have mapped it. Returns the exit status
// that the outcome stands for.
template <typename Record>
static int writeSection(const char *folder, Section section, const Record &record, bool force) {
    char path[512];
    const int length = snprintf(path, sizeof path, "%s/section-%d", folder, section.id);
    if (length >= static_cast<int>(sizeof path)) {
        return fail(folder, ENAMETOOLONG);
    }
    const int descriptor = open(path, O_WRONLY | O_CREAT | O_CLOEXEC | (force ? 0 : O_EXCL), 0666);
    if (descriptor < 0 && errno == EEXIST) {
        printf("%s is there already: left as it is\n", path);
        return existedStatus;
    }
    if (descriptor < 0) {
        return fail(path, errno);
    }
    const ssize_t written = write(descriptor, &record, sizeof record);
    const int error = written < 0 || ftruncate(descriptor, sizeof record) != 0 ? errno : 0;
    close(descriptor);
    if (error != 0 || written != ssize_t{sizeof record}) {
        return fail(path, error != 0 ? error : ENOSPC);
    }
    printf("%s: %zu bytes\n", path, sizeof record);
    return 0;
}

int main(int argc, char **argv) {
    const bool force = argc == 2 && strcmp(argv[1], "--force") == 0;
    if (argc > 1 && !force) {
        printf(
            "Usage: %s [--force]\n"
            "Creates the sections of the stand-in's shared memory in TOLM_SHM_DIR, or in\n"
            "/dev/shm/tolm, and fills them with plausible data. Sections that are there already\n"
            "stay as they are (exit status 2) unless --force is given.\n",
            argv[0]);
        return failedStatus;
    }
    const char *named = getenv("TOLM_SHM_DIR");
    const char *folder = named != nullptr ? named : "/dev/shm/tolm";
    mkdir(folder, 0777); // if this fails, so does every section, and says why

    static sPwrIpmiGlobalSec1 globalSection;
    static sPSUInfoSection psuInfo;
    static sTolmAbsPowerReporting powerReporting;
    static sTolmAbsPowerConfigClr powerConfig;
    fillGlobalSection(globalSection);
    fillPsuInfo(psuInfo);
    fillPowerReporting(powerReporting);
    fillPowerConfig(powerConfig);

    const int statuses[] = {
        writeSection(folder, globalPowerSection, globalSection, force),
        writeSection(folder, psuInfoSection, psuInfo, force),
        writeSection(folder, powerReportingSection, powerReporting, force),
        writeSection(folder, powerConfigSection, powerConfig, force),
    };
    int outcome = 0;
    for (const int status : statuses) {
        outcome = outcome == failedStatus || status == 0 ? outcome : status;
    }
    return outcome;
}
