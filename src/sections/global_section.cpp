#include "sections/global_section.h"

#include "sections/section_report.h"

#include <cstdio>

// Label and hyphens end in the same column on every line of both reports; only the power statistics
// have a fixed number of hyphens instead.
static constexpr Style memberStyle{.prefix = "   ", .hyphens = 28, .column = 43};

void printGlobalSectionOffsets() {
    printf("sPwrIpmiGlobalSec1 OFFSETS::: sizeof structure = %d\n", globalPowerSection.size);
    TextBuffer out;
    for (const Row &row : globalSectionRows) {
        if ((row.views & inOffsets) == 0) {
            continue;
        }
        if (row.type == Type::none) {
            out.put(row.label);
            out.put('\n');
            continue;
        }
        // An array of structs gets one line per element; any other array gets one line, for its
        // first element.
        const bool hasStructs = !row.nested.empty();
        for (uint32_t i = 0; i < (hasStructs ? row.elementCount() : 1); ++i) {
            putLabel(out, memberStyle, nullptr, row, hasStructs ? row.indexOf(i) : noIndex);
            out.putUnsigned(row.offset + i * row.size);
            out.put('\n');
        }
    }
}

void dumpGlobalSection() {
    const SectionBuffer section = beginReport(globalPowerSection, "sPwrIpmiGlobalSec1");
    if (section) {
        printRows(memberStyle, globalSectionRows, section.get(), inValues);
    }
}
