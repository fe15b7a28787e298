#include "demo/demo_data.h"
#include "demo/demo_values.h"
#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/psu_info.h"

#include <cstring>

namespace {

// Efficiency in per cent, at loads from 5 to 110 per cent.
constexpr uint8_t efficiency[] = {80, 85, 88, 90, 91, 92, 92, 93, 93, 94, 94,
                                  94, 94, 94, 93, 93, 93, 92, 92, 91, 91, 90};

void fillUnit(sTolmAbsPSUInfo &unit, int number) {
    const float share = 0.4F + 0.02F * static_cast<float>(number);
    unit.inputRatingWatts = 1440;
    unit.outputRatingWatts = 1350;
    setFlags({&unit.lineStatus, &unit.lineStatusShadow, &unit.psuAddressesValid, &unit.psuInstalled,
              &unit.psuPMBus, &unit.u8VRSubsystem, &unit.u8PSUFRURead});
    unit.status = 1;
    unit.psuType = number == 1 ? 1 : 2;
    unit.psuCapabilities = 0x0F;
    unit.psuSlot = static_cast<uint8_t>(number + 1);
    setPadded(unit.psuPartNum, "0PS14A00");
    // A header of version 1, which lists no areas, and its checksum.
    unit.psuFRUInfo[0] = std::byte{1};
    unit.psuFRUInfo[7] = std::byte{0xFF};
    setPadded(unit.psuComponentId, "C14A");
    unit.inputRatingAmps = 8;
    unit.inputRatingVolts = 230;
    unit.psuACRatedWatts = 1350;
    unit.psuDCRatedWatts = 1100;
    unit.psuACRatedAmps = 7;
    unit.psuACRatedVolts = 230;
    setPadded(unit.psuFwVersion, "01.04.02");
    unit.psuAmpReading = u16(static_cast<int>(111 * share));
    unit.psuPwrReading = u16(static_cast<int>(1350 * share));
    unit.u8PSUFeatures = 3;
    unit.u8SleepTrip = 20;
    unit.u8WakeTrip = 40;
    unit.u16PinMax = 1520;
    unit.u16VinMax = 264;
    unit.u16IinMax = 8;
    unit.u16PoutMax = 1350;
    unit.u16PoutMaxDisplay = 1350;
    unit.u16VoutMax = 13;
    unit.u16IoutMax = 111;
    unit.u8PMBusRevision = 0x22;
    setPadded(unit.u8SerialNumber, "SN0000000000");
    unit.u8SerialNumber[11] = static_cast<char>('A' + number);
    memcpy(unit.u8PSUEfficiency, efficiency, sizeof efficiency);
    unit.Pin = 1440 * share;
    unit.Iin = 6.26F * share;
    unit.Vin = 229.5F + 0.25F * static_cast<float>(number);
    unit.Pout = 1350 * share;
    unit.Iout = 111 * share;
    unit.Vout = 12.18F;
    unit.FanSpeed1 = 8000 * share;
    unit.u16VinDCMax = 380;
    unit.IinOCWLimitMax = 8.5F;
    unit.IinOCWLimitMin = 7.25F;
    unit.inputOCWHalf = 4.125F;
    unit.inputOCW[0] = 6.5F;
    unit.inputOCW[1] = 6.75F;
    unit.psuShareMargin = 0.05F;
}

void fillGlobalSection(sPwrIpmiGlobalSec1 &record) {
    auto &info = record.sPowerInfoPWR;
    setFlags({&info.u8NMSupport, &info.u8PMBusSupport, &info.u8RapidOn, &info.u8PFC,
              &info.u8RedundancyCapability, &info.u8RedundancyPolicy, &info.u8PowerCapEnable,
              &info.u8PowerCapOwner, &info.u8SizeManagedSys, &info.u8MixedModePSUSupport,
              &info.u8PECIOverSMBusSupport});
    info.u8MaxPSU = psuCount;
    info.u8MinPSUCount = 6;
    info.u16PowerCap = 900;
    info.u16MaxConsumption = 1250;
    info.u16PlatformSupport = 1;

    auto &budget = record.sTolmPwrBudgetTypePWR;
    budget.PwrCap = 900;
    setFlags({&budget.PwrCapEnable, &budget.u8PSUPoweredFlag, &budget.u8PSUHotplugFlag});
    budget.MinPwr = 310;
    budget.MaxPwr = 1250;
    budget.AvailPwr = 1400;
    budget.LowThresh = 810;
    budget.HighThresh = 890;
    for (int i = 0; i < 20; ++i) {
        budget.au16VRAmp[i] = u16(13 + i / 4);
        budget.au16VRAmpRange[i] = 60;
    }

    record.sNMStatisticsPWR.u16CurPwrPlat = 612;
    record.sNMStatisticsPWR.u16MinPwrPlat = 298;
    record.sNMStatisticsPWR.u16MaxPwrPlat = 981;
    record.sNMStatisticsPWR.u16AvgPwrPlat = 574;
    record.sNMStatisticsPWR.u32IPMITimeStmp = secondsAgo(60);
    record.sTolmPowerPOSConfigPWR.u8I2CBus = 3;
    record.sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr = 0x59;
    record.sTolmPowerPOSConfigPWR.u8I2CWriteSecondaryAddr = 0x58;
    record.sTolmPowerPOSConfigPWR.u8InterruptNum = 17;
    record.sTolmPwrDataTypePWR.pwr = 608;
    record.sTolmPwrDataTypePWR.amps = 50;

    auto &supplies = record.sPSStateInfoPWR;
    for (int number = 0; number < psuCount; ++number) {
        supplies.u8Status[number] = 1;
        supplies.u8StatusValid[number] = 1;
        supplies.u8TempReadingValid[number] = 1;
    }
    setFlags({&supplies.u8RedundancySensorEnabled, &supplies.u8RedundancySensorValid,
              &supplies.u8RedundancyStatus, &supplies.u8CalculatedRedundancy,
              &supplies.u8RedundancyValidState});

    auto &sensor = record.sSysLevelSensor;
    sensor.u8SDRMultiplier = 1;
    sensor.u32CPStartTime = secondsAgo(86400);
    sensor.u32CumulPower = 13904;
    sensor.u32PeakStartTime = secondsAgo(80000);
    sensor.u32PeakPowerTime = secondsAgo(5400);
    sensor.u16PeakPower = 981;
    sensor.u32PeakCurrTime = secondsAgo(5340);
    sensor.u16PeakCurrent = 81;
    sensor.u16AvgPower = 574;

    setFlags({&record.u8BladeFormFactor, &record.u8BPPresenceCount, &record.u8AlertDestinationSet,
              &record.u8EnergyCounterUnitSet, &record.u8NMState, &record.u8InitAgentComplete,
              &record.u8PSSensorInitComplete, &record.u8PowerONOFFState, &record.NMHealth,
              &record.u8IsMovarTimeSet});
    record.u8PowerONOFFCount = 4;
    for (int i = 0; i < 4; ++i) {
        record.au16OOBStat1minAvg[i] = u16(38 - 7 * i);
        record.CpuPowerStat[i] = makeConsumption(150 - 20 * i, i + 1);
    }
    for (int i = 0; i < 8; ++i) {
        record.MemPowerStat[i] = makeConsumption(5 + i / 2, i + 5);
    }
    record.u8PFPONCount = 4;
}

void fillPsuInfo(sPSUInfoSection &section) {
    for (int number = 0; number < psuCount; ++number) {
        fillUnit(section.units[number], number);
        sPSUBusInfo &bus = section.buses[number];
        bus.bus = static_cast<uint8_t>(3 + number / 4);
        bus.physicalBus = static_cast<uint8_t>(7 + number / 4);
        bus.address = static_cast<uint8_t>(0x58 + number);
        setText(bus.deviceName, "/dev/psu-%d", number);
    }
}

void fillPowerConfig(sTolmAbsPowerConfigClr &record) {
    record.peakHeadroom = 412.5F;
    record.instHeadroom = 287;
    record.peakPowerTime = static_cast<int32_t>(secondsAgo(5400));
    record.peakPowerStartTime = static_cast<int32_t>(secondsAgo(86400));
    record.peakAmpsTime = minutesAgo(89);
    record.peakAmpsStartTime = minutesAgo(1439);
    record.cumulativePower = 19342;
    record.cumulativePowerStartTime = static_cast<int32_t>(secondsAgo(2592000));
    record.cumulativeStartEnergy = 1024.75F;
}

} // namespace

std::span<const DemoSection> demoSections() {
    static sPwrIpmiGlobalSec1 globalSection;
    static sPSUInfoSection psuInfo;
    static sTolmAbsPowerReporting powerReporting;
    static sTolmAbsPowerConfigClr powerConfig;
    fillGlobalSection(globalSection);
    fillPsuInfo(psuInfo);
    fillPowerReporting(powerReporting);
    fillPowerConfig(powerConfig);
    static constexpr DemoSection sections[] = {
        {globalPowerSection, &globalSection, sizeof globalSection},
        {psuInfoSection, &psuInfo, sizeof psuInfo},
        {powerReportingSection, &powerReporting, sizeof powerReporting},
        {powerConfigSection, &powerConfig, sizeof powerConfig},
    };
    return sections;
}
