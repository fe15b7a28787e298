// The UPM data block, the tail of the power reporting section: its record, its table with the
// bounds of the writable fields, and the function that writes. Offsets are in bytes from the start
// of the block, except upmBlockOffset.
#pragma once

#include "rows/row.h"
#include "sections/power_reporting.h"

inline constexpr int cpuCount = 4;
inline constexpr int policyCount = 16;

// CPU power limits and related fields. Bytes that nothing uses are called reserved1, reserved2, ...
// within each struct.
struct __attribute__((packed)) sPowerLimits {
    uint32_t cpuPPL[cpuCount];
    uint32_t cpuPL1[cpuCount];
    uint32_t cpuPL2[cpuCount];
    uint32_t cpuPL4[cpuCount];
    uint32_t memPL1[4];
    uint32_t memPL2[4];
    uint32_t sysPL1;
    uint32_t sysPL2;
    int32_t plStatus;
    uint32_t dimmBwThrtlPerc[cpuCount];
    uint8_t reserved1[4];
    uint64_t cpuPLAvailability;
    uint8_t c0ResAvailablity[cpuCount];
    uint8_t reserved2[4];
    uint64_t policyStatus;
    uint64_t readRTC;
};
static_assert(sizeof(sPowerLimits) == 160);

// CPU thermal readings.
struct __attribute__((packed)) sCpuPwrThermal {
    uint32_t rawdts[cpuCount];
    uint32_t thermalMargin[cpuCount];
    uint32_t cpupkgPwr[cpuCount];
    uint32_t tarTemp[cpuCount];
    uint32_t cpuEnergy[cpuCount];
    uint32_t cpuEnergyTS[cpuCount];
    double dimmPwr[cpuCount];
    double prevdimmPwr[cpuCount];
    uint8_t cpuAvailablity[cpuCount];
    uint8_t rawdtsAvailablity[cpuCount];
    uint8_t thermalMarginAvailablity[cpuCount];
    uint8_t cpupkgPwrAvailablity[cpuCount];
    uint8_t tarTempAvailablity[cpuCount];
    uint8_t cpuEnergyAvailablity[cpuCount];
    uint8_t cpuEnergyTSAvailablity[cpuCount];
};
static_assert(sizeof(sCpuPwrThermal) == 188);

// The state of the policies as a whole.
struct __attribute__((packed)) sPolicyStateData {
    uint8_t policyUpdInx;
    uint8_t policyId;
    uint8_t policyExcursionState;
    uint8_t reserved1[5];
    uint16_t cpuWattsPowerFloor;
    uint16_t safePolicyPsuPowerReadingTimeout;
    uint8_t reserved2[4];
};
static_assert(sizeof(sPolicyStateData) == 16);

// One power policy.
struct __attribute__((packed)) sPolicy {
    uint16_t state;
    int32_t policyPowerLimit;
    uint16_t policyPowerLimitMultiplier;
    uint16_t PolicyAggressiveIntervalEnable;
    uint16_t PolicySetLimitToFloorImmediateEnable;
    uint16_t PolicyResponseTimeLimit;
    uint16_t PolicyTotalResponseDelay;
    uint16_t PolicyRampUpDelay;
    uint16_t PolicyRampUpDuration;
    uint16_t limitingState;
    uint16_t PolicyActiveState;
    uint16_t NumResponseTimeLimitInterval;
    uint16_t NumDecisionInterval;
    uint16_t NumRampUpDurationInterval;
    uint16_t NumRampUpDelayInterval;
    uint16_t NumLimitParkingInterval;
    uint16_t NumTotalResponseDelayInterval;
    uint16_t NumRampUpRaiseLimitInterval;
    uint32_t LoadSubsidedThreshold;
    uint16_t PolicyEnableOverride;
    uint16_t LimitParkingDuration;
    uint16_t LoadSubsidedPercentThreshold;
    uint16_t SFMultiplier;
    int16_t SFOffset;
    uint32_t PolicyHysteresis;
    PowerDomain PolicyDomain;
    uint16_t PolicyPwrInputSource;
    uint32_t PolicyPwrInputSimulData;
    uint16_t PolicyExcursion;
    uint16_t PolicyExcursionCounter;
    uint8_t reserved1[4];
};
static_assert(sizeof(sPolicy) == 72);
static_assert(offsetof(sPolicy, LoadSubsidedThreshold) == 38);
static_assert(offsetof(sPolicy, PolicyHysteresis) == 52);
static_assert(offsetof(sPolicy, PolicyPwrInputSimulData) == 60);
static_assert(offsetof(sPolicy, PolicyExcursionCounter) == 66);

