// The only interface to the platform's libraries: the sections of the power-management shared
// memory, reads, the unchecked write, and policy names.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

// A section: its number in the platform's shared-memory library and its size in bytes. The
// controller's firmware fixes both.
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

// Frees the memory of a SectionBuffer.
struct FreeBuffer {
    void operator()(uint8_t *bytes) const {
        free(bytes);
    }
};
// A heap buffer of exactly the bytes read. Null if it could not be allocated or filled.
using SectionBuffer = std::unique_ptr<uint8_t[], FreeBuffer>;

// The functions that report a failure print one message on standard output and then `messageEnd`:
// "\n", or "" in reports whose messages do not end in a newline.

// Allocates `size` bytes with malloc. Returns null on failure and prints nothing.
SectionBuffer allocateBuffer(int32_t size);

// Like allocateBuffer, but prints a message with the size on failure.
SectionBuffer allocateBufferOrReport(int32_t size, const char *messageEnd);

// Reads `length` bytes at offset `offset` of the section. Returns 0, or the library's error code;
// the contents of `bytes` are then unspecified. Prints nothing.
int readSection(Section section, uint8_t *bytes, int32_t offset, int32_t length);

// Like readSection, but prints a message with the error code on failure. Returns whether the read
// succeeded.
bool readSectionOrReport(Section section, uint8_t *bytes, int32_t offset, int32_t length,
                         const char *messageEnd);

// Allocates a buffer for a section and fills it with a single read. If either fails, prints a
// message and returns null.
SectionBuffer readWholeSection(Section section, const char *messageEnd);

// Writes `length` bytes at offset `offset` of the section. Performs no checks of its own.
// Returns 0, or the library's error code. Prints nothing.
int writeSection(Section section, int32_t offset, const void *bytes, int32_t length);

// Returns the platform's name for policy 0..15, NUL-terminated and owned by the platform; "(null)"
// if it has none.
const char *policyName(int index);
