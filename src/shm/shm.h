// The only door to the platform: the sections of the power-management shared memory, reads, the raw
// write, and policy names. No other room calls the platform.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

// A section: the identifier that the platform's shared-memory library gives to it, and its size in
// bytes, fixed by the controller's firmware.
struct Section {
    int32_t id;
    int32_t size;
};
inline constexpr Section powerReportingSection{6, 30277}; // PWR_RPTG_SEC
inline constexpr Section psuInfoSection{7, 10212};        // PSU_INFO_SEC
inline constexpr Section powerConfigSection{8, 224};      // PWR_CFG_CLR_SEC
inline constexpr Section globalPowerSection{39, 803};     // PWR_IPMI_GLOBAL_SEC_1
inline constexpr Section allSections[] = {powerReportingSection, psuInfoSection, powerConfigSection,
                                          globalPowerSection};

struct FreeBuffer {
    void operator()(uint8_t *bytes) const {
        free(bytes);
    }
};
// A heap buffer of exactly the bytes read, freed when its owner returns. May be null.
using SectionBuffer = std::unique_ptr<uint8_t[], FreeBuffer>;

// `lineEnd` is what ends a failure message: "\n", or "" where whatever is printed next continues on
// its line.

// Allocates `size` bytes with malloc. Returns null on failure and prints nothing.
SectionBuffer allocateBuffer(int32_t size);

// As allocateBuffer, but prints the allocation message on failure.
SectionBuffer allocateBufferOrReport(int32_t size, const char *lineEnd);

// Copies `length` bytes from byte `offset` of the section. Returns 0, or the library's error code;
// then what `bytes` holds is the library's business. Prints nothing.
int readSection(Section section, uint8_t *bytes, int32_t offset, int32_t length);

// As readSection, but prints the read message with the error code. Returns whether it succeeded.
bool readSectionOrReport(Section section, uint8_t *bytes, int32_t offset, int32_t length,
                         const char *lineEnd);

// Allocates a buffer for a section and fills it with one read of the whole. On either failure
// prints that failure's message and returns null.
SectionBuffer readWholeSection(Section section, const char *lineEnd);

// Writes `length` bytes to byte `offset` of the section, whatever lies there. Returns 0, or the
// library's error code. Prints nothing.
int writeSection(Section section, int32_t offset, const void *bytes, int32_t length);

// The platform's name for policy 0..15, NUL-terminated, owned by the platform; "(null)" if it has
// none.
const char *policyName(int index);
