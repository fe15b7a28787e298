#include "standin/section_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

static const char *directory() {
    const char *named = getenv("TOLM_SHM_DIR");
    return named != nullptr && *named != '\0' ? named : "/dev/shm/tolm";
}

FilePath pathInDirectory(const char *name) {
    FilePath path;
    snprintf(path.text, sizeof path.text, "%s/%s", directory(), name);
    return path;
}

FilePath sectionPath(int32_t section) {
    FilePath path;
    snprintf(path.text, sizeof path.text, "%s/section-%d", directory(), section);
    return path;
}

bool isWriteProtected(mode_t mode) {
    return (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
}

// Returns why a file cannot be used with this access, as an errno value; 0 if it can.
static int checkFile(const struct stat &status, int access) {
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    if (!S_ISREG(status.st_mode)) {
        return ENXIO;
    }
    return access != O_RDONLY && isWriteProtected(status.st_mode) ? EACCES : 0;
}

SectionFile::SectionFile(const FilePath &path, int access) {
    struct stat status {};
    descriptor = open(path.text, access | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0 || fstat(descriptor, &status) != 0) {
        error = errno;
        return;
    }
    error = checkFile(status, access);
    if (error != 0) {
        return;
    }
    const int lock = access == O_RDONLY ? LOCK_SH : LOCK_EX;
    if (TEMP_FAILURE_RETRY(flock(descriptor, lock)) != 0 ||
        fstat(descriptor, &status) != 0) { // again: the size is stable only under the lock
        error = errno;
    }
    size = status.st_size;
}

SectionFile::~SectionFile() {
    if (descriptor >= 0) {
        close(descriptor); // also unlocks
    }
}
