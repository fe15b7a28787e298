#include "sections/psu_info.h"

#include "output/standard_streams.h"
#include "rows/print_rows.h"

#include <cstdio>

static constexpr int32_t unitSize = sizeof(sTolmAbsPSUInfo);
static constexpr int32_t busSize = sizeof(sPSUBusInfo);
static constexpr int32_t busesStart = offsetof(sPSUInfoSection, buses);
static constexpr uint8_t typeWithVinDCMax = 1;

static constexpr Style unitStyle{.prefix = "   sPSUPwrSection.", .column = 22, .floatPlaces = 6};
static constexpr Style busStyle{.prefix = "   sPSUPwrSection.psuBus.", .column = 13};

static void printUnit(int32_t unit, const uint8_t *record) {
    printf("sTolmAbsPSUInfo DATA::: sizeof structure = %d\nINFO FOR PSU %d ::\n", unitSize,
           unit + 1);
    printRows(unitStyle, psuRowsBeforeBus, record);

    // If the bus record cannot be read, zeros are shown.
    uint8_t bus[busSize] = {};
    readSection(psuInfoSection, bus, busesStart + busSize * unit, busSize);
    printRows(busStyle, psuBusRows, bus);

    const bool hasVinDCMax = record[offsetof(sTolmAbsPSUInfo, psuType)] == typeWithVinDCMax;
    printRows(unitStyle, psuRowsAfterBus, record, hasVinDCMax ? withVinDCMax : withVinMax);
    puts("\n");
}

void dumpPSUInfo() {
    const SectionBuffer record = allocateBufferOrReport(unitSize, "\n");
    for (int32_t unit = 0; record && unit < psuCount; ++unit) {
        if (!readSectionOrReport(psuInfoSection, record.get(), unitSize * unit, unitSize, "\n")) {
            return;
        }
        printUnit(unit, record.get());
        // So that this unit appears even if the program is killed during the next read.
        flushStandardOutput();
    }
}
