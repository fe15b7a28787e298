// Stand-in for the controller's shared-memory library. A section is a file, by default on a tmpfs,
// so that every other process sees a write at once and may map the file.
#include "standin/tolm_shm.h"

#include "standin/section_file.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

// 0 if `length` bytes at `offset` lie inside the section, else a negative errno value.
static int checkRange(const SectionFile &file, int32_t offset, int32_t length) {
    if (file.error != 0) {
        return -file.error;
    }
    if (offset < 0 || length < 0) {
        return -EINVAL;
    }
    return off_t{offset} + length > file.size ? -ERANGE : 0;
}

static int outcome(ssize_t copied, int32_t length) {
    if (copied < 0) {
        return -errno;
    }
    return copied == length ? 0 : -EIO;
}

int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length) {
    const SectionFile file(sectionPath(section).text, O_RDONLY);
    const int result = checkRange(file, offset, length);
    if (result != 0) {
        return result;
    }
    const auto size = static_cast<size_t>(length);
    return outcome(TEMP_FAILURE_RETRY(pread(file.descriptor, buffer, size, offset)), length);
}

int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset, int32_t length) {
    const SectionFile file(sectionPath(section).text, O_WRONLY);
    const int result = checkRange(file, offset, length);
    if (result != 0) {
        return result;
    }
    const auto size = static_cast<size_t>(length);
    return outcome(TEMP_FAILURE_RETRY(pwrite(file.descriptor, buffer, size, offset)), length);
}