// The whole block.
struct __attribute__((packed)) sUpmBlock {
    sPowerLimits powerLimits;
    sCpuPwrThermal cpuPwrThermal;
    uint8_t reserved1[4];
    sPolicyStateData policyState;
    sPolicy policies[policyCount];
    uint8_t reserved2[8]; // part of the policy data
    uint8_t reserved3[80];
    uint64_t timestamp; // milliseconds since 1970-01-01 00:00:00 UTC
};
static_assert(sizeof(sUpmBlock) == 1616);
static_assert(offsetof(sUpmBlock, cpuPwrThermal) == 160);
static_assert(offsetof(sUpmBlock, policyState) == 352);
static_assert(offsetof(sUpmBlock, policies) == 368);
static_assert(offsetof(sUpmBlock, timestamp) == 1608);

// The offset of the block in the section, in bytes.
inline constexpr size_t upmBlockOffset = offsetof(sTolmAbsPowerReporting, upmBlock);
static_assert(upmBlockOffset == 28661);
static_assert(sizeof(sUpmBlock) == sizeof(sTolmAbsPowerReporting::upmBlock));

// The policy data: policy state data, policies and the reserved bytes after them. Clearing the
// policies writes all of it.
inline constexpr size_t policyDataOffset = offsetof(sUpmBlock, policyState);
inline constexpr size_t policyDataSize =
    sizeof(sUpmBlock::policyState) + sizeof(sUpmBlock::policies) + sizeof(sUpmBlock::reserved2);
static_assert(policyDataSize == 1176);

// Returns the offset of policy 0..15.
constexpr size_t policyOffset(size_t policy) {
    return offsetof(sUpmBlock, policies) + policy * sizeof(sPolicy);
}

// The reports that print parts of the block.
inline constexpr Views inDump = 1;
inline constexpr Views inLimits = 2;
inline constexpr Views inThermal = 4;
inline constexpr Views inPolicyReport = 8;

// One row per line. A row with a bound is writable, by the wizard and by orbelstatctl.
// clang-format off
inline constexpr Row powerLimitRows[] = {
    ROW(sPowerLimits, cpuPPL).upTo(100000),
    ROW(sPowerLimits, cpuPL1).upTo(100000),
    ROW(sPowerLimits, cpuPL2).upTo(100000),
    ROW(sPowerLimits, cpuPL4).upTo(100000),
    ROW(sPowerLimits, memPL1),
    ROW(sPowerLimits, memPL2),
    ROW(sPowerLimits, sysPL1).upTo(100000),
    ROW(sPowerLimits, sysPL2).upTo(100000),
    ROW(sPowerLimits, dimmBwThrtlPerc).upTo(100),
    ROW(sPowerLimits, plStatus).onlyIn(inLimits),
    ROW(sPowerLimits, cpuPLAvailability),
    ROW(sPowerLimits, c0ResAvailablity),
    ROW(sPowerLimits, policyStatus),
    ROW(sPowerLimits, readRTC),
};

inline constexpr Row thermalRows[] = {
    ROW(sCpuPwrThermal, rawdts).upTo(100000),
    ROW(sCpuPwrThermal, thermalMargin).upTo(100000),
    ROW(sCpuPwrThermal, cpupkgPwr).upTo(100000),
    ROW(sCpuPwrThermal, tarTemp).upTo(100000),
    ROW(sCpuPwrThermal, cpuEnergy),
    ROW(sCpuPwrThermal, cpuEnergyTS),
    ROW(sCpuPwrThermal, dimmPwr).upTo(1000000000),
    ROW(sCpuPwrThermal, prevdimmPwr),
    ROW(sCpuPwrThermal, cpuAvailablity),
    ROW(sCpuPwrThermal, rawdtsAvailablity),
    ROW(sCpuPwrThermal, thermalMarginAvailablity),
    ROW(sCpuPwrThermal, cpupkgPwrAvailablity),
    ROW(sCpuPwrThermal, tarTempAvailablity),
    ROW(sCpuPwrThermal, cpuEnergyAvailablity),
    ROW(sCpuPwrThermal, cpuEnergyTSAvailablity),
};

inline constexpr Row policyStateRows[] = {
    line("Policy State Data:"),
    ROW(sPolicyStateData, policyUpdInx),
    ROW(sPolicyStateData, policyId),
    ROW(sPolicyStateData, policyExcursionState),
    line("-----------------------------------------------------------------------------------------------------------"),
    ROW(sPolicyStateData, cpuWattsPowerFloor),
    ROW(sPolicyStateData, safePolicyPsuPowerReadingTimeout),
    line("------------------------------------------------------------------------------------------------------------"),
};

