// Stand-in for the controller's shared-memory library. Section n is the file "section-<n>" in
// /dev/shm/tolm, a tmpfs, so every other process sees a write at once and may map the file; or in
// the folder that TOLM_SHM_DIR names.
#include "tolm_shm.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// An open section, or a negative errno value in its place.
class SectionFile {
  public:
    SectionFile(int32_t section, int flags) {
        const char *folder = getenv("TOLM_SHM_DIR");
        char path[512];
        const int length = snprintf(path, sizeof path, "%s/section-%d",
                                    folder != nullptr ? folder : "/dev/shm/tolm", section);
        if (length >= static_cast<int>(sizeof path)) {
            result = -ENAMETOOLONG;
            return;
        }
        descriptor = open(path, flags | O_CLOEXEC);
        result = descriptor < 0 ? -errno : 0;
    }
    ~SectionFile() {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
    SectionFile(const SectionFile &) = delete;
    SectionFile &operator=(const SectionFile &) = delete;

    // 0 if `length` bytes at `offset` lie inside the section, else a negative errno value.
    [[nodiscard]] int checkRange(int32_t offset, int32_t length) const {
        struct stat status {};
        if (result != 0) {
            return result;
        }
        if (offset < 0 || length < 0) {
            return -EINVAL;
        }
        if (fstat(descriptor, &status) != 0) {
            return -errno;
        }
        return static_cast<off_t>(offset) + length > status.st_size ? -ERANGE : 0;
    }

    int descriptor = -1;
    int result = 0;
};

int outcome(ssize_t copied, int32_t length) {
    if (copied < 0) {
        return -errno;
    }
    return copied == length ? 0 : -EIO;
}

} // namespace

int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length) {
    SectionFile file(section, O_RDONLY);
    const int result = file.checkRange(offset, length);
    return result != 0
               ? result
               : outcome(pread(file.descriptor, buffer, static_cast<size_t>(length), offset),
                         length);
}

int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset, int32_t length) {
    SectionFile file(section, O_WRONLY);
    const int result = file.checkRange(offset, length);
    return result != 0
               ? result
               : outcome(pwrite(file.descriptor, buffer, static_cast<size_t>(length), offset),
                         length);
}
