#include "upm/upm_block.h"

#include <cerrno>

int writeUpmBlock(size_t offset, const void *bytes, size_t length) {
    if (offset > sizeof(sUpmBlock) || length > sizeof(sUpmBlock) - offset) {
        return -ERANGE;
    }
    return writeSection(powerReportingSection, static_cast<int32_t>(upmBlockOffset + offset), bytes,
                        static_cast<int32_t>(length));
}
