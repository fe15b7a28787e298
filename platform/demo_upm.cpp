#include "demo_data.h"
#include "demo_values.h"

namespace {

constexpr int policyInForce = 8; // the one whose limit the reporting section names as the cap
constexpr int firstPolicyOn = 3; // user, rack and group have set no cap

// All govern the system, but for those on the temperature of cpu, mem and gpu.
constexpr uint16_t domains[policyCount] = {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 0, 1, 3, 2, 2, 2};

// Times are in milliseconds, intervals in tenths of a second.
void fillPolicy(sPolicy &policy, int number) {
    policy.state = number >= firstPolicyOn ? 1 : 0;
    policy.policyPowerLimit = 700 + 25 * number;
    policy.policyPowerLimitMultiplier = 1;
    policy.PolicyAggressiveIntervalEnable = number > policyInForce ? 1 : 0;
    policy.PolicySetLimitToFloorImmediateEnable = number == policyCount - 1 ? 1 : 0;
    policy.PolicyResponseTimeLimit = 1000;
    policy.PolicyTotalResponseDelay = 200;
    policy.PolicyRampUpDelay = 5000;
    policy.PolicyRampUpDuration = 10000;
    policy.PolicyActiveState = number == policyInForce ? 1 : 0;
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
    policy.PolicyExcursionCounter = number == policyInForce ? 3 : 0;
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

} // namespace

void fillUpmBlock(sUpmBlock &block) {
    sPowerLimits &limits = block.powerLimits;
    for (int cpu = 0; cpu < cpuCount; ++cpu) {
        fillCpu(limits, block.cpuPwrThermal, cpu);
    }
    limits.sysPL1 = 1100;
    limits.sysPL2 = 1250;
    limits.cpuPLAvailability = (1 << cpuCount) - 1;
    limits.policyStatus = (1 << policyCount) - (1 << firstPolicyOn);
    limits.readRTC = secondsAgo(2);
    block.policyState.policyUpdInx = policyInForce;
    block.policyState.policyId = policyInForce;
    block.policyState.cpuWattsPowerFloor = 120;
    block.policyState.safePolicyPsuPowerReadingTimeout = 30;
    for (int number = 0; number < policyCount; ++number) {
        fillPolicy(block.policies[number], number);
    }
    block.timestamp = uint64_t{1000} * secondsAgo(1) + 250;
}
