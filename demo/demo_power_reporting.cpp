#include "demo/demo_data.h"
#include "demo/demo_values.h"
#include "upm/upm_block.h"

namespace {

// Returns statistics around an average; the minimum is `minutes` old, the maximum half as old.
sCupsPeriodStats makeStatistics(int average, int minutes) {
    return {u16(average), u16(average / 3), minutesAgo(minutes), u16(average * 2),
            minutesAgo(minutes / 2)};
}

// Returns the statistics of a period whose minimums are about `minutes` old.
sCupsPeriod makePeriod(int average, int minutes) {
    return {makeStatistics(average, minutes), makeStatistics(average - 7, minutes + 2),
            makeStatistics(average + 9, minutes + 4), makeStatistics(average + 4, minutes + 6)};
}

// Fills an array with readings near `base`.
template <size_t size> void fillReadings(sOOBData (&readings)[size], int base) {
    for (int i = 0; i < static_cast<int>(size); ++i) {
        readings[i] = {u16(base + i % 7), u16(base - 11 + i % 5), u16(base + 13 - i % 6),
                       u16(base + 2 + i % 4)};
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

constexpr int activePolicy = 8;       // its limit is the cap in the reporting section
constexpr int firstEnabledPolicy = 3; // user, rack and group have set no cap

// All policies govern the system, except those for the temperatures of cpu, mem and gpu.
constexpr uint16_t domains[policyCount] = {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 0, 1, 3, 2, 2, 2};

// Times are in milliseconds, intervals in tenths of a second.
void fillPolicy(sPolicy &policy, int number) {
    policy.state = number >= firstEnabledPolicy ? 1 : 0;
    policy.policyPowerLimit = 700 + 25 * number;
    policy.policyPowerLimitMultiplier = 1;
    policy.PolicyAggressiveIntervalEnable = number > activePolicy ? 1 : 0;
    policy.PolicySetLimitToFloorImmediateEnable = number == policyCount - 1 ? 1 : 0;
    policy.PolicyResponseTimeLimit = 1000;
    policy.PolicyTotalResponseDelay = 200;
    policy.PolicyRampUpDelay = 5000;
    policy.PolicyRampUpDuration = 10000;
    policy.PolicyActiveState = number == activePolicy ? 1 : 0;
    policy.NumResponseTimeLimitInterval = 10;
    policy.NumDecisionInterval = 5;
    policy.NumRampUpDurationInterval = 100;
    policy.NumRampUpDelayInterval = 50;
    policy.NumLimitParkingInterval = 30;
    policy.NumTotalResponseDelayInterval = 2;
    policy.NumRampUpRaiseLimitInterval = 10;
    policy.LoadSubsidedThreshold = static_cast<uint32_t>(630 + 22 * number);
    policy.PolicyEnableOverride = number == 0 ? 1 : 0;
    policy.LimitParkingDuration = 3000;
    policy.LoadSubsidedPercentThreshold = 90;
    policy.SFMultiplier = 100;
    policy.SFOffset = 10;
    policy.PolicyHysteresis = 20;
    policy.PolicyDomain = static_cast<PowerDomain>(domains[number]);
    policy.PolicyPwrInputSource = 1;
    policy.PolicyPwrInputSimulData = 612;
    policy.PolicyExcursionCounter = number == activePolicy ? 3 : 0;
}

void fillCpu(sPowerLimits &limits, sCpuPwrThermal &thermal, int cpu) {
    const auto step = static_cast<uint32_t>(cpu);
    limits.cpuPPL[cpu] = 270;
    limits.cpuPL1[cpu] = 205;
    limits.cpuPL2[cpu] = 246;
    limits.cpuPL4[cpu] = 330;
    limits.memPL1[cpu] = 40;
    limits.memPL2[cpu] = 48;
    limits.dimmBwThrtlPerc[cpu] = 80;
    thermal.rawdts[cpu] = 52 - 2 * step;
    thermal.thermalMargin[cpu] = 38 + 2 * step;
    thermal.cpupkgPwr[cpu] = 150 - 20 * step;
    thermal.tarTemp[cpu] = 90;
    thermal.cpuEnergy[cpu] = 7214500 + 1321 * step;
    thermal.cpuEnergyTS[cpu] = 98100 + 17 * step;
    thermal.dimmPwr[cpu] = 12.5 + 0.25 * cpu;
    thermal.prevdimmPwr[cpu] = 12.25 + 0.25 * cpu;
    setFlags({&limits.c0ResAvailablity[cpu], &thermal.cpuAvailablity[cpu],
              &thermal.rawdtsAvailablity[cpu], &thermal.thermalMarginAvailablity[cpu],
              &thermal.cpupkgPwrAvailablity[cpu], &thermal.tarTempAvailablity[cpu],
              &thermal.cpuEnergyAvailablity[cpu], &thermal.cpuEnergyTSAvailablity[cpu]});
}

void fillUpmBlock(sUpmBlock &block) {
    sPowerLimits &limits = block.powerLimits;
    for (int cpu = 0; cpu < cpuCount; ++cpu) {
        fillCpu(limits, block.cpuPwrThermal, cpu);
    }
    limits.sysPL1 = 1100;
    limits.sysPL2 = 1250;
    limits.cpuPLAvailability = (1 << cpuCount) - 1;
    limits.policyStatus = (1 << policyCount) - (1 << firstEnabledPolicy);
    limits.readRTC = secondsAgo(2);
    block.policyState.policyUpdInx = activePolicy;
    block.policyState.policyId = activePolicy;
    block.policyState.cpuWattsPowerFloor = 120;
    block.policyState.safePolicyPsuPowerReadingTimeout = 30;
    for (int number = 0; number < policyCount; ++number) {
        fillPolicy(block.policies[number], number);
    }
    block.timestamp = uint64_t{1000} * secondsAgo(1) + 250;
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
    record.last_hour = makePeriod(36, 50);
    record.last_day = makePeriod(31, 1300);
    record.last_week = makePeriod(29, 9000);
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
        record.CpuPwrCons[i] = makeConsumption(150 - 20 * i, i + 1);
    }
    record.CpuPwrCons[4] = makeConsumption(480, 1); // the total
    for (int i = 0; i < 8; ++i) {
        record.MemPwrCons[i] = makeConsumption(5 + i / 2, i + 6);
    }
    record.MemPwrCons[8] = makeConsumption(52, 6); // the total
    record.SystemInputPwrCons = makeConsumption(612, 1);
    record.SystemOutputPwrCons = makeConsumption(575, 2);
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
