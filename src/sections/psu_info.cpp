#include "sections/psu_info.h"

#include "sections/rows/fields.h"
#include "sections/rows/print_rows.h"

#include <cstdio>

static constexpr int32_t unitSize = sizeof(sTolmAbsPSUInfo);
static constexpr int32_t busSize = sizeof(sPSUBusInfo);
static constexpr int32_t busesStart = offsetof(sPSUInfoSection, buses);
static constexpr uint8_t typeWithVinDCMax = 1;

static constexpr Style unitStyle{.prefix = "   sPSUPwrSection.", .column = 22, .floatPlaces = 6};
static constexpr Style busStyle{.prefix = "   sPSUPwrSection.psuBus.", .column = 13};

// Which maximum input voltage is shown depends on the unit's type.
static constexpr Views withVinDCMax = 1;
static constexpr Views withVinMax = 2;

// One row a line; those of the bus record stand between the unit's.
// clang-format off
static constexpr auto rowsBeforeBus = [] {
    using Record = sTolmAbsPSUInfo;
    return rowsOf(
        ROW(inputRatingWatts),
        ROW(outputRatingWatts),
        shownAs(Kind::hexBytesAndText, ROW_VERBATIM("   sPSUPwrSection.psuFwVersion[] --------------- ", psuFwVersion)),
        ROW(lineStatus),
        ROW(lineStatusShadow),
        ROW(status),
        ROW(psuType),
        SIGNED(psuCapabilities),
        ROW(psuSlot),
        ARRAY(Kind::hexBytesAndText, psuPartNum),
        ARRAY(Kind::hexBytes, psuFRUInfo),
        ARRAY(Kind::hexBytes, psuComponentId),
        ROW(psuNonCommMode),
        ROW(psuISPMode),
        ROW(inputRatingAmps),
        SIGNED(inputRatingVolts));
}();
static constexpr auto busRows = [] {
    using Record = sPSUBusInfo;
    return rowsOf(
        ROW(bus),
        ROW(physicalBus),
        ROW(address),
        ROW_VERBATIM("   sPSUPwrSection.psuBus.deviceName ------ ", deviceName));
}();
static constexpr auto rowsAfterBus = [] {
    using Record = sTolmAbsPSUInfo;
    return rowsOf(
        line(""),
        ROW(psuACRatedWatts),
        ROW(psuDCRatedWatts),
        ROW(psuACRatedAmps),
        ROW(psuACRatedVolts),
        ROW(psuAddressesValid),
        ARRAY(Kind::hexBytes, psuFwVersion),
        ROW(psuInstalled),
        ROW(psuPMBus),
        ROW(psuFwUpdate),
        ROW(psuFwRequestStatus),
        ROW(psuFwUpdateStatus),
        ROW(psuFwUpdatePwrOFF),
        ROW(u8PMBusCRCFailEvent),
        ROW(psuAmpReading),
        ROW(psuPwrReading),
        ROW(u8PSUFeatures),
        ROW(u8SleepTrip),
        ROW(u8WakeTrip),
        ROW(u16PinMax),
        onlyIn(withVinDCMax, shownAs(Kind::i32, ROW_VERBATIM("   sPSUPwrSection.u16VinDCMax ------------- ", u16VinDCMax))),
        onlyIn(withVinMax, ROW(u16VinMax)),
        ROW(u16IinMax),
        ROW(u16PoutMax),
        ROW(u16PoutMaxDisplay),
        ROW(u16VoutMax),
        ROW(u16IoutMax),
        ROW(u8PMBusRevision),
        ROW(u8VRSubsystem),
        ROW(u8PSUFRURead),
        ROW_VERBATIM("   sPSUPwrSection.IinOCWLimitMax ---------- ", IinOCWLimitMax),
        ROW_VERBATIM("   sPSUPwrSection.IinOCWLimitMin ---------- ", IinOCWLimitMin),
        ROW_VERBATIM("   sPSUPwrSection.inputOCWHalf ------------ ", inputOCWHalf),
        ROW_VERBATIM("   sPSUPwrSection.psuShareMargin ---------- ", psuShareMargin),
        ROW_VERBATIM("   sPSUPwrSection.inputOCW[0] ------ -- ", inputOCW[0]),
        ROW_VERBATIM("   sPSUPwrSection.inputOCW[1] ------ -- ", inputOCW[1]),
        ARRAY(Kind::hexBytes, u8SerialNumber),
        ARRAY(Kind::hexBytes, u8PSUEfficiency),
        ROW_VERBATIM("   sPSUPwrSection.Pin --------- ", Pin),
        ROW_VERBATIM("   sPSUPwrSection.Iin ---------- ", Iin),
        ROW_VERBATIM("   sPSUPwrSection.Vin ---------- ", Vin),
        ROW_VERBATIM("   sPSUPwrSection.Pout --------- ", Pout),
        ROW_VERBATIM("   sPSUPwrSection.Iout --------- ", Iout),
        ROW_VERBATIM("   sPSUPwrSection.Vout --------- ", Vout),
        ROW_VERBATIM("   sPSUPwrSection.FanSpeed1 ---- ", FanSpeed1));
}();
// clang-format on

static constexpr auto unitRows = rowsOf(rowsBeforeBus, rowsAfterBus);

Rows psuFields() {
    return fieldsOf<unitRows>();
}

Rows psuBusFields() {
    return fieldsOf<busRows>();
}

static void printUnit(int32_t unit, const uint8_t *record) {
    printf("sTolmAbsPSUInfo DATA::: sizeof structure = %d\nINFO FOR PSU %d ::\n", unitSize,
           unit + 1);
    printRows(unitStyle, tableOf<rowsBeforeBus>(), record);

    // Zeros stand for a bus record that cannot be read.
    uint8_t bus[busSize] = {};
    readSection(psuInfoSection, bus, busesStart + busSize * unit, busSize);
    printRows(busStyle, tableOf<busRows>(), bus);

    const bool hasVinDCMax = record[offsetof(sTolmAbsPSUInfo, psuType)] == typeWithVinDCMax;
    printRows(unitStyle, tableOf<rowsAfterBus>(), record, hasVinDCMax ? withVinDCMax : withVinMax);
    puts("\n");
}

void dumpPSUInfo() {
    const SectionBuffer record = allocateBufferOrReport(unitSize, MessageEnd::newline);
    for (int32_t unit = 0; record && unit < psuCount; ++unit) {
        if (!readSectionOrReport(psuInfoSection, record.get(), unitSize * unit, unitSize,
                                 MessageEnd::newline)) {
            return;
        }
        printUnit(unit, record.get());
    }
}
