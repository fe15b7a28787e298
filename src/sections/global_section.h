// The global power section (PWR_IPMI_GLOBAL_SEC_1) and its two reports.
#pragma once

#include "sections/power_consumption.h"
#include "sections/psu_info.h"
#include "shm/shm.h"

// The record of the section. Bytes that nothing uses are called reserved1, reserved2, ... within
// each struct.
struct __attribute__((packed)) sPwrIpmiGlobalSec1 {
    struct __attribute__((packed)) {
        uint8_t u8NMSupport;
        uint8_t u8PMBusSupport;
        uint8_t u8RapidOn;
        uint8_t u8PFC;
        uint8_t u8MaxPSU;
        uint8_t u8PSUFWUpdate;
        uint8_t u8RedundancyCapability;
        uint8_t u8RedundancyPolicy;
        uint8_t u8MinPSUCount;
        uint8_t u8PowerCapEnable;
        uint16_t u16PowerCap;
        uint8_t u8PowerCapOwner;
        uint16_t u16MaxConsumption;
        uint16_t u16PlatformSupport;
        uint8_t u8SizeManagedSys;
        uint8_t u8MixedModePSUSupport;
        uint8_t u8PECIOverSMBusSupport;
        uint16_t au8CPUMisc[56]; // 16-bit values, despite the name
        uint8_t reserved1[4];
    } sPowerInfoPWR;
    struct __attribute__((packed)) {
        uint16_t PwrCap;
        uint8_t PwrCapUnits;
        uint8_t PwrCapEnable;
        uint16_t MinPwr;
        uint16_t MaxPwr;
        uint16_t AvailPwr;
        uint8_t SysThrottling;
        uint16_t LowThresh;
        uint16_t HighThresh;
        uint8_t Test;
        uint16_t au16VRAmp[20];
        uint16_t au16VRAmpRange[20];
        uint8_t u8ISCStatus;
        uint8_t u8ISCReason;
        uint8_t u8PSUPoweredFlag;
        uint8_t u8PSUHotplugFlag;
    } sTolmPwrBudgetTypePWR;
    struct __attribute__((packed)) {
        uint16_t u16CurPwrPlat;
        uint16_t u16MinPwrPlat;
        uint16_t u16MaxPwrPlat;
        uint16_t u16AvgPwrPlat;
        uint32_t u32IPMITimeStmp;
    } sNMStatisticsPWR;
    struct __attribute__((packed)) {
        uint8_t u8I2CBus;
        uint8_t u8I2CReadSecondaryAddr;
        uint8_t u8I2CWriteSecondaryAddr;
        uint8_t u8InterruptNum;
    } sTolmPowerPOSConfigPWR;
    struct __attribute__((packed)) {
        uint16_t pwr;
        uint16_t amps;
    } sTolmPwrDataTypePWR;
    struct __attribute__((packed)) {
        uint16_t u8Status[psuCount]; // 16-bit values, despite the name
        uint8_t u8StatusValid[psuCount];
        uint8_t u8TempReadingValid[psuCount];
        uint8_t u8RedundancySensorEnabled;
        uint8_t u8RedundancySensorValid;
        uint8_t u8RedundancyStatus;
        uint8_t u8CalculatedRedundancy;
        uint8_t u8RedundancyValidState;
        uint8_t reserved1[4];
        uint8_t u8StatusFAKE[psuCount];
        uint8_t u8PSUFaultStatusFAKE[psuCount];
        uint8_t testingEnabled;
    } sPSStateInfoPWR;
    struct __attribute__((packed)) {
        uint8_t u8SDRMultiplier;
        uint32_t u32CPStartTime;
        uint32_t u32CumulPower;
        uint32_t u32PeakStartTime;
        uint32_t u32PeakPowerTime;
        uint16_t u16PeakPower;
        uint32_t u32PeakCurrTime;
        uint16_t u16PeakCurrent;
        uint16_t u16AvgPower;
    } sSysLevelSensor;
    uint8_t reserved1[90];
    uint8_t u8BladeFormFactor;
    uint8_t u8BPPresenceCount;
    uint8_t u8AlertDestinationSet;
    uint8_t u8EnergyCounterUnitSet;
    uint8_t u8powerPending;
    uint8_t u8ChassisInfraNotReadyFlag;
    uint8_t u8BadTimestamp;
    uint8_t u8BadTimestampCP;
    uint8_t u8PowerONOFFCount;
    uint8_t u8ChassisControlFlag;
    uint16_t au16OOBStat1minAvg[4];
    uint32_t lclPwrMsgIdStatus;
    uint8_t reserved2[4];
    uint8_t u8NMState;
    uint8_t u8InitAgentComplete;
    uint8_t u8PSSensorInitComplete;
    uint8_t u8PowerONOFFState;
    uint8_t u8PSUFaultCheck;
    sPwrConsEntry CpuPowerStat[4];
    uint8_t reserved3[17];
    sPwrConsEntry MemPowerStat[8];
    uint8_t reserved4[17];
    uint8_t NMHealth;
    uint8_t u8PFPONCount;
    uint8_t reserved5[44];
    uint8_t throttleState;
    uint8_t u8IsMovarTimeSet;
    uint8_t reserved6[26];
    uint8_t PowerOnReqPSyS[5];
};
static_assert(sizeof(sPwrIpmiGlobalSec1) == globalPowerSection.size);
static_assert(offsetof(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR) == 136);
static_assert(offsetof(sPwrIpmiGlobalSec1, sNMStatisticsPWR) == 236);
static_assert(offsetof(sPwrIpmiGlobalSec1, sTolmPowerPOSConfigPWR) == 248);
static_assert(offsetof(sPwrIpmiGlobalSec1, sTolmPwrDataTypePWR) == 252);
static_assert(offsetof(sPwrIpmiGlobalSec1, sPSStateInfoPWR) == 256);
static_assert(offsetof(sPwrIpmiGlobalSec1, sSysLevelSensor) == 338);
static_assert(offsetof(sPwrIpmiGlobalSec1, u8BladeFormFactor) == 455);
static_assert(offsetof(sPwrIpmiGlobalSec1, CpuPowerStat) == 486);
static_assert(offsetof(sPwrIpmiGlobalSec1, MemPowerStat) == 571);
static_assert(offsetof(sPwrIpmiGlobalSec1, NMHealth) == 724);
static_assert(offsetof(sPwrIpmiGlobalSec1, throttleState) == 770);
static_assert(offsetof(sPwrIpmiGlobalSec1, PowerOnReqPSyS) == 798);

