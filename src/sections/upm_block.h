// The UPM data block, the tail of the power reporting section. It stands here, beside the front of
// its record, so that the record is one struct. Reserved runs are never read or written one by one.
#pragma once

#include "sections/row.h"

inline constexpr int cpuCount = 4;
inline constexpr int policyCount = 16;

// CPU power limits and what goes with them. The per-CPU arrays are indexed by CPU.
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
    uint8_t reserved28785[4];
    uint64_t cpuPLAvailability;
    uint8_t c0ResAvailablity[cpuCount];
    uint8_t reserved28801[4];
    uint64_t policyStatus;
    uint64_t readRTC;
};
static_assert(sizeof(sPowerLimits) == 160);

// CPU thermal readings, indexed by CPU where the wizard edits them.
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

struct __attribute__((packed)) sPolicyStateData {
    uint8_t policyUpdInx;
    uint8_t policyId;
    uint8_t policyExcursionState;
    uint8_t reserved29016[5];
    uint16_t cpuWattsPowerFloor;
    uint16_t safePolicyPsuPowerReadingTimeout;
    uint8_t reserved29025[4];
};
static_assert(sizeof(sPolicyStateData) == 16);

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
    powerDomain PolicyDomain;
    uint16_t PolicyPwrInputSource;
    uint32_t PolicyPwrInputSimulData;
    uint16_t PolicyExcursion;
    uint16_t PolicyExcursionCounter;
    uint8_t reserved68[4];
};
static_assert(sizeof(sPolicy) == 72);
static_assert(offsetof(sPolicy, LoadSubsidedThreshold) == 38);
static_assert(offsetof(sPolicy, PolicyHysteresis) == 52);
static_assert(offsetof(sPolicy, PolicyPwrInputSimulData) == 60);
static_assert(offsetof(sPolicy, PolicyExcursionCounter) == 66);

// The run that a clear of the policies writes back, 1176 bytes.
struct __attribute__((packed)) sPolicyData {
    sPolicyStateData stateData;
    sPolicy policies[policyCount];
    uint8_t reserved30181[8];
};
static_assert(sizeof(sPolicyData) == 1176);
