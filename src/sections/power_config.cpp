#include "sections/power_config.h"

#include "sections/rows/fields.h"
#include "sections/rows/section_report.h"

// One row a line.
// clang-format off
static constexpr auto rows = [] {
    using Record = sTolmAbsPowerConfigClr;
    return rowsOf(
        ROW(peakHeadroom),
        ROW(instHeadroom),
        ROW(peakPowerTime),
        ROW(peakPowerStartTime),
        ROW(peakAmpsTime),
        ROW(peakAmpsStartTime),
        ROW(cumulativePower),
        ROW(cumulativePowerStartTime),
        ROW(cumulativeStartEnergy));
}();
// clang-format on

Rows powerConfigFields() {
    return fieldsOf<rows>();
}

void dumpPowerConfig() {
    printSection({.section = powerConfigSection,
                  .record = "sTolmAbsPowerConfigClr",
                  .style = {.prefix = "   sPowerConfigSection.", .hyphens = 6},
                  .rows = tableOf<rows>()});
}
