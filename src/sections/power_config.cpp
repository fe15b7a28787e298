#include "sections/power_config.h"

#include "sections/field.h"

#include <cstdio>

using Record = sTolmAbsPowerConfigClr;

static constexpr Style fieldStyle{.prefix = "   sPowerConfigSection.", .hyphens = 6};
// One row a line.
// clang-format off
static constexpr Row fieldRows[] = {
    ROW(peakHeadroom),
    ROW(instHeadroom),
    ROW(peakPowerTime),
    ROW(peakPowerStartTime),
    ROW(peakAmpsTime),
    ROW(peakAmpsStartTime),
    ROW(cumulativePower),
    ROW(cumulativePowerStartTime),
    ROW(cumulativeStartEnergy),
};
static constexpr auto fields = makeTable<fieldRows>();
// clang-format on

void dumpPowerConfig() {
    const SectionBuffer section =
        readWholeSection(Section::powerConfig, powerConfigSize, MessageEnd::newline);
    if (!section) {
        return;
    }
    printf("sTolmAbsPowerConfigClr DATA::: sizeof structure = %d\n", powerConfigSize);
    printRows(fieldStyle, fields, section.get());
}
