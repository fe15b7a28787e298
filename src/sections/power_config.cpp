#include "sections/power_config.h"

#include "sections/section_report.h"

void dumpPowerConfig() {
    const SectionBuffer section = beginReport(powerConfigSection, "sTolmAbsPowerConfigClr");
    if (section) {
        printRows({.prefix = "   sPowerConfigSection.", .hyphens = 6}, powerConfigRows,
                  section.get());
    }
}
