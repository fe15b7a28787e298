#include "sections/psu_info.h"

#include "sections/field.h"

#include <cstdio>

static constexpr int32_t busRecordsStart = psuCount * psuRecordSize;
static constexpr uint8_t typeWithVinDCMax = 1;

static constexpr Style unitStyle{.prefix = "   sPSUPwrSection.", .column = 22, .floatPlaces = 6};
static constexpr Style busStyle{.prefix = "   sPSUPwrSection.psuBus.", .column = 13};

// Which maximum input voltage is shown depends on the unit's type.
static constexpr Views withVinDCMax = 1;
static constexpr Views withVinMax = 2;

#define BYTES(member) shownAs(Kind::hexBytes, ROW_LABELLED(#member "[]", member))

// One row a line.
// clang-format off
using Record = sTolmAbsPSUInfo;
static constexpr Row rowsBeforeBus[] = {
    ROW(inputRatingWatts),
    ROW(outputRatingWatts),
    shownAs(Kind::hexBytesAndText, ROW_LEAD("psuFwVersion[] --------------- ", psuFwVersion)),
    ROW(lineStatus),
    ROW(lineStatusShadow),
    ROW(status),
    ROW(psuType),
    ROW(psuCapabilities),
    ROW(psuSlot),
    shownAs(Kind::hexBytesAndText, ROW_LABELLED("psuPartNum[]", psuPartNum)),
    BYTES(psuFRUInfo),
    BYTES(psuComponentId),
    ROW(psuNonCommMode),
    ROW(psuISPMode),
    ROW(inputRatingAmps),
    ROW(inputRatingVolts),
};
static constexpr auto fieldsBeforeBus = makeTable<rowsBeforeBus>();

static constexpr Row rowsAfterBus[] = {
    line(""),
    ROW(psuACRatedWatts),
    ROW(psuDCRatedWatts),
    ROW(psuACRatedAmps),
    ROW(psuACRatedVolts),
    ROW(psuAddressesValid),
    BYTES(psuFwVersion),
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
    onlyIn(withVinDCMax, ROW_LEAD("u16VinDCMax ------------- ", u16VinDCMax)),
    onlyIn(withVinMax, ROW(u16VinMax)),
    ROW(u16IinMax),
    ROW(u16PoutMax),
    ROW(u16PoutMaxDisplay),
    ROW(u16VoutMax),
    ROW(u16IoutMax),
    ROW(u8PMBusRevision),
    ROW(u8VRSubsystem),
    ROW(u8PSUFRURead),
    ROW_LEAD("IinOCWLimitMax ---------- ", IinOCWLimitMax),
    ROW_LEAD("IinOCWLimitMin ---------- ", IinOCWLimitMin),
    ROW_LEAD("inputOCWHalf ------------ ", inputOCWHalf),
    ROW_LEAD("psuShareMargin ---------- ", psuShareMargin),
    ROW_LEAD("inputOCW[0] ------ -- ", inputOCW[0]),
    ROW_LEAD("inputOCW[1] ------ -- ", inputOCW[1]),
    BYTES(u8SerialNumber),
    BYTES(u8PSUEfficiency),
    ROW_LEAD("Pin --------- ", Pin),
    ROW_LEAD("Iin ---------- ", Iin),
    ROW_LEAD("Vin ---------- ", Vin),
    ROW_LEAD("Pout --------- ", Pout),
    ROW_LEAD("Iout --------- ", Iout),
    ROW_LEAD("Vout --------- ", Vout),
    ROW_LEAD("FanSpeed1 ---- ", FanSpeed1),
};
static constexpr auto fieldsAfterBus = makeTable<rowsAfterBus>();

namespace bus {
using Record = sPSUBusInfo;
static constexpr Row rows[] = {
    ROW(bus),
    ROW(physicalBus),
    ROW(address),
    ROW_LEAD("deviceName ------ ", deviceName),
};
static constexpr auto fields = makeTable<rows>();
} // namespace bus
// clang-format on

static void printUnit(int32_t unit, const uint8_t *record) {
    printf("sTolmAbsPSUInfo DATA::: sizeof structure = %d\nINFO FOR PSU %d ::\n", psuRecordSize,
           unit + 1);
    printRows(unitStyle, fieldsBeforeBus, record);

    // Zeros stand for a bus record that cannot be read.
    uint8_t busRecord[psuBusRecordSize] = {};
    readSection(Section::psuInfo, busRecord, busRecordsStart + psuBusRecordSize * unit,
                psuBusRecordSize);
    printRows(busStyle, bus::fields, busRecord);

    const bool hasVinDCMax = record[offsetof(Record, psuType)] == typeWithVinDCMax;
    printRows(unitStyle, fieldsAfterBus, record, hasVinDCMax ? withVinDCMax : withVinMax);
    puts("\n");
}

void dumpPSUInfo() {
    const SectionBuffer record = allocateBufferOrReport(psuRecordSize, MessageEnd::newline);
    for (int32_t unit = 0; record && unit < psuCount; ++unit) {
        if (!readSectionOrReport(Section::psuInfo, record.get(), psuRecordSize * unit,
                                 psuRecordSize, MessageEnd::newline)) {
            return;
        }
        printUnit(unit, record.get());
    }
}
