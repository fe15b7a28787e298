#include "sections/rows/section_report.h"

#include <cstdio>

void printSection(const SectionReport &report) {
    const SectionBuffer section = readWholeSection(report.section, MessageEnd::newline);
    if (!section) {
        return;
    }
    printf("%s DATA::: sizeof structure = %d\n", report.record, report.section.size);
    printRows(report.style, report.rows, section.get(), report.views);
}