// All members in record order. The reports print them, and the policy editor numbers them, in this
// order.
inline constexpr Row policyRows[] = {
    ROW(sPolicy, state).asFlag(),
    ROW(sPolicy, policyPowerLimit).upTo(100000).onlyIn(inPolicyReport),
    ROW(sPolicy, policyPowerLimit).as(Format::unsignedDecimal).onlyIn(inDump),
    ROW(sPolicy, policyPowerLimitMultiplier).upTo(1000),
    ROW(sPolicy, PolicyAggressiveIntervalEnable).asFlag(),
    ROW(sPolicy, PolicySetLimitToFloorImmediateEnable).asFlag(),
    ROW(sPolicy, PolicyResponseTimeLimit).truncatingUpTo(1000000),
    ROW(sPolicy, PolicyTotalResponseDelay).truncatingUpTo(1000000),
    ROW(sPolicy, PolicyRampUpDelay).truncatingUpTo(1000000),
    ROW(sPolicy, PolicyRampUpDuration).truncatingUpTo(1000000),
    ROW(sPolicy, limitingState).asFlag(),
    ROW(sPolicy, PolicyActiveState).asFlag(),
    ROW(sPolicy, NumResponseTimeLimitInterval).truncatingUpTo(100000),
    ROW(sPolicy, NumDecisionInterval).truncatingUpTo(100000),
    ROW(sPolicy, NumRampUpDurationInterval).truncatingUpTo(100000),
    ROW(sPolicy, NumRampUpDelayInterval).truncatingUpTo(100000),
    ROW(sPolicy, NumLimitParkingInterval).truncatingUpTo(100000),
    ROW(sPolicy, NumTotalResponseDelayInterval).truncatingUpTo(100000),
    ROW(sPolicy, NumRampUpRaiseLimitInterval).truncatingUpTo(100000),
    ROW(sPolicy, LoadSubsidedThreshold).upTo(100000),
    ROW(sPolicy, PolicyEnableOverride).asFlag(),
    ROW(sPolicy, LimitParkingDuration).truncatingUpTo(1000000),
    ROW(sPolicy, LoadSubsidedPercentThreshold).upTo(100),
    ROW(sPolicy, SFMultiplier).truncatingUpTo(100000),
    ROW(sPolicy, SFOffset).truncatingUpTo(100000).as(Format::signExtended),
    ROW(sPolicy, PolicyHysteresis).upTo(100000),
    ROW(sPolicy, PolicyDomain).upTo(3),
    ROW(sPolicy, PolicyPwrInputSource).truncatingUpTo(UINT32_MAX),
    ROW(sPolicy, PolicyPwrInputSimulData).upTo(UINT32_MAX),
    ROW(sPolicy, PolicyExcursion).truncatingUpTo(UINT32_MAX),
    ROW(sPolicy, PolicyExcursionCounter).truncatingUpTo(UINT32_MAX),
};

inline constexpr Row upmRows[] = {
    line("\n   Power Limits:  ").onlyIn(inDump | inLimits),
    GROUP(sUpmBlock, powerLimits, powerLimitRows).onlyIn(inDump | inLimits),
    line("\n   CPU Power Thermal:  ").onlyIn(inDump | inThermal),
    GROUP(sUpmBlock, cpuPwrThermal, thermalRows).onlyIn(inDump | inThermal),
    // The reports print these with their own functions.
    GROUP(sUpmBlock, policyState, policyStateRows).onlyIn(inNoView),
    GROUP(sUpmBlock, policies, policyRows).onlyIn(inNoView),
    ROW(sUpmBlock, timestamp).onlyIn(inNoView),
};
// clang-format on

// Returns whether the rows with a bound cover the policy record without gaps, in record order.
consteval bool allPolicyMembersHaveRows() {
    size_t end = 0;
    for (const Row &row : policyRows) {
        if (row.bound && row.offset == end) {
            end += row.size;
        }
    }
    return end == offsetof(sPolicy, reserved1);
}
static_assert(allPolicyMembersHaveRows(),
              "a member of the policy record has no row with a bound, or its row is out of order");

// Returns the start of the block in a copy of the power reporting section.
inline const uint8_t *blockIn(const uint8_t *section) {
    return section + upmBlockOffset;
}

// Returns the block's timestamp from a copy of the power reporting section.
inline uint64_t loadTimestamp(const uint8_t *section) {
    return load<uint64_t>(blockIn(section) + offsetof(sUpmBlock, timestamp));
}

// Writes `length` bytes at offset `offset` of the block, with a single call of the platform's
// library. This is the only function that writes the block. Returns 0, or the library's error
// code, which orbelstatprobe ignores: a failed write shows in the next read. Returns -ERANGE, and
// does not call the library, if the range is not within the block.
int writeUpmBlock(size_t offset, const void *bytes, size_t length);
