// The PSU information section (PSU_INFO_SEC) and its report.
#pragma once

#include "rows/row.h"
#include "shm/shm.h"

inline constexpr int32_t psuCount = 12;

// One power supply unit. Bytes that nothing uses are called reserved1, reserved2, ...
struct __attribute__((packed)) sTolmAbsPSUInfo {
    uint16_t inputRatingWatts;
    uint16_t outputRatingWatts;
    uint8_t lineStatus;
    uint8_t lineStatusShadow;
    uint16_t status;
    uint8_t reserved1[1];
    uint8_t psuType; // if 1, reports show u16VinDCMax, else u16VinMax
    uint8_t reserved2[2];
    uint32_t psuCapabilities;
    uint8_t psuSlot;
    char psuPartNum[9];
    std::byte psuFRUInfo[256];
    char psuComponentId[4];
    uint8_t reserved3[6];
    uint16_t inputRatingAmps;
    uint8_t reserved4[2];
    uint32_t inputRatingVolts;
    uint8_t psuISPMode;
    uint8_t psuNonCommMode;
    uint16_t psuACRatedWatts;
    uint16_t psuDCRatedWatts;
    uint16_t psuACRatedAmps;
    uint16_t psuACRatedVolts;
    uint8_t psuAddressesValid;
    char psuFwVersion[15];
    uint8_t psuInstalled;
    uint8_t psuPMBus;
    uint8_t psuFwUpdate;
    uint8_t psuFwRequestStatus;
    uint8_t psuFwUpdateStatus;
    uint8_t reserved5[1];
    uint8_t psuFwUpdatePwrOFF;
    uint8_t u8PMBusCRCFailEvent;
    uint16_t psuAmpReading;
    uint16_t psuPwrReading;
    uint8_t u8PSUFeatures;
    uint8_t u8SleepTrip;
    uint8_t u8WakeTrip;
    uint8_t reserved6[1];
    uint16_t u16PinMax;
    uint16_t u16VinMax;
    uint16_t u16IinMax;
    uint16_t u16PoutMax;
    uint16_t u16PoutMaxDisplay;
    uint16_t u16VoutMax;
    uint16_t u16IoutMax;
    uint8_t u8PMBusRevision;
    uint8_t u8VRSubsystem;
    uint8_t u8PSUFRURead;
    char u8SerialNumber[16];
    uint8_t u8PSUEfficiency[22];
    uint8_t reserved7[3];
    float Pin;
    float Iin;
    float Vin;
    float Pout;
    float Iout;
    float Vout;
    float FanSpeed1;
    uint8_t reserved8[36];
    uint32_t u16VinDCMax; // 4 bytes, despite the name
    uint8_t reserved9[316];
    float IinOCWLimitMax;
    float IinOCWLimitMin;
    float inputOCWHalf;
    float inputOCW[2];
    float psuShareMargin;
    uint8_t reserved10[8];
};
static_assert(sizeof(sTolmAbsPSUInfo) == 816);
static_assert(offsetof(sTolmAbsPSUInfo, psuFRUInfo) == 26);
static_assert(offsetof(sTolmAbsPSUInfo, psuFwVersion) == 311);
static_assert(offsetof(sTolmAbsPSUInfo, u16PinMax) == 342);
static_assert(offsetof(sTolmAbsPSUInfo, Pin) == 400);
static_assert(offsetof(sTolmAbsPSUInfo, u16VinDCMax) == 464);
static_assert(offsetof(sTolmAbsPSUInfo, IinOCWLimitMax) == 784);

// The bus and address of a power supply unit.
struct __attribute__((packed)) sPSUBusInfo {
    uint8_t bus;
    uint8_t physicalBus;
    uint8_t address;
    char deviceName[32];
};
static_assert(sizeof(sPSUBusInfo) == 35);

// The record of the section.
struct __attribute__((packed)) sPSUInfoSection {
    sTolmAbsPSUInfo units[psuCount];
    sPSUBusInfo buses[psuCount];
};
static_assert(sizeof(sPSUInfoSection) == psuInfoSection.size);
static_assert(offsetof(sPSUInfoSection, buses) == 9792);

// The report of a unit shows one of two maximum input voltages, depending on psuType.
inline constexpr Views withVinDCMax = 1;
inline constexpr Views withVinMax = 2;

// One row per line. The report prints the bus record between the two parts of the unit's record.
// clang-format off
inline constexpr Row psuRowsBeforeBus[] = {
    ROW(sTolmAbsPSUInfo, inputRatingWatts),
    ROW(sTolmAbsPSUInfo, outputRatingWatts),
    ROW(sTolmAbsPSUInfo, psuFwVersion).as(Format::hexListAndText).verbatim("   sPSUPwrSection.psuFwVersion[] --------------- "),
    ROW(sTolmAbsPSUInfo, lineStatus),
    ROW(sTolmAbsPSUInfo, lineStatusShadow),
    ROW(sTolmAbsPSUInfo, status),
    ROW(sTolmAbsPSUInfo, psuType),
    ROW(sTolmAbsPSUInfo, psuCapabilities).as(Format::signedDecimal),
    ROW(sTolmAbsPSUInfo, psuSlot),
    ROW(sTolmAbsPSUInfo, psuPartNum).as(Format::hexListAndText),
    ROW(sTolmAbsPSUInfo, psuFRUInfo),
    ROW(sTolmAbsPSUInfo, psuComponentId).as(Format::hexList),
    ROW(sTolmAbsPSUInfo, psuNonCommMode),
    ROW(sTolmAbsPSUInfo, psuISPMode),
    ROW(sTolmAbsPSUInfo, inputRatingAmps),
    ROW(sTolmAbsPSUInfo, inputRatingVolts).as(Format::signedDecimal),
};

