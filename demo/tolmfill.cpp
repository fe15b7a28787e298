// tolmfill: creates the stand-in's sections and fills them with demo data, or checks them.
#include "demo/demo_data.h"
#include "standin/section_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

static constexpr int failureStatus = 1;
static constexpr int existsStatus = 2;

// Writes a file from its beginning. Returns 0 or an errno value.
static int writeAll(int file, const DemoSection &demo) {
    const ssize_t written = TEMP_FAILURE_RETRY(pwrite(file, demo.bytes, demo.size, 0));
    if (written < 0) {
        return errno;
    }
    return static_cast<size_t>(written) == demo.size ? 0 : ENOSPC;
}

// Overwrites an existing section in place, because other processes may have mapped it, and under
// its lock. Returns 0 or an errno value.
static int overwriteSection(const FilePath &path, const DemoSection &demo) {
    const SectionFile file(path, O_WRONLY);
    const int error = file.error != 0 ? file.error : writeAll(file.descriptor, demo);
    if (error != 0) {
        return error;
    }
    return ftruncate(file.descriptor, static_cast<off_t>(demo.size)) == 0 ? 0 : errno;
}

// Creates a missing section. It is written to a temporary file and linked to its name when
// complete: created in place, it could be locked and read by another process while still empty.
// link() never replaces an existing file. Returns 0 or an errno value.
static int createSection(const FilePath &path, const DemoSection &demo) {
    FilePath temporary = pathInDirectory("new-XXXXXX");
    const int file = mkostemp(temporary.text, O_CLOEXEC);
    if (file < 0) {
        return errno;
    }
    const mode_t mask = umask(0);
    umask(mask);
    int error = writeAll(file, demo);
    if (error == 0 && (fchmod(file, 0666 & ~mask) != 0 || link(temporary.text, path.text) != 0)) {
        error = errno;
    }
    unlink(temporary.text);
    close(file);
    return error;
}

// Prints why a section cannot be used. Returns failureStatus.
static int reportError(const FilePath &path, const char *reason) {
    printf("%s: %s\n", path.text, reason);
    return failureStatus;
}

// Creates a section or, with `force`, overwrites it. Prints the result. Returns an exit status.
static int fillSection(const DemoSection &demo, bool force) {
    const FilePath path = sectionPath(demo.section.id);
    struct stat status {};
    int error = EEXIST;
    const bool exists = lstat(path.text, &status) == 0;
    if (!exists) {
        error = errno;
    } else if (force) {
        error = overwriteSection(path, demo);
    }
    if (error == ENOENT) {
        error = createSection(path, demo);
    }
    if (error == EEXIST) {
        printf("%s: already exists, not changed (use --force to overwrite it)\n", path.text);
        return existsStatus;
    }
    if (error == EACCES && exists && isWriteProtected(status.st_mode)) {
        return reportError(path, "write-protected, not changed (chmod u+w makes it writable)");
    }
    if (error != 0) {
        return reportError(path, strerror(error));
    }
    printf("%s: %zu bytes\n", path.text, demo.size);
    return 0;
}

// Prints a line if a section is missing, cannot be read or has the wrong size. Returns an exit
// status.
static int checkSection(const DemoSection &demo) {
    const FilePath path = sectionPath(demo.section.id);
    const SectionFile file(path, O_RDONLY);
    if (file.error != 0) {
        return reportError(path, strerror(file.error));
    }
    if (static_cast<size_t>(file.size) != demo.size) {
        printf("%s: size is %zu bytes, expected %zu\n", path.text, static_cast<size_t>(file.size),
               demo.size);
        return failureStatus;
    }
    return 0;
}

int main(int argc, char **argv) {
    const bool force = argc == 2 && strcmp(argv[1], "--force") == 0;
    const bool check = argc == 2 && strcmp(argv[1], "--check") == 0;
    if (argc > 1 && !force && !check) {
        printf("Usage: %s [--force | --check]\n"
               "Creates the sections of the stand-in's shared memory in TOLM_SHM_DIR (default:\n"
               "/dev/shm/tolm) and fills them with demo data. Existing sections are not changed\n"
               "(exit status 2).\n"
               "  --force  overwrite existing sections too\n"
               "  --check  write nothing; print the sections that are missing, cannot be read or\n"
               "           have the wrong size (exit status 1)\n",
               argv[0]);
        return failureStatus;
    }
    if (!check) {
        // With the sticky bit, users cannot delete each other's sections even if the umask leaves
        // the directory writable for all. Errors are ignored because each section then reports its
        // own.
        mkdir(pathInDirectory("").text, S_ISVTX | 0777);
    }
    int result = 0;
    for (const DemoSection &demo : demoSections()) {
        const int status = check ? checkSection(demo) : fillSection(demo, force);
        result = result == failureStatus || status == 0 ? result : status;
    }
    return result;
}
