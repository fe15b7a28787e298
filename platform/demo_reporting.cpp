#include "demo_data.h"
#include "demo_values.h"

namespace {

sCupsPeriodStats statistics(int average, int minutes) {
    return {word(average), word(average / 3), minutesAgo(minutes), word(average * 2),
            minutesAgo(minutes / 2)};
}

sCupsPeriod period(int average, int minutes) {
    return {statistics(average, minutes), statistics(average - 7, minutes + 2),
            statistics(average + 9, minutes + 4), statistics(average + 4, minutes + 6)};
}

template <size_t size> void fillReadings(sOOBData (&readings)[size], int base) {
    for (int i = 0; i < static_cast<int>(size); ++i) {
        readings[i] = {word(base + i % 7), word(base - 11 + i % 5), word(base + 13 - i % 6),
                       word(base + 2 + i % 4)};
    }
}

void fillRegulator(sVcoreVRData &regulator, int number) {
    const float share = 1 + 0.02F * static_cast<float>(number);
    regulator.u32IPMITimeStmp = minutesAgo(number + 1);
    regulator.temp = 41 * share;
    regulator.Vin = 12.05F;
    regulator.Vout = 1.72F;
    regulator.Pout = 22.36F * share;
    regulator.Iout = 13 * share;
    regulator.CntlrTemp = 43.5F * share;
    regulator.Pcc = 24.5F * share;
    regulator.Ocw = 60;
    regulator.FinalICA = 40;
    setText(regulator.DisplayName, "CPU VR %d", number + 1);
    setText(regulator.PlanarId, "PLANAR-%02d", number);
    setText(regulator.VendorName, "VENDOR-%02d", number);
}

} // namespace

void fillPowerReporting(sTolmAbsPowerReporting &record) {
    record.peakHeadroom = 269;
    record.instHeadroom = 638;
    record.bladePowerAllocation = 1250;
    record.psuRedundancyCapability = 1;
    record.systemCapabilities = 21;
    record.activePolicyCapWatts = 900;
    record.lastHourAvgPower = 590;
    record.lastHourMinPowerTime = minutesAgo(52);
    record.lastHourMinPower = 402;
    record.lastHourMaxPower = 833;
    record.lastHourMaxPowerTime = minutesAgo(14);
    record.lastDayAvgPower = 574;
    record.lastDayMinPower = 298;
    record.lastDayMinPowerTime = minutesAgo(1210);
    record.lastDayMaxPowerTime = minutesAgo(90);
    record.lastDayMaxPower = 981;
    record.lastWeekAvgPower = 561;
    record.lastWeekMinPowerTime = secondsAgo(400000);
    record.lastWeekMinPower = 291;
    record.lastWeekMaxPower = 1002;
    setText(record.activePolicyName, "Demo cap at %d W", 900);
    record.activePolicyValue1 = 8;
    record.activePolicyValue2 = 900;
    record.sysPwrConsumption.instWattsPSU1_2 = 612;
    record.sysPwrConsumption.instAmpsPSU1_2 = 2.66F;
    record.sysPwrConsumption.SCViewSledPwr = 604;
    record.sysPwrConsumption.SCViewSledCur = 51;
    auto &cups = record.peciCupsUtilLimits;
    setFlags({&cups.startMonitoring, &cups.cmaxValid, &cups.mmaxValid, &cups.imaxValid});
    cups.retryCtr = 2;
    cups.CUPS_CMAX = 1280000;
    cups.CUPS_MMAX = 960000;
    cups.CUPS_IMAX = 640000;
    record.CUPS_CPU = 41;
    record.CUPS_MEM = 33;
    record.CUPS_IO = 17;
    record.CUPS_SYS = 38;
    record.last_hour = period(36, 50);
    record.last_day = period(31, 1300);
    record.last_week = period(29, 9000);
    record.peak_util_cups_cpu = 97;
    record.peak_util_cups_io = 61;
    record.peak_util_cups_mem = 88;
    record.peak_util_cups_sys = 93;
    record.peak_util_cups_cpu_time = minutesAgo(88);
    record.peak_util_cups_io_time = minutesAgo(71);
    record.peak_util_cups_mem_time = minutesAgo(64);
    record.peak_util_cups_sys_time = minutesAgo(87);
    fillReadings(record.hour_oob_data, 36);
    fillReadings(record.day_oob_data, 31);
    fillReadings(record.week_oob_data, 29);
    record.peak_util_start_time_cups_cpu = minutesAgo(1440);
    record.peak_util_start_time_cups_io = minutesAgo(1439);
    record.peak_util_start_time_cups_mem = minutesAgo(1438);
    record.peak_util_start_time_cups_sys = minutesAgo(1437);
    for (int i = 0; i < 4; ++i) {
        record.CpuPwrCons[i] = consumptionOf(150 - 20 * i, i + 1);
    }
    record.CpuPwrCons[4] = consumptionOf(480, 1); // of all, as the last one below
    for (int i = 0; i < 8; ++i) {
        record.MemPwrCons[i] = consumptionOf(5 + i / 2, i + 6);
    }
    record.MemPwrCons[8] = consumptionOf(52, 6);
    record.SystemInputPwrCons = consumptionOf(612, 1);
    record.SystemOutputPwrCons = consumptionOf(575, 2);
    record.subSystemCurrentChannel = {minutesAgo(3), 17, 120, 16, 121, 15, 119};
    record.subSystemPowerChannel = {minutesAgo(4), 204.0F, 193.5F, 177.5F};
    record.subSystemPowerData = {minutesAgo(5), 2, 1, 3, 9.5F, 7.25F, 18.75F, 0, 532.0F, 0, 7.5F};
    for (int i = 0; i < 20; ++i) {
        fillRegulator(record.vcoreVRData[i], i);
    }
    for (size_t i = 0; i < sizeof record.cpuSample; ++i) {
        record.cpuSample[i] = static_cast<uint8_t>(35 + i % 9);
    }
    fillUpmBlock(*reinterpret_cast<sUpmBlock *>(record.upmBlock));
}
