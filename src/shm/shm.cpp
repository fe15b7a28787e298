#include "shm/shm.h"

#include <bit>
#include <cmath>
#include <cstdio>

// The platform's headers may be plain C. Those of the C library that have templates inside must not
// be included first in here: <cmath> and shm.h have them.
extern "C" {
#include PLATFORM_SHM_HEADER
#include PLATFORM_DATA_HEADER
}

static_assert(std::endian::native == std::endian::little,
              "sections are little-endian, and their bytes are copied unchanged");

static const char *lineEnd(MessageEnd end) {
    return end == MessageEnd::newline ? "\n" : "";
}

SectionBuffer allocateBuffer(int32_t size) {
    return SectionBuffer(static_cast<uint8_t *>(malloc(static_cast<size_t>(size))));
}

SectionBuffer allocateBufferOrReport(int32_t size, MessageEnd end) {
    SectionBuffer buffer = allocateBuffer(size);
    if (!buffer) {
        printf("ERROR with malloc sizeof %d!%s", size, lineEnd(end));
    }
    return buffer;
}

int readSection(Section section, uint8_t *bytes, int32_t offset, int32_t length) {
    return Tolm_shm_memread(section.id, bytes, offset, length);
}

bool readSectionOrReport(Section section, uint8_t *bytes, int32_t offset, int32_t length,
                         MessageEnd end) {
    const int result = readSection(section, bytes, offset, length);
    if (result != 0) {
        printf("ERROR reading data from shm! ret=%d%s", result, lineEnd(end));
    }
    return result == 0;
}

SectionBuffer readWholeSection(Section section, MessageEnd end) {
    SectionBuffer buffer = allocateBufferOrReport(section.size, end);
    if (buffer && !readSectionOrReport(section, buffer.get(), 0, section.size, end)) {
        buffer.reset();
    }
    return buffer;
}

int writeSection(Section section, int32_t offset, const void *bytes, int32_t length) {
    // The library only reads from the buffer, whether or not its declaration says so.
    auto *source = static_cast<uint8_t *>(const_cast<void *>(bytes));
    return Tolm_shm_memwrite(section.id, source, offset, length);
}

const char *policyName(int index) {
    const char *name = policyTypeToString(static_cast<int16_t>(index));
    return name != nullptr ? name : "(null)";
}
