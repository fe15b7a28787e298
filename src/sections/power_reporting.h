// The power reporting section (PWR_RPTG_SEC) and the report of its front, which holds the power
// history, utilisation statistics and readings. Its tail is the UPM data block.
#pragma once

#include "sections/power_consumption.h"
#include "sections/utilisation.h"
#include "sections/voltage_regulator.h"
#include "shm/shm.h"

// The record of the section. Bytes that nothing uses are called reserved1, reserved2, ...
struct __attribute__((packed)) sTolmAbsPowerReporting {
    uint16_t peakHeadroom;
    uint16_t instHeadroom;
    uint16_t bladePowerAllocation;
    uint8_t reserved1[2];
    uint16_t psuRedundancyCapability;
    uint32_t systemCapabilities;
    uint16_t activePolicyCapWatts;
    uint8_t reserved2[14];
    uint16_t lastHourAvgPower;
    Time32 lastHourMinPowerTime;
    uint16_t lastHourMinPower;
    uint16_t lastHourMaxPower;
    Time32 lastHourMaxPowerTime;
    uint16_t lastDayAvgPower;
    uint16_t lastDayMinPower;
    Time32 lastDayMinPowerTime;
    Time32 lastDayMaxPowerTime;
    uint16_t lastDayMaxPower;
    uint16_t lastWeekAvgPower;
    uint32_t lastWeekMinPowerTime; // printed as a number, unlike the other times
    uint16_t lastWeekMinPower;
    uint16_t lastWeekMaxPower;
    uint8_t reserved3[4];
    char activePolicyName[64];
    uint16_t activePolicyValue1;
    uint16_t activePolicyValue2;
    struct __attribute__((packed)) {
        uint16_t instWattsPSU1_2;
        float instAmpsPSU1_2;
        uint16_t SCViewSledPwr;
        uint16_t SCViewSledCur;
    } sysPwrConsumption;
    struct __attribute__((packed)) {
        uint8_t collectionPending;
        uint8_t startMonitoring;
        uint32_t retryCtr;
        uint8_t cmaxValid;
        uint8_t mmaxValid;
        uint8_t imaxValid;
        uint64_t CUPS_CMAX;
        uint64_t CUPS_MMAX;
        uint64_t CUPS_IMAX;
    } peciCupsUtilLimits;
    uint16_t CUPS_CPU;
    uint16_t CUPS_MEM;
    uint16_t CUPS_IO;
    uint16_t CUPS_SYS;
    sCupsPeriod last_hour;
    sCupsPeriod last_day;
    sCupsPeriod last_week;
    uint16_t peak_util_cups_cpu;
    uint16_t peak_util_cups_io;
    uint16_t peak_util_cups_mem;
    uint16_t peak_util_cups_sys;
    Time32 peak_util_cups_cpu_time;
    Time32 peak_util_cups_io_time;
    Time32 peak_util_cups_mem_time;
    Time32 peak_util_cups_sys_time;
    sOOBData hour_oob_data[60]; // one per minute
    sOOBData day_oob_data[24];  // one per hour
    sOOBData week_oob_data[14]; // one per day
    Time32 peak_util_start_time_cups_cpu;
    Time32 peak_util_start_time_cups_io;
    Time32 peak_util_start_time_cups_mem;
    Time32 peak_util_start_time_cups_sys;
    sPwrConsEntry CpuPwrCons[5];
    sPwrConsEntry MemPwrCons[9];
    sPwrConsEntry SystemInputPwrCons;
    sPwrConsEntry SystemOutputPwrCons;
    struct __attribute__((packed)) {
        Time32 time;
        uint16_t currentChannel1;
        uint16_t voltageChannel1;
        uint16_t currentChannel2;
        uint16_t voltageChannel2;
        uint16_t currentChannel3;
        uint16_t voltageChannel3;
    } subSystemCurrentChannel;
    struct __attribute__((packed)) {
        Time32 time;
        float powerChannel1;
        float powerChannel2;
        float powerChannel3;
    } subSystemPowerChannel;
    struct __attribute__((packed)) {
        Time32 time;
        uint16_t prochotcntr;
        uint16_t pwrbrkcntr;
        uint16_t smbaltcntr;
        float storagePower;
        float pciePower;
        float fanPower;
        float gpuFanPower;
        float computeBoardPower;
        float gpuBoardPower;
        float psbPower;
    } subSystemPowerData;
    sVcoreVRData vcoreVRData[20];
    uint8_t reserved4[24470];
    uint8_t cpuSample[25]; // sub-second samples
    uint8_t reserved5[1];
    uint8_t upmBlock[1616]; // see upm/upm_block.h
};
static_assert(sizeof(sTolmAbsPowerReporting) == powerReportingSection.size);
static_assert(offsetof(sTolmAbsPowerReporting, activePolicyName) == 72);
static_assert(offsetof(sTolmAbsPowerReporting, sysPwrConsumption) == 140);
static_assert(offsetof(sTolmAbsPowerReporting, peciCupsUtilLimits) == 150);
static_assert(offsetof(sTolmAbsPowerReporting, CUPS_CPU) == 183);
static_assert(offsetof(sTolmAbsPowerReporting, last_hour) == 191);
static_assert(offsetof(sTolmAbsPowerReporting, last_day) == 247);
static_assert(offsetof(sTolmAbsPowerReporting, last_week) == 303);
static_assert(offsetof(sTolmAbsPowerReporting, peak_util_cups_cpu) == 359);
static_assert(offsetof(sTolmAbsPowerReporting, hour_oob_data) == 383);
static_assert(offsetof(sTolmAbsPowerReporting, day_oob_data) == 863);
static_assert(offsetof(sTolmAbsPowerReporting, week_oob_data) == 1055);
static_assert(offsetof(sTolmAbsPowerReporting, peak_util_start_time_cups_cpu) == 1167);
static_assert(offsetof(sTolmAbsPowerReporting, subSystemCurrentChannel) == 1455);
static_assert(offsetof(sTolmAbsPowerReporting, subSystemPowerChannel) == 1471);
static_assert(offsetof(sTolmAbsPowerReporting, subSystemPowerData) == 1487);
static_assert(offsetof(sTolmAbsPowerReporting, vcoreVRData) == 1525);
static_assert(offsetof(sTolmAbsPowerReporting, cpuSample) == 28635);
static_assert(offsetof(sTolmAbsPowerReporting, upmBlock) == 28661);

