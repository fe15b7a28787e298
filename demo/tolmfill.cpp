// Creates the sections of the stand-in's shared memory and fills them with demo data, or checks
// that they are there.
#include "demo/demo_data.h"
#include "standin/section_file.h"

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

// Writes a file from its beginning. Returns 0 or an errno value.
static int writeAll(int file, const DemoSection &demo) {
    const ssize_t written = TEMP_FAILURE_RETRY(pwrite(file, demo.bytes, demo.size, 0));
    if (written < 0) {
        return errno;
    }
    return static_cast<size_t>(written) == demo.size ? 0 : ENOSPC;
}

// Writes a section that is there, in place and under its lock: somebody may have mapped it. Returns
// 0 or an errno value.
static int overwrite(const char *path, const DemoSection &demo) {
    const SectionFile file(path, O_WRONLY);
    const int error = file.error != 0 ? file.error : writeAll(file.descriptor, demo);
    if (error != 0) {
        return error;
    }
    return ftruncate(file.descriptor, static_cast<off_t>(demo.size)) == 0 ? 0 : errno;
}

// Makes a section that is not there. Written in place, even one made and locked could be found
// empty by whoever takes the lock first; so it gets its name, which replaces nothing, when it is
// whole. Returns 0 or an errno value.
static int create(const char *path, const DemoSection &demo) {
    SectionPath temporary;
    snprintf(temporary.text, sizeof temporary.text, "%s/new-XXXXXX", sectionDirectory());
    const int file = mkostemp(temporary.text, O_CLOEXEC);
    if (file < 0) {
        return errno;
    }
    const mode_t mask = umask(0);
    umask(mask);
    int error = writeAll(file, demo);
    if (error == 0 && (fchmod(file, 0666 & ~mask) != 0 || link(temporary.text, path) != 0)) {
        error = errno;
    }
    unlink(temporary.text);
    close(file);
    return error;
}

// These two return the exit status that their outcome stands for.
static int fillSection(const DemoSection &demo, bool force) {
    const SectionPath path = sectionPath(demo.section.id);
    struct stat status {};
    int error = EEXIST;
    if (force) {
        error = overwrite(path.text, demo);
    } else if (lstat(path.text, &status) != 0) {
        error = errno;
    }
    if (error == ENOENT) {
        error = create(path.text, demo);
    }
    if (error == EEXIST) {
        printf("%s is there already: left as it is\n", path.text);
        return existedStatus;
    }
    if (error != 0) {
        return fail(path.text, error);
    }
    printf("%s: %zu bytes\n", path.text, demo.size);
    return 0;
}

static int checkSection(const DemoSection &demo) {
    const SectionPath path = sectionPath(demo.section.id);
    const SectionFile file(path.text, O_RDONLY);
    if (file.error != 0) {
        return fail(path.text, file.error);
    }
    if (static_cast<size_t>(file.size) != demo.size) {
        printf("%s: %zu bytes, not %zu\n", path.text, static_cast<size_t>(file.size), demo.size);
        return failedStatus;
    }
    return 0;
}

int main(int argc, char **argv) {
    const bool force = argc == 2 && strcmp(argv[1], "--force") == 0;
    const bool check = argc == 2 && strcmp(argv[1], "--check") == 0;
    if (argc > 1 && !force && !check) {
        printf(
            "Usage: %s [--force | --check]\n"
            "Creates the sections of the stand-in's shared memory in TOLM_SHM_DIR, or in\n"
            "/dev/shm/tolm, and fills them with plausible data. Sections that are there already\n"
            "stay as they are (exit status 2) unless --force is given. --check writes nothing and\n"
            "names the sections that are missing or of a wrong size (exit status 1).\n",
            argv[0]);
        return failedStatus;
    }
    if (!check) {
        // Where the umask lets others make sections here, none can take away another's. If this
        // fails, so does every section, and says why.
        mkdir(sectionDirectory(), S_ISVTX | 0777);
    }
    int outcome = 0;
    for (const DemoSection &demo : demoSections()) {
        const int status = check ? checkSection(demo) : fillSection(demo, force);
        outcome = outcome == failedStatus || status == 0 ? outcome : status;
    }
    return outcome;
}
