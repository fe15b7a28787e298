#include "sections/section_report.h"

#include <cstdio>

SectionBuffer beginReport(Section section, const char *record) {
    SectionBuffer buffer = readWholeSection(section, "\n");
    if (buffer) {
        printf("%s DATA::: sizeof structure = %d\n", record, section.size);
    }
    return buffer;
}
