#include "upm/views.h"

#include "rows/print_rows.h"
#include "upm/policy_report.h"
#include "upm/timestamp.h"
#include "upm/upm_block.h"

#include <cstdio>

// The current power consumption of each domain, from the front of the section.
// clang-format off
static constexpr std::span<const Row> currentPowerRows = powerRows.first(1);
static constexpr Row powerReadingRows[] = {
    GROUP(sTolmAbsPowerReporting, CpuPwrCons, currentPowerRows),
    GROUP(sTolmAbsPowerReporting, MemPwrCons, currentPowerRows),
    GROUP(sTolmAbsPowerReporting, SystemInputPwrCons, currentPowerRows),
    GROUP(sTolmAbsPowerReporting, SystemOutputPwrCons, currentPowerRows),
};
// clang-format on

// Reads the section and prints its timestamp. If that fails, prints a message and returns null.
static SectionBuffer beginView() {
    SectionBuffer section = readWholeSection(powerReportingSection, "\n");
    if (section) {
        printUpmTimestamp(loadTimestamp(section.get()));
    }
    return section;
}

static void printPowerReadings(std::string_view prefix, const uint8_t *section) {
    printRows({.prefix = prefix, .hyphens = 6}, powerReadingRows, section);
}

static void printBlock(std::string_view prefix, const uint8_t *section, Views view) {
    printRows({.prefix = prefix, .hyphens = 5}, upmRows, blockIn(section), view);
}

static void printAllPolicies(const uint8_t *section) {
    static constexpr char separator[] = "          >>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>"
                                        "<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<         ";
    puts("\n   Policy Data:   ");
    for (int32_t policy = 0; policy < policyCount; ++policy) {
        puts(separator);
        printPolicyLines(section, policy, "   ", inDump);
        puts(separator);
    }
}

void dumpUpmData() {
    if (const SectionBuffer section = beginView()) {
        printPowerReadings("   sPowerReport.", section.get());
        printBlock("   sPowerReport.", section.get(), inDump);
        printAllPolicies(section.get());
    }
}

void showCpuPowerLimits() {
    if (const SectionBuffer section = beginView()) {
        printPowerReadings("   sCpuPwrLimits.", section.get());
        printBlock("   sCpuPwrLimits.", section.get(), inLimits);
    }
}

void showThermalData() {
    if (const SectionBuffer section = beginView()) {
        printBlock("   sThermalSection.", section.get(), inThermal);
    }
}
