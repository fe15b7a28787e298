#include "sections/field.h"
#include "wizard/editors.h"
#include "wizard/prompts.h"
#include "wizard/section_editing.h"

#include <cstdio>

using Record = sTolmAbsPowerReporting;

static constexpr uint32_t maxReading = 100000;
static constexpr int32_t allCpus = -1;

// One row a line.
// clang-format off
static constexpr Question questions[] = {
    {"Overwrite rawdts?", "rawdts", maxReading, ROW(cpuPwrThermal.rawdts).shape},
    {"Overwrite thermalMargin?", "thermalMargin", maxReading, ROW(cpuPwrThermal.thermalMargin).shape},
    {"Overwrite cpupkgPwr?", "cpupkgPwr", maxReading, ROW(cpuPwrThermal.cpupkgPwr).shape},
    {"Overwrite tarTemp?", "tarTemp", maxReading, ROW(cpuPwrThermal.tarTemp).shape},
    {"Overwrite dimmPwr (double)?", "dimmPwr", 0, ROW(cpuPwrThermal.dimmPwr).shape},
};
// clang-format on

static void previewThermal(const uint8_t *copy, int32_t onlyCpu) {
    const auto thermal = load<sCpuPwrThermal>(copy + offsetof(Record, cpuPwrThermal));
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
    const SectionBuffer buffer = allocateBuffer(powerReportingSize);
    uint8_t *copy = buffer.get();
    if (copy == nullptr || !readCopy(copy)) {
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
        askQuestions(questions, cpu);
        if (readCopy(copy)) {
            previewThermal(copy, cpu);
        }
    }
}
