#include "orbelstatctl/commands.h"
#include "orbelstatctl/section_copies.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static bool writeAll(int file, const uint8_t *bytes, size_t size) {
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written < 0) {
            return false;
        }
        bytes += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

// Writes a file that is on its medium when it gets its name. Returns 0 or an errno value; then
// there is no file, or still the one that was there.
static int writeFile(const char *path, const char *temporary, const uint8_t *bytes, size_t size) {
    unlink(temporary); // of a run that was ended
    const int file = open(temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0) {
        return errno;
    }
    int error = 0;
    if (!writeAll(file, bytes, size) || fsync(file) != 0 || rename(temporary, path) != 0) {
        error = errno;
        unlink(temporary);
    }
    close(file);
    return error;
}

static int saveSection(const char *directory, Section section, SectionCopies &copies) {
    char path[4096];
    char temporary[sizeof path + 32];
    const int length = snprintf(path, sizeof path, "%s/section-%d", directory, section.id);
    if (length >= static_cast<int>(sizeof path)) {
        fprintf(stderr, "orbelstatctl: %s: %s\n", directory, strerror(ENAMETOOLONG));
        return failed;
    }
    snprintf(temporary, sizeof temporary, "%s.%d", path, getpid());
    const uint8_t *bytes = copies.of(section);
    if (bytes == nullptr) {
        return failed;
    }
    const int error = writeFile(path, temporary, bytes, static_cast<size_t>(section.size));
    if (error != 0) {
        fprintf(stderr, "orbelstatctl: %s: %s\n", path, strerror(error));
        return failed;
    }
    printf("%s: %d bytes\n", path, section.size);
    return succeeded;
}

int saveSections(Words arguments) {
    const char *directory = arguments[0];
    if (mkdir(directory, 0777) != 0 && errno != EEXIST) {
        fprintf(stderr, "orbelstatctl: %s: %s\n", directory, strerror(errno));
        return failed;
    }
    SectionCopies copies;
    int status = succeeded;
    for (const Section section : allSections) {
        if (saveSection(directory, section, copies) != succeeded) {
            status = failed;
        }
    }
    // The names are on the medium when the directory is, where its file system can say so.
    const int descriptor = open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
    return status;
}
