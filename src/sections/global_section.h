// The global power section (PWR_IPMI_GLOBAL_SEC_1) and its two reports.
#pragma once

#include "sections/power_consumption.h"
#include "sections/psu_info.h"
#include "sections/rows/table.h"
#include "shm/shm.h"

// Runs that nobody reads are numbered in order, in each struct by itself.
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
        uint16_t au8CPUMisc[56]; // words, whatever the name says
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
        uint16_t u8Status[psuCount]; // words, whatever the name says
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

// The fields of the section, read off the reports' rows.
Rows globalSectionFields();

// Prints the offset of every member of the record, without reading shared memory.
void printGlobalSectionOffsets();

// Prints the value of every member; a failed allocation or read prints its message only.
void dumpGlobalSection();