// The rows of one resource's statistics over a period. Some labels do not follow the pattern; their
// rows are written out below.
#define AVERAGE_AND_MINIMUM(period, resource)                                                      \
    ROW(sTolmAbsPowerReporting, period.resource.average).labelled(#period "_avg_cups_" #resource), \
        ROW(sTolmAbsPowerReporting, period.resource.minimum)                                       \
            .labelled(#period "_min_cups_" #resource),                                             \
        ROW(sTolmAbsPowerReporting, period.resource.minimumTime)                                   \
            .labelled(#period "_min_cups_" #resource "_time")
#define MAXIMUM(period, resource)                                                                  \
    ROW(sTolmAbsPowerReporting, period.resource.maximum).labelled(#period "_max_cups_" #resource)
#define MAXIMUM_TIME(period, resource)                                                             \
    ROW(sTolmAbsPowerReporting, period.resource.maximumTime)                                       \
        .labelled(#period "_max_cups_" #resource "_time")
#define STATISTICS(period, resource)                                                               \
    AVERAGE_AND_MINIMUM(period, resource), MAXIMUM(period, resource), MAXIMUM_TIME(period, resource)

// One row per line.
// clang-format off
inline constexpr Row powerReportingRows[] = {
    ROW(sTolmAbsPowerReporting, peakHeadroom),
    ROW(sTolmAbsPowerReporting, instHeadroom),
    ROW(sTolmAbsPowerReporting, bladePowerAllocation),
    ROW(sTolmAbsPowerReporting, psuRedundancyCapability),
    ROW(sTolmAbsPowerReporting, systemCapabilities).as(Format::signedDecimal),
    ROW(sTolmAbsPowerReporting, activePolicyCapWatts),
    ROW(sTolmAbsPowerReporting, lastHourAvgPower),
    ROW(sTolmAbsPowerReporting, lastHourMinPowerTime),
    ROW(sTolmAbsPowerReporting, lastHourMinPower),
    ROW(sTolmAbsPowerReporting, lastHourMaxPower),
    ROW(sTolmAbsPowerReporting, lastHourMaxPowerTime),
    ROW(sTolmAbsPowerReporting, lastDayAvgPower),
    ROW(sTolmAbsPowerReporting, lastDayMinPower),
    ROW(sTolmAbsPowerReporting, lastDayMinPowerTime),
    ROW(sTolmAbsPowerReporting, lastDayMaxPowerTime),
    ROW(sTolmAbsPowerReporting, lastDayMaxPower),
    ROW(sTolmAbsPowerReporting, lastWeekAvgPower),
    ROW(sTolmAbsPowerReporting, lastWeekMinPower),
    ROW(sTolmAbsPowerReporting, lastWeekMinPowerTime).as(Format::signedDecimal),
    ROW(sTolmAbsPowerReporting, lastWeekMaxPower),
    ROW(sTolmAbsPowerReporting, activePolicyName),
    ROW(sTolmAbsPowerReporting, activePolicyValue1),
    ROW(sTolmAbsPowerReporting, activePolicyValue2),
    line("   sPowerReportSection.sysPwrConsumption :"),
    ROW(sTolmAbsPowerReporting, sysPwrConsumption.instWattsPSU1_2),
    ROW(sTolmAbsPowerReporting, sysPwrConsumption.instAmpsPSU1_2),
    ROW(sTolmAbsPowerReporting, sysPwrConsumption.SCViewSledPwr),
    ROW(sTolmAbsPowerReporting, sysPwrConsumption.SCViewSledCur),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.collectionPending),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.startMonitoring),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.retryCtr),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.cmaxValid),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.mmaxValid),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.imaxValid),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.CUPS_CMAX),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.CUPS_MMAX),
    ROW(sTolmAbsPowerReporting, peciCupsUtilLimits.CUPS_IMAX),
    ROW(sTolmAbsPowerReporting, CUPS_CPU),
    ROW(sTolmAbsPowerReporting, CUPS_MEM),
    ROW(sTolmAbsPowerReporting, CUPS_IO),
    ROW(sTolmAbsPowerReporting, CUPS_SYS),
    line("   sPowerReportSection CUPS for last hour:"),
    STATISTICS(last_hour, cpu),
    STATISTICS(last_hour, io),
    AVERAGE_AND_MINIMUM(last_hour, mem),
    MAXIMUM(last_hour, mem),
    ROW(sTolmAbsPowerReporting, last_hour.mem.maximumTime).labelled("last_hour_max_cups_men_time"),
    AVERAGE_AND_MINIMUM(last_hour, sys),
    ROW(sTolmAbsPowerReporting, last_hour.sys.maximum).verbatim("   sPowerReportSection.last_hour_max_cups_sys------ "),
    MAXIMUM_TIME(last_hour, sys),
    line("   sPowerReportSection CUPS for last_day:"),
    STATISTICS(last_day, cpu),
    STATISTICS(last_day, io),
    AVERAGE_AND_MINIMUM(last_day, mem),
    MAXIMUM(last_day, mem),
    ROW(sTolmAbsPowerReporting, last_day.mem.maximumTime).labelled("last_day_max_cups_men_time"),
    AVERAGE_AND_MINIMUM(last_day, sys),
    ROW(sTolmAbsPowerReporting, last_day.sys.maximum).verbatim("   sPowerReportSection.last_day_max_cups_sys------ "),
    MAXIMUM_TIME(last_day, sys),
    line("   sPowerReportSection CUPS for last week:"),
    STATISTICS(last_week, cpu),
    STATISTICS(last_week, io),
    STATISTICS(last_week, mem),
    STATISTICS(last_week, sys),
    ROW(sTolmAbsPowerReporting, peak_util_cups_cpu),
    ROW(sTolmAbsPowerReporting, peak_util_cups_io),
    ROW(sTolmAbsPowerReporting, peak_util_cups_mem),
    ROW(sTolmAbsPowerReporting, peak_util_cups_sys),
    ROW(sTolmAbsPowerReporting, peak_util_cups_cpu_time),
    ROW(sTolmAbsPowerReporting, peak_util_cups_io_time),
    ROW(sTolmAbsPowerReporting, peak_util_cups_mem_time),
    ROW(sTolmAbsPowerReporting, peak_util_cups_sys_time),
    line("   sPowerReportSection.hour_oob_data.OOBData[0-59] (average readings, last 60 minutes):"),
    GROUP(sTolmAbsPowerReporting, hour_oob_data, readingRows).verbatim("   Last minute-"),
    line("\n   sPowerReportSection.day_oob_data.OOBData[0-23] (average readings, last 24 hours):"),
    GROUP(sTolmAbsPowerReporting, day_oob_data, readingRows).verbatim("   Last hour-"),
    line("\n   sPowerReportSection.week_oob_data.OOBData[0-13] (average readings, last 14 days):"),
    GROUP(sTolmAbsPowerReporting, week_oob_data, readingRows).verbatim("   Last day-"),
    line(""),
    ROW(sTolmAbsPowerReporting, peak_util_start_time_cups_cpu).as(Format::timeOnly),
    ROW(sTolmAbsPowerReporting, peak_util_start_time_cups_mem).as(Format::timeOnly),
    ROW(sTolmAbsPowerReporting, peak_util_start_time_cups_io).as(Format::timeOnly).verbatim("   sPowerReportSection.peak_util_start_time_cups_io ------- "),
    ROW(sTolmAbsPowerReporting, peak_util_start_time_cups_sys).as(Format::timeOnly),
    line("\n   sPowerReportSection.power monitoring consumption data:"),
    GROUP(sTolmAbsPowerReporting, CpuPwrCons, consumptionRows),
    GROUP(sTolmAbsPowerReporting, MemPwrCons, consumptionRows),
    GROUP(sTolmAbsPowerReporting, SystemInputPwrCons, consumptionRows),
    GROUP(sTolmAbsPowerReporting, SystemOutputPwrCons, consumptionRows),
    ROW(sTolmAbsPowerReporting, subSystemCurrentChannel.currentChannel1),
    ROW(sTolmAbsPowerReporting, subSystemCurrentChannel.voltageChannel1),
    ROW(sTolmAbsPowerReporting, subSystemCurrentChannel.currentChannel2),
    ROW(sTolmAbsPowerReporting, subSystemCurrentChannel.voltageChannel2),
    ROW(sTolmAbsPowerReporting, subSystemCurrentChannel.currentChannel3),
    ROW(sTolmAbsPowerReporting, subSystemCurrentChannel.voltageChannel3),
    ROW(sTolmAbsPowerReporting, subSystemCurrentChannel.time),
    ROW(sTolmAbsPowerReporting, subSystemPowerChannel.powerChannel1),
    ROW(sTolmAbsPowerReporting, subSystemPowerChannel.powerChannel2),
    ROW(sTolmAbsPowerReporting, subSystemPowerChannel.powerChannel3),
    ROW(sTolmAbsPowerReporting, subSystemPowerChannel.time),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.storagePower),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.pciePower),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.fanPower),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.gpuFanPower),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.computeBoardPower),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.gpuBoardPower),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.psbPower),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.prochotcntr),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.pwrbrkcntr),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.smbaltcntr),
    ROW(sTolmAbsPowerReporting, subSystemPowerData.time),
    GROUP(sTolmAbsPowerReporting, vcoreVRData, regulatorRows),
    line("\n   cups sub second sample data: "),
    ROW(sTolmAbsPowerReporting, cpuSample).as(Format::threePlaces).verbatim("   cpuSample = "),
};
// clang-format on
#undef AVERAGE_AND_MINIMUM
#undef MAXIMUM
#undef MAXIMUM_TIME
#undef STATISTICS

// Prints the front of the section. If the allocation or the read fails, prints only a message.
void dumpPowerReporting();
