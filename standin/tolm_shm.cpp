// Stand-in for the controller's shared-memory library. Each section is a file, by default on a
// tmpfs, so that other processes see every write at once and can map the file.
#include "standin/tolm_shm.h"

#include "standin/section_file.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

// Returns 0 if the file is usable and `length` bytes at `offset` are within the section, else a
// negative errno value.
static int checkRange(const SectionFile &file, int32_t offset, int32_t length) {
    if (file.error != 0) {
        return -file.error;
    }
    if (offset < 0 || length < 0) {
        return -EINVAL;
    }
    return off_t{offset} + length > file.size ? -ERANGE : 0;
}

// Returns the library's result for the result of pread or pwrite.
static int resultOf(ssize_t copied, int32_t length) {
    if (copied < 0) {
        return -errno;
    }
    return copied == length ? 0 : -EIO;
}

int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length) {
    const SectionFile file(sectionPath(section), O_RDONLY);
    const int error = checkRange(file, offset, length);
    if (error != 0) {
        return error;
    }
    const auto size = static_cast<size_t>(length);
    return resultOf(TEMP_FAILURE_RETRY(pread(file.descriptor, buffer, size, offset)), length);
}

int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset, int32_t length) {
    const SectionFile file(sectionPath(section), O_WRONLY);
    const int error = checkRange(file, offset, length);
    if (error != 0) {
        return error;
    }
    const auto size = static_cast<size_t>(length);
    return resultOf(TEMP_FAILURE_RETRY(pwrite(file.descriptor, buffer, size, offset)), length);
}