inline constexpr Row psuBusRows[] = {
    ROW(sPSUBusInfo, bus),
    ROW(sPSUBusInfo, physicalBus),
    ROW(sPSUBusInfo, address),
    ROW(sPSUBusInfo, deviceName).verbatim("   sPSUPwrSection.psuBus.deviceName ------ "),
};

inline constexpr Row psuRowsAfterBus[] = {
    line(""),
    ROW(sTolmAbsPSUInfo, psuACRatedWatts),
    ROW(sTolmAbsPSUInfo, psuDCRatedWatts),
    ROW(sTolmAbsPSUInfo, psuACRatedAmps),
    ROW(sTolmAbsPSUInfo, psuACRatedVolts),
    ROW(sTolmAbsPSUInfo, psuAddressesValid),
    ROW(sTolmAbsPSUInfo, psuFwVersion).as(Format::hexList),
    ROW(sTolmAbsPSUInfo, psuInstalled),
    ROW(sTolmAbsPSUInfo, psuPMBus),
    ROW(sTolmAbsPSUInfo, psuFwUpdate),
    ROW(sTolmAbsPSUInfo, psuFwRequestStatus),
    ROW(sTolmAbsPSUInfo, psuFwUpdateStatus),
    ROW(sTolmAbsPSUInfo, psuFwUpdatePwrOFF),
    ROW(sTolmAbsPSUInfo, u8PMBusCRCFailEvent),
    ROW(sTolmAbsPSUInfo, psuAmpReading),
    ROW(sTolmAbsPSUInfo, psuPwrReading),
    ROW(sTolmAbsPSUInfo, u8PSUFeatures),
    ROW(sTolmAbsPSUInfo, u8SleepTrip),
    ROW(sTolmAbsPSUInfo, u8WakeTrip),
    ROW(sTolmAbsPSUInfo, u16PinMax),
    ROW(sTolmAbsPSUInfo, u16VinDCMax).as(Format::signedDecimal).verbatim("   sPSUPwrSection.u16VinDCMax ------------- ").onlyIn(withVinDCMax),
    ROW(sTolmAbsPSUInfo, u16VinMax).onlyIn(withVinMax),
    ROW(sTolmAbsPSUInfo, u16IinMax),
    ROW(sTolmAbsPSUInfo, u16PoutMax),
    ROW(sTolmAbsPSUInfo, u16PoutMaxDisplay),
    ROW(sTolmAbsPSUInfo, u16VoutMax),
    ROW(sTolmAbsPSUInfo, u16IoutMax),
    ROW(sTolmAbsPSUInfo, u8PMBusRevision),
    ROW(sTolmAbsPSUInfo, u8VRSubsystem),
    ROW(sTolmAbsPSUInfo, u8PSUFRURead),
    ROW(sTolmAbsPSUInfo, IinOCWLimitMax).verbatim("   sPSUPwrSection.IinOCWLimitMax ---------- "),
    ROW(sTolmAbsPSUInfo, IinOCWLimitMin).verbatim("   sPSUPwrSection.IinOCWLimitMin ---------- "),
    ROW(sTolmAbsPSUInfo, inputOCWHalf).verbatim("   sPSUPwrSection.inputOCWHalf ------------ "),
    ROW(sTolmAbsPSUInfo, psuShareMargin).verbatim("   sPSUPwrSection.psuShareMargin ---------- "),
    ROW(sTolmAbsPSUInfo, inputOCW).onlyIn(inNoView), // printed by the next two rows
    ROW(sTolmAbsPSUInfo, inputOCW[0]).verbatim("   sPSUPwrSection.inputOCW[0] ------ -- "),
    ROW(sTolmAbsPSUInfo, inputOCW[1]).verbatim("   sPSUPwrSection.inputOCW[1] ------ -- "),
    ROW(sTolmAbsPSUInfo, u8SerialNumber).as(Format::hexList),
    ROW(sTolmAbsPSUInfo, u8PSUEfficiency).as(Format::hexList),
    ROW(sTolmAbsPSUInfo, Pin).verbatim("   sPSUPwrSection.Pin --------- "),
    ROW(sTolmAbsPSUInfo, Iin).verbatim("   sPSUPwrSection.Iin ---------- "),
    ROW(sTolmAbsPSUInfo, Vin).verbatim("   sPSUPwrSection.Vin ---------- "),
    ROW(sTolmAbsPSUInfo, Pout).verbatim("   sPSUPwrSection.Pout --------- "),
    ROW(sTolmAbsPSUInfo, Iout).verbatim("   sPSUPwrSection.Iout --------- "),
    ROW(sTolmAbsPSUInfo, Vout).verbatim("   sPSUPwrSection.Vout --------- "),
    ROW(sTolmAbsPSUInfo, FanSpeed1).verbatim("   sPSUPwrSection.FanSpeed1 ---- "),
};
// clang-format on

// Prints all units, installed or not. Each is read by itself, its record first, then its bus
// record. If the allocation or the read of a unit's record fails, prints a message and ends the
// report. A bus record that cannot be read is shown as zeros and an empty name.
void dumpPSUInfo();
