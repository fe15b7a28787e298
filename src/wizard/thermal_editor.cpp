#include "sections/rows/print_rows.h"
#include "wizard/editors.h"
#include "wizard/prompts.h"
#include "wizard/section_editing.h"

#include <cstdio>

static constexpr int32_t allCpus = -1;

// One question a line.
// clang-format off
static constexpr Question questions[] = {
    QUESTION("Overwrite rawdts?", "rawdts", cpuPwrThermal.rawdts),
    QUESTION("Overwrite thermalMargin?", "thermalMargin", cpuPwrThermal.thermalMargin),
    QUESTION("Overwrite cpupkgPwr?", "cpupkgPwr", cpuPwrThermal.cpupkgPwr),
    QUESTION("Overwrite tarTemp?", "tarTemp", cpuPwrThermal.tarTemp),
    QUESTION("Overwrite dimmPwr (double)?", "dimmPwr", cpuPwrThermal.dimmPwr),
};
// clang-format on

static void previewThermal(const uint8_t *copy, int32_t onlyCpu) {
    const auto thermal = load<sCpuPwrThermal>(blockIn(copy) + offsetof(sUpmBlock, cpuPwrThermal));
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
