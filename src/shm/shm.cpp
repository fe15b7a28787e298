#include "shm/shm.h"

#include "shm/platform.h"

#include <bit>
#include <cstdio>

static_assert(std::endian::native == std::endian::little,
              "the sections are little-endian, and their bytes are copied unchanged");

SectionBuffer allocateBuffer(int32_t size) {
    return SectionBuffer(static_cast<uint8_t *>(malloc(static_cast<size_t>(size))));
}

SectionBuffer allocateBufferOrReport(int32_t size, const char *messageEnd) {
    SectionBuffer buffer = allocateBuffer(size);
    if (!buffer) {
        printf("ERROR with malloc sizeof %d!%s", size, messageEnd);
    }
    return buffer;
}

int readSection(Section section, uint8_t *bytes, int32_t offset, int32_t length) {
    return orbelReadShm(section.id, bytes, offset, length);
}

bool readSectionOrReport(Section section, uint8_t *bytes, int32_t offset, int32_t length,
                         const char *messageEnd) {
    const int result = readSection(section, bytes, offset, length);
    if (result != 0) {
        printf("ERROR reading data from shm! ret=%d%s", result, messageEnd);
    }
    return result == 0;
}

SectionBuffer readWholeSection(Section section, const char *messageEnd) {
    SectionBuffer buffer = allocateBufferOrReport(section.size, messageEnd);
    if (buffer && !readSectionOrReport(section, buffer.get(), 0, section.size, messageEnd)) {
        buffer.reset();
    }
    return buffer;
}

int writeSection(Section section, int32_t offset, const void *bytes, int32_t length) {
    return orbelWriteShm(section.id, static_cast<const uint8_t *>(bytes), offset, length);
}

const char *policyName(int index) {
    const char *name = orbelPolicyName(static_cast<int16_t>(index));
    return name != nullptr ? name : "(null)";
}
