#include "demo_data.h"
#include "demo_values.h"

namespace {

void fillUnit(sTolmAbsPSUInfo &unit, int number) {
    fillWithSmallValues(unit);
    const float load = 0.4F + 0.02F * static_cast<float>(number);
    unit.inputRatingWatts = word(1440 + number);
    unit.outputRatingWatts = word(1400 + number);
    unit.status = word(0x0100 + number);
    unit.psuType = number == 1 ? 1 : 2;
    unit.psuCapabilities = static_cast<uint32_t>(0x00030201 + number);
    unit.psuSlot = static_cast<uint8_t>(number + 1);
    setBytes(unit.psuPartNum, "0PS14A00 ");
    setBytes(unit.psuFwVersion, "01.04.02");
    setBytes(unit.u8SerialNumber, "SN0000000000");
    unit.u8SerialNumber[11] = static_cast<uint8_t>('A' + number);
    unit.inputRatingAmps = word(12 + number);
    unit.inputRatingVolts = static_cast<uint32_t>(230 + number);
    unit.psuACRatedWatts = word(1400 - number);
    unit.psuDCRatedWatts = word(1100 - number);
    unit.psuACRatedAmps = 7;
    unit.psuACRatedVolts = 230;
    unit.psuInstalled = 1;
    unit.psuAmpReading = word(static_cast<int>(60 * load));
    unit.psuPwrReading = word(static_cast<int>(1400 * load));
    unit.u16PinMax = word(1520 + number);
    unit.u16VinMax = word(264 + number);
    unit.u16IinMax = word(8 + number);
    unit.u16PoutMax = word(1400 + number);
    unit.u16PoutMaxDisplay = word(1390 + number);
    unit.u16VoutMax = word(13 + number);
    unit.u16IoutMax = word(114 + number);
    unit.Pin = 1440 * load;
    unit.Iin = 6.26F * load;
    unit.Vin = 229.5F + static_cast<float>(number);
    unit.Pout = 1354 * load;
    unit.Iout = 111 * load;
    unit.Vout = 12.18F;
    unit.FanSpeed1 = 8000 * load;
    unit.u16VinDCMax = static_cast<uint32_t>(380 + number);
    unit.IinOCWLimitMax = 8.5F;
    unit.IinOCWLimitMin = 7.25F;
    unit.inputOCWHalf = 4.125F;
    unit.inputOCW[0] = 6.5F;
    unit.inputOCW[1] = 6.75F;
    unit.psuShareMargin = 0.05F + load;
}

} // namespace

void fillGlobalSection(sPwrIpmiGlobalSec1 &record) {
    fillWithSmallValues(record);
    record.sPowerInfoPWR.u8MaxPSU = psuCount;
    record.sPowerInfoPWR.u16PowerCap = 900;
    record.sPowerInfoPWR.u16MaxConsumption = 1250;
    record.sTolmPwrBudgetTypePWR.PwrCap = 900;
    record.sTolmPwrBudgetTypePWR.MinPwr = 310;
    record.sTolmPwrBudgetTypePWR.MaxPwr = 1250;
    record.sTolmPwrBudgetTypePWR.AvailPwr = 1400;
    record.sNMStatisticsPWR.u16CurPwrPlat = 612;
    record.sNMStatisticsPWR.u16MinPwrPlat = 298;
    record.sNMStatisticsPWR.u16MaxPwrPlat = 981;
    record.sNMStatisticsPWR.u16AvgPwrPlat = 574;
    record.sNMStatisticsPWR.u32IPMITimeStmp = secondsAgo(60);
    record.sTolmPwrDataTypePWR.pwr = 608;
    record.sTolmPwrDataTypePWR.amps = 26;
    record.sSysLevelSensor.u32CPStartTime = secondsAgo(86400);
    record.sSysLevelSensor.u32CumulPower = 13904;
    record.sSysLevelSensor.u32PeakStartTime = secondsAgo(80000);
    record.sSysLevelSensor.u32PeakPowerTime = secondsAgo(5400);
    record.sSysLevelSensor.u16PeakPower = 981;
    record.sSysLevelSensor.u32PeakCurrTime = secondsAgo(5340);
    record.sSysLevelSensor.u16PeakCurrent = 42;
    record.sSysLevelSensor.u16AvgPower = 574;
    for (int i = 0; i < 4; ++i) {
        record.CpuPowerStat[i] = consumptionOf(150 + 5 * i, i + 1);
    }
    for (int i = 0; i < 8; ++i) {
        record.MemPowerStat[i] = consumptionOf(20 + 3 * i, i + 5);
    }
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
