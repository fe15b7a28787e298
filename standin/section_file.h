// The files of the stand-in, for its two libraries and for tolmfill.
#pragma once

#include <climits>
#include <cstdint>
#include <sys/types.h>

#pragma GCC visibility push(hidden) // the libraries export only what their public headers declare

// The path of a file. The buffer is one byte larger than the kernel accepts, so that a truncated
// path is rejected.
struct FilePath {
    char text[PATH_MAX + 1];
};

// Returns the path of a file in the stand-in's directory: the one that TOLM_SHM_DIR names, or
// /dev/shm/tolm if that is unset or empty. An empty name gives the directory itself.
FilePath pathInDirectory(const char *name);

// Returns the path of a section's file, "section-<n>".
FilePath sectionPath(int32_t section);

// Returns whether a file with this mode has no write permission bit at all.
bool isWriteProtected(mode_t mode);

// An open file, locked while this object exists: shared for reading, exclusive for writing. The
// file must be a regular file; the directory may be a symbolic link.
struct SectionFile {
    // Opens the file without blocking on a FIFO or a device, then waits for the lock. `access` is
    // O_RDONLY or O_WRONLY.
    SectionFile(const FilePath &path, int access);
    ~SectionFile();
    SectionFile(const SectionFile &) = delete;
    SectionFile &operator=(const SectionFile &) = delete;

    int descriptor = -1;
    off_t size = 0; // in bytes
    // 0, or an errno value if the file cannot be used: the error of open, fstat or flock (ELOOP for
    // a symbolic link), EISDIR for a directory, ENXIO for anything else that is not a regular file,
    // and EACCES for writing to a file that is write-protected, also as root.
    int error = 0;
};

#pragma GCC visibility pop
