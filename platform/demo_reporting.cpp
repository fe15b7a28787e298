#include "demo_data.h"
#include "demo_values.h"

#include "upm/block.h"

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
    const float share = 1 + 0.03F * static_cast<float>(number);
    regulator.u32IPMITimeStmp = minutesAgo(number + 1);
    regulator.temp = 41 * share;
    regulator.Vin = 12.05F * share;
    regulator.Vout = 1.72F * share;
    regulator.Pout = 88 * share;
    regulator.Iout = 51 * share;
    regulator.CntlrTemp = 43.5F * share;
    regulator.Pcc = 95 * share;
    regulator.Ocw = 180 * share;
    regulator.FinalICA = 140 * share;
    setText(regulator.DisplayName, "CPU VR %d", number + 1);
    setText(regulator.PlanarId, "PLANAR-%02d", number);
    setText(regulator.VendorName, "VENDOR-%02d", number);
}

void fillUpmBlock(sUpmBlock &record) {
    sPowerLimits &limits = record.powerLimits;
    sCpuPwrThermal &thermal = record.cpuPwrThermal;
    for (int cpu = 0; cpu < cpuCount; ++cpu) {
        const auto step = static_cast<uint32_t>(cpu);
        limits.cpuPPL[cpu] = 270 + step;
        limits.cpuPL1[cpu] = 205 + step;
        limits.cpuPL2[cpu] = 246 + step;
        limits.cpuPL4[cpu] = 330 + step;
        limits.memPL1[cpu] = 40 + step;
        limits.memPL2[cpu] = 48 + step;
        limits.dimmBwThrtlPerc[cpu] = 80 + step;
        thermal.rawdts[cpu] = 52 + step;
        thermal.thermalMargin[cpu] = 38 - step;
        thermal.cpupkgPwr[cpu] = 148 + 3 * step;
        thermal.tarTemp[cpu] = 90 + step;
        thermal.cpuEnergy[cpu] = 7214500 + 1321 * step;
        thermal.cpuEnergyTS[cpu] = 98100 + 17 * step;
        thermal.dimmPwr[cpu] = 21.5 + 0.25 * cpu;
        thermal.prevdimmPwr[cpu] = 20.75 + 0.25 * cpu;
    }
    limits.sysPL1 = 1100;
    limits.sysPL2 = 1250;
    limits.plStatus = 5;
    limits.cpuPLAvailability = 15;
    limits.policyStatus = 9;
    limits.readRTC = secondsAgo(2);

    for (int number = 0; number < policyCount; ++number) {
        sPolicy &policy = record.policies[number];
        for (size_t i = 0; i < sizeof policy; i += 2) { // nearly all fields are words
            const auto value = static_cast<uint16_t>(1 + (i / 2 + static_cast<size_t>(number)) % 9);
            memcpy(reinterpret_cast<uint8_t *>(&policy) + i, &value, sizeof value);
        }
        policy.state = static_cast<uint16_t>(1 + number % 2);
        policy.policyPowerLimit = 700 + 25 * number;
        policy.PolicyResponseTimeLimit = word(1000 + number);
        policy.LoadSubsidedThreshold = static_cast<uint32_t>(600 + number);
        policy.PolicyHysteresis = static_cast<uint32_t>(20 + number);
        policy.PolicyPwrInputSimulData = static_cast<uint32_t>(500 + number);
        policy.PolicyDomain = static_cast<PowerDomain>(1 + number % 3);
        policy.PolicyExcursionCounter = word(40 + number);
    }
    record.policyState.cpuWattsPowerFloor = 120;
    record.policyState.safePolicyPsuPowerReadingTimeout = 30;
    record.timestamp = uint64_t{1000} * secondsAgo(1) + 250;
}

} // namespace

void fillPowerReporting(sTolmAbsPowerReporting &record) {
    fillWithSmallValues(record);
    record.peakHeadroom = 269;
    record.instHeadroom = 638;
    record.bladePowerAllocation = 1250;
    record.psuRedundancyCapability = 2;
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
    record.activePolicyValue1 = 4;
    record.activePolicyValue2 = 7;
    record.sysPwrConsumption.instWattsPSU1_2 = 612;
    record.sysPwrConsumption.instAmpsPSU1_2 = 2.66F;
    record.sysPwrConsumption.SCViewSledPwr = 604;
    record.sysPwrConsumption.SCViewSledCur = 51;
    record.peciCupsUtilLimits.retryCtr = 2;
    record.peciCupsUtilLimits.CUPS_CMAX = 1280000;
    record.peciCupsUtilLimits.CUPS_MMAX = 960000;
    record.peciCupsUtilLimits.CUPS_IMAX = 640000;
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
    for (int i = 0; i < 5; ++i) {
        record.CpuPwrCons[i] = consumptionOf(150 + 5 * i, i + 1);
    }
    for (int i = 0; i < 9; ++i) {
        record.MemPwrCons[i] = consumptionOf(20 + 3 * i, i + 6);
    }
    record.SystemInputPwrCons = consumptionOf(612, 1);
    record.SystemOutputPwrCons = consumptionOf(575, 2);
    record.subSystemCurrentChannel = {minutesAgo(3), 11, 120, 14, 121, 9, 119};
    record.subSystemPowerChannel = {minutesAgo(4), 132.5F, 168.25F, 107.75F};
    record.subSystemPowerData = {minutesAgo(5), 2,     1,       3,       38.5F, 61.25F,
                                 44.75F,        29.5F, 212.25F, 187.75F, 12.5F};
    for (int i = 0; i < 20; ++i) {
        fillRegulator(record.vcoreVRData[i], i);
    }
    for (size_t i = 0; i < sizeof record.cpuSample; ++i) {
        record.cpuSample[i] = static_cast<uint8_t>(35 + i % 9);
    }
    fillUpmBlock(*reinterpret_cast<sUpmBlock *>(record.upmBlock));
}
