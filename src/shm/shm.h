// The only door to the platform: the sections of the power-management shared memory, whole-section
// reads, single-field writes and policy names. No other room includes the platform's headers.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

// Identifiers that the platform's shared-memory library gives to the sections.
enum class Section : int32_t {
    powerReporting = 6, // PWR_RPTG_SEC
    psuInfo = 7,        // PSU_INFO_SEC
    powerConfig = 8,    // PWR_CFG_CLR_SEC
    globalPower = 39,   // PWR_IPMI_GLOBAL_SEC_1
};

// Sizes in bytes, fixed by the controller's firmware.
inline constexpr int32_t globalPowerSize = 803;
inline constexpr int32_t powerReportingSize = 30277;
inline constexpr int32_t powerConfigSize = 224;
// The PSU information section is 12 unit records followed by 12 bus records.
inline constexpr int32_t psuRecordSize = 816;
inline constexpr int32_t psuBusRecordSize = 35;
inline constexpr int32_t psuCount = 12;

struct FreeBuffer {
    void operator()(uint8_t *bytes) const {
        free(bytes);
    }
};
// A heap buffer of exactly the bytes read, freed when its owner returns. May be null.
using SectionBuffer = std::unique_ptr<uint8_t[], FreeBuffer>;

// Some failure messages end their line, others leave it open for whatever is printed next.
enum class MessageEnd { newline, open };

// Allocates `size` bytes with malloc. Returns null on failure and prints nothing.
SectionBuffer allocateBuffer(int32_t size);

// As allocateBuffer, but prints the allocation message on failure.
SectionBuffer allocateBufferOrReport(int32_t size, MessageEnd end);

// Copies `length` bytes from byte `offset` of the section. Returns 0, or the library's error code;
// then what `bytes` holds is the library's business. Prints nothing.
int readSection(Section section, uint8_t *bytes, int32_t offset, int32_t length);

// As readSection, but prints the read message with the error code. Returns whether it succeeded.
bool readSectionOrReport(Section section, uint8_t *bytes, int32_t offset, int32_t length,
                         MessageEnd end);

// Allocates a buffer of `size` bytes and fills it with one read of the whole section. On either
// failure prints that failure's message and returns null.
SectionBuffer readWholeSection(Section section, int32_t size, MessageEnd end);

// Writes `length` bytes to byte `offset` of the power reporting section, the only section that is
// ever written. The library's result is not examined: a refused write shows in the next read.
void writePowerReporting(int32_t offset, const void *bytes, int32_t length);

// The platform's name for policy 0..15, NUL-terminated, owned by the platform.
const char *policyName(int index);
