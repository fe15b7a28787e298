#include "sections/rows/print_rows.h"
#include "wizard/editors.h"
#include "wizard/prompts.h"
#include "wizard/section_editing.h"

#include <cstdio>

// One question a line.
// clang-format off
static constexpr Question cpuQuestions[] = {
    QUESTION("Overwrite PPL?", "PPL", powerLimits.cpuPPL),
    QUESTION("Overwrite PL1?", "PL1", powerLimits.cpuPL1),
    QUESTION("Overwrite PL2?", "PL2", powerLimits.cpuPL2),
    QUESTION("Overwrite PL4?", "PL4", powerLimits.cpuPL4),
    QUESTION("Overwrite dimmBwThrtlPerc?", "dimmBwThrtlPerc", powerLimits.dimmBwThrtlPerc),
};
static constexpr Question systemQuestions[] = {
    QUESTION("Overwrite sysPL1?", "sysPL1", powerLimits.sysPL1),
    QUESTION("Overwrite sysPL2?", "sysPL2", powerLimits.sysPL2),
};
// clang-format on

static sPowerLimits limitsOf(const uint8_t *copy) {
    return load<sPowerLimits>(blockIn(copy) + offsetof(sUpmBlock, powerLimits));
}

static void printCpuLimits(const sPowerLimits &limits, int32_t cpu) {
    printf("cpu[%d]: PPL=%u PL1=%u PL2=%u PL4=%u dimmBwThrtlPerc=%u\n", cpu, limits.cpuPPL[cpu],
           limits.cpuPL1[cpu], limits.cpuPL2[cpu], limits.cpuPL4[cpu], limits.dimmBwThrtlPerc[cpu]);
}

static void printSystemLimits(const sPowerLimits &limits) {
    printf("sysPL1=%u sysPL2=%u\n", limits.sysPL1, limits.sysPL2);
}

static void previewCpuPowerLimits(const uint8_t *copy) {
    const sPowerLimits limits = limitsOf(copy);
    puts("\n--- CPU Power Limits Preview ---");
    for (int32_t cpu = 0; cpu < cpuCount; ++cpu) {
        printCpuLimits(limits, cpu);
    }
    printSystemLimits(limits);
}

void editCpuPowerLimits() {
    const SectionBuffer buffer = allocateBuffer(powerReportingSection.size);
    uint8_t *copy = buffer.get();
    if (copy == nullptr || !readCopy(copy)) {
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
            printCpuLimits(limitsOf(copy), cpu);
            askQuestions(cpuQuestions, cpu);
        } else {
            printf("Current: ");
            printSystemLimits(limitsOf(copy));
            askQuestions(systemQuestions, 0);
        }
        if (readCopy(copy)) {
            previewCpuPowerLimits(copy);
        }
    }
}
