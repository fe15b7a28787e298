#include "standin/section_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

const char *sectionDirectory() {
    const char *named = getenv("TOLM_SHM_DIR");
    return named != nullptr && *named != '\0' ? named : "/dev/shm/tolm";
}

SectionPath sectionPath(int32_t section) {
    SectionPath path;
    snprintf(path.text, sizeof path.text, "%s/section-%d", sectionDirectory(), section);
    return path;
}

SectionFile::SectionFile(const char *path, int access) {
    struct stat status {};
    descriptor = open(path, access | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    bool isUsable = descriptor >= 0 && fstat(descriptor, &status) == 0;
    if (isUsable && !S_ISREG(status.st_mode)) {
        error = S_ISDIR(status.st_mode) ? EISDIR : ENXIO;
        return;
    }
    const int lock = access == O_RDONLY ? LOCK_SH : LOCK_EX;
    isUsable = isUsable && TEMP_FAILURE_RETRY(flock(descriptor, lock)) == 0 &&
               fstat(descriptor, &status) == 0; // again: only now the size is settled
    error = isUsable ? 0 : errno;
    size = status.st_size;
}

SectionFile::~SectionFile() {
    if (descriptor >= 0) {
        close(descriptor); // and unlocks
    }
}
