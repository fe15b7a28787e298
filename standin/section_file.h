// The files that hold the stand-in's sections, for its library and for tolmfill.
#pragma once

#include <climits>
#include <cstdint>
#include <sys/types.h>

#pragma GCC visibility push(hidden) // the library offers what is in tolm_shm.h

// The directory of the sections: what TOLM_SHM_DIR names, or /dev/shm/tolm if that is unset or
// empty.
const char *sectionDirectory();

struct SectionPath {
    char text[PATH_MAX + 1]; // one more than the system takes: it refuses a path that was cut
};

// The path of a section's file, "section-<n>" in the directory.
SectionPath sectionPath(int32_t section);

// The open file of a section, locked until this object goes: shared with other readers if it was
// opened to read, for itself alone if to write. The directory may be a link, which is its user's
// choice; the file must be a regular one.
struct SectionFile {
    // Opens without ever waiting for another end or for a device, then waits for the lock. `access`
    // is O_RDONLY or O_WRONLY.
    SectionFile(const char *path, int access);
    ~SectionFile();
    SectionFile(const SectionFile &) = delete;
    SectionFile &operator=(const SectionFile &) = delete;

    int descriptor = -1;
    off_t size = 0; // in bytes
    // 0, or why the file cannot be used, as an errno value: what open, fstat and flock say (ELOOP
    // for a link), EISDIR for a directory, ENXIO for anything else that is no regular file.
    int error = 0;
};

#pragma GCC visibility pop
