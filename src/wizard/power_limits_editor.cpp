#include "wizard/power_limits_editor.h"

#include "wizard/overwrite_fields.h"
#include "wizard/prompts.h"

#include <cstdio>

static constexpr size_t powerLimitsOffset = offsetof(sUpmBlock, powerLimits);

// One question per line.
// clang-format off
static constexpr Question cpuQuestions[] = {
    {"Overwrite PPL?", "PPL", findRow(powerLimitRows, "cpuPPL")},
    {"Overwrite PL1?", "PL1", findRow(powerLimitRows, "cpuPL1")},
    {"Overwrite PL2?", "PL2", findRow(powerLimitRows, "cpuPL2")},
    {"Overwrite PL4?", "PL4", findRow(powerLimitRows, "cpuPL4")},
    {"Overwrite dimmBwThrtlPerc?", "dimmBwThrtlPerc", findRow(powerLimitRows, "dimmBwThrtlPerc")},
};
static constexpr Question systemQuestions[] = {
    {"Overwrite sysPL1?", "sysPL1", findRow(powerLimitRows, "sysPL1")},
    {"Overwrite sysPL2?", "sysPL2", findRow(powerLimitRows, "sysPL2")},
};
// clang-format on

static sPowerLimits loadLimits(const uint8_t *copy) {
    return load<sPowerLimits>(blockIn(copy) + powerLimitsOffset);
}

static void printCpuLimits(const sPowerLimits &limits, int32_t cpu) {
    printf("cpu[%d]: PPL=%u PL1=%u PL2=%u PL4=%u dimmBwThrtlPerc=%u\n", cpu, limits.cpuPPL[cpu],
           limits.cpuPL1[cpu], limits.cpuPL2[cpu], limits.cpuPL4[cpu], limits.dimmBwThrtlPerc[cpu]);
}

static void printSystemLimits(const sPowerLimits &limits) {
    printf("sysPL1=%u sysPL2=%u\n", limits.sysPL1, limits.sysPL2);
}

static void previewCpuPowerLimits(const uint8_t *copy) {
    const sPowerLimits limits = loadLimits(copy);
    puts("\n--- CPU Power Limits Preview ---");
    for (int32_t cpu = 0; cpu < cpuCount; ++cpu) {
        printCpuLimits(limits, cpu);
    }
    printSystemLimits(limits);
}

void editCpuPowerLimits() {
    const SectionBuffer buffer = allocateBuffer(powerReportingSection.size);
    uint8_t *copy = buffer.get();
    if (copy == nullptr || !readPowerReporting(copy)) {
        return;
    }
    previewCpuPowerLimits(copy);
    for (;;) {
        int32_t choice = 0;
        int32_t cpu = 0;
        puts("\nCPU limits editor:\n"
             " 1) Edit per-CPU (PPL/PL1/PL2/PL4/dimmBwThrtlPerc)\n"
             " 2) Edit system (sysPL1/sysPL2)\n"
             " 0) Back");
        if (promptInt("Select", 0, 2, choice) != 0 || choice == 0) {
            return;
        }
        if (choice == 1) {
            if (promptInt("CPU index", 0, cpuCount - 1, cpu) != 0) {
                return;
            }
            printf("Current ");
            printCpuLimits(loadLimits(copy), cpu);
            overwriteFields(cpuQuestions, powerLimitsOffset, cpu);
        } else {
            printf("Current: ");
            printSystemLimits(loadLimits(copy));
            overwriteFields(systemQuestions, powerLimitsOffset, 0);
        }
        if (readPowerReporting(copy)) {
            previewCpuPowerLimits(copy);
        }
    }
}
