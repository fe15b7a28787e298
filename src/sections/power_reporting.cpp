#include "sections/power_reporting.h"

#include "sections/section_report.h"

static constexpr Style memberStyle{.prefix = "   sPowerReportSection.", .hyphens = 6};

// Writes an array of average utilisation readings, one line per entry.
static void putReadings(TextBuffer &out, const Row &readings, const uint8_t *section) {
    const uint8_t *entry = section + readings.offset;
    for (uint32_t i = 0; i < readings.count; ++i, entry += readings.size) {
        out.put(readings.label);
        out.putPadded(i, 2);
        for (const Row &reading : readings.nested) {
            out.put(reading.label);
            out.putPadded(load<uint16_t>(entry + reading.offset), 3);
        }
        out.put('\n');
    }
}

void dumpPowerReporting() {
    const SectionBuffer section = beginReport(powerReportingSection, "sTolmAbsPowerReporting");
    if (!section) {
        return;
    }
    TextBuffer out;
    for (const Row &row : powerReportingRows) {
        if (row.nested.data() == readingRows) {
            putReadings(out, row, section.get());
        } else {
            putRow(out, memberStyle, row, section.get());
        }
    }
}