// The two reports.
inline constexpr Views inOffsets = 1;
inline constexpr Views inValues = 2;

// One row per line.
// clang-format off
inline constexpr Row globalSectionRows[] = {
    line(""),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8NMSupport),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8PMBusSupport),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8RapidOn),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8PFC),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8MaxPSU),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8PSUFWUpdate),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8RedundancyCapability),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8RedundancyPolicy),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8MinPSUCount),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8PowerCapEnable),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u16PowerCap),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8PowerCapOwner),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u16MaxConsumption),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u16PlatformSupport),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8SizeManagedSys),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8MixedModePSUSupport),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.u8PECIOverSMBusSupport),
    ROW(sPwrIpmiGlobalSec1, sPowerInfoPWR.au8CPUMisc).as(Format::hexList),
    line(""),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.PwrCap),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.PwrCapUnits),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.PwrCapEnable),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.MinPwr),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.MaxPwr),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.AvailPwr),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.SysThrottling),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.LowThresh),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.HighThresh),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.Test),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.au16VRAmp).as(Format::hexList),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.au16VRAmpRange).as(Format::hexList).onlyIn(inOffsets),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.au16VRAmpRange).as(Format::hexList).verbatim("   sTolmPwrBudgetTypePWR.au16VRAmpRange[] ------").onlyIn(inValues),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.u8ISCStatus),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.u8ISCReason),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.u8PSUPoweredFlag),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrBudgetTypePWR.u8PSUHotplugFlag),
    line(""),
    ROW(sPwrIpmiGlobalSec1, sNMStatisticsPWR.u16CurPwrPlat),
    ROW(sPwrIpmiGlobalSec1, sNMStatisticsPWR.u16MinPwrPlat),
    ROW(sPwrIpmiGlobalSec1, sNMStatisticsPWR.u16MaxPwrPlat),
    ROW(sPwrIpmiGlobalSec1, sNMStatisticsPWR.u16AvgPwrPlat),
    ROW(sPwrIpmiGlobalSec1, sNMStatisticsPWR.u32IPMITimeStmp).as(Format::signedDecimal),
    line(""),
    ROW(sPwrIpmiGlobalSec1, sTolmPowerPOSConfigPWR.u8I2CBus),
    ROW(sPwrIpmiGlobalSec1, sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr).as(Format::hex).verbatim("   sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr -- "),
    ROW(sPwrIpmiGlobalSec1, sTolmPowerPOSConfigPWR.u8I2CWriteSecondaryAddr).as(Format::hex).verbatim("   sTolmPowerPOSConfigPWR.u8I2CWriteSecondaryAddr - "),
    ROW(sPwrIpmiGlobalSec1, sTolmPowerPOSConfigPWR.u8InterruptNum),
    line(""),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrDataTypePWR.pwr),
    ROW(sPwrIpmiGlobalSec1, sTolmPwrDataTypePWR.amps),
    line(""),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8Status).as(Format::hexList4),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8StatusValid).as(Format::labelledDecimalList),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8TempReadingValid).as(Format::labelledDecimalList),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8RedundancySensorEnabled),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8RedundancySensorValid),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8RedundancyStatus),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8CalculatedRedundancy),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8RedundancyValidState),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8StatusFAKE).as(Format::hexList),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.u8PSUFaultStatusFAKE).as(Format::hexList),
    ROW(sPwrIpmiGlobalSec1, sPSStateInfoPWR.testingEnabled),
    line(""),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u8SDRMultiplier),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u32CPStartTime).as(Format::signedDecimal),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u32CumulPower).as(Format::signedDecimal),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u32PeakStartTime).as(Format::signedDecimal),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u32PeakPowerTime).as(Format::signedDecimal),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u16PeakPower),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u32PeakCurrTime).as(Format::signedDecimal),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u16PeakCurrent),
    ROW(sPwrIpmiGlobalSec1, sSysLevelSensor.u16AvgPower),
    line(""),
    ROW(sPwrIpmiGlobalSec1, u8BladeFormFactor),
    ROW(sPwrIpmiGlobalSec1, u8BPPresenceCount),
    ROW(sPwrIpmiGlobalSec1, u8AlertDestinationSet),
    ROW(sPwrIpmiGlobalSec1, u8EnergyCounterUnitSet),
    ROW(sPwrIpmiGlobalSec1, u8powerPending),
    ROW(sPwrIpmiGlobalSec1, u8ChassisInfraNotReadyFlag),
    ROW(sPwrIpmiGlobalSec1, u8BadTimestamp),
    ROW(sPwrIpmiGlobalSec1, u8BadTimestampCP),
    ROW(sPwrIpmiGlobalSec1, u8PowerONOFFCount),
    ROW(sPwrIpmiGlobalSec1, u8ChassisControlFlag),
    ROW(sPwrIpmiGlobalSec1, au16OOBStat1minAvg).as(Format::decimalList),
    ROW(sPwrIpmiGlobalSec1, lclPwrMsgIdStatus).as(Format::signedDecimal).labelled("lclPwrMsgIdStatus "),
    ROW(sPwrIpmiGlobalSec1, u8NMState),
    ROW(sPwrIpmiGlobalSec1, u8InitAgentComplete),
    ROW(sPwrIpmiGlobalSec1, u8PSSensorInitComplete),
    ROW(sPwrIpmiGlobalSec1, u8PowerONOFFState),
    ROW(sPwrIpmiGlobalSec1, u8PSUFaultCheck),
    GROUP(sPwrIpmiGlobalSec1, CpuPowerStat, powerRows),
    GROUP(sPwrIpmiGlobalSec1, MemPowerStat, powerRows),
    ROW(sPwrIpmiGlobalSec1, NMHealth).labelled("NMHealth -").onlyIn(inOffsets),
    ROW(sPwrIpmiGlobalSec1, u8PFPONCount).labelled("u8PFPONCount -").onlyIn(inOffsets),
    ROW(sPwrIpmiGlobalSec1, throttleState).labelled("throttleState -").onlyIn(inOffsets),
    ROW(sPwrIpmiGlobalSec1, u8IsMovarTimeSet).labelled("u8IsMovarTimeSet -").onlyIn(inOffsets),
    ROW(sPwrIpmiGlobalSec1, PowerOnReqPSyS).verbatim("   PowerOnReqPSyS----------------------------- ").onlyIn(inOffsets),
    ROW(sPwrIpmiGlobalSec1, NMHealth).onlyIn(inValues),
    ROW(sPwrIpmiGlobalSec1, u8PFPONCount).onlyIn(inValues),
    ROW(sPwrIpmiGlobalSec1, throttleState).onlyIn(inValues),
    ROW(sPwrIpmiGlobalSec1, u8IsMovarTimeSet).onlyIn(inValues),
    line("").onlyIn(inValues),
    line(""),
};
// clang-format on

// Prints the offset of every member of the record, without reading shared memory.
void printGlobalSectionOffsets();

// Prints the value of every member. If the allocation or the read fails, prints only a message.
void dumpGlobalSection();
