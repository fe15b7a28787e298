#include "wizard/thermal_editor.h"

#include "wizard/overwrite_fields.h"
#include "wizard/prompts.h"

#include <cstdio>

static constexpr int32_t allCpus = -1;
static constexpr size_t thermalOffset = offsetof(sUpmBlock, cpuPwrThermal);

// One question per line.
// clang-format off
static constexpr Question questions[] = {
    {"Overwrite rawdts?", "rawdts", findRow(thermalRows, "rawdts")},
    {"Overwrite thermalMargin?", "thermalMargin", findRow(thermalRows, "thermalMargin")},
    {"Overwrite cpupkgPwr?", "cpupkgPwr", findRow(thermalRows, "cpupkgPwr")},
    {"Overwrite tarTemp?", "tarTemp", findRow(thermalRows, "tarTemp")},
    {"Overwrite dimmPwr (double)?", "dimmPwr", findRow(thermalRows, "dimmPwr")},
};
// clang-format on

// Prints the readings of one CPU, or of all if `onlyCpu` is allCpus.
static void previewThermal(const uint8_t *copy, int32_t onlyCpu) {
    const auto thermal = load<sCpuPwrThermal>(blockIn(copy) + thermalOffset);
    puts("\n--- Thermal Preview ---");
    for (int32_t cpu = 0; cpu < cpuCount; ++cpu) {
        if (onlyCpu == allCpus || onlyCpu == cpu) {
            printf("cpu[%d]: rawdts=%u margin=%u pkgPwr=%u tarTemp=%u dimmPwr=%.2f\n", cpu,
                   thermal.rawdts[cpu], thermal.thermalMargin[cpu], thermal.cpupkgPwr[cpu],
                   thermal.tarTemp[cpu], thermal.dimmPwr[cpu]);
        }
    }
}

void editThermalData() {
    const SectionBuffer buffer = allocateBuffer(powerReportingSection.size);
    uint8_t *copy = buffer.get();
    if (copy == nullptr || !readPowerReporting(copy)) {
        return;
    }
    previewThermal(copy, allCpus);
    for (;;) {
        int32_t cpu = 0;
        puts("\nThermal editor:\n"
             " Enter CPU index to edit, or -1 to go back.");
        if (promptInt("CPU", -1, cpuCount - 1, cpu) != 0 || cpu == -1) {
            return;
        }
        previewThermal(copy, cpu);
        overwriteFields(questions, thermalOffset, cpu);
        if (readPowerReporting(copy)) {
            previewThermal(copy, cpu);
        }
    }
}
