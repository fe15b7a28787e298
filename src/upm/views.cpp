#include "upm/views.h"

#include "sections/rows/fields.h"
#include "sections/rows/print_rows.h"
#include "upm/block.h"
#include "upm/policy_report.h"
#include "upm/timestamp.h"

#include <cstdio>

static constexpr char dumpPrefix[] = "   sPowerReport.";
static constexpr char limitsPrefix[] = "   sCpuPwrLimits.";
static constexpr char thermalPrefix[] = "   sThermalSection.";
static constexpr int readingHyphens = 6;
static constexpr int blockHyphens = 5;
static constexpr PolicyStyle dumpStyle{.indent = "   ", .powerLimit = Kind::u32};

static constexpr Views inDump = 1;
static constexpr Views inLimits = 2;

// One row a line.
// clang-format off

// From the front of the section: what each domain consumes now.
static constexpr auto currentPowerRows = [] {
    using Record = sPwrConsEntry;
    return rowsOf(ROW(u16CurPwr));
}();
static constexpr auto powerReadingRows = [] {
    using Record = sTolmAbsPowerReporting;
    return rowsOf(
        nested(ROW(CpuPwrCons), currentPowerRows),
        nested(ROW(MemPwrCons), currentPowerRows),
        nested(ROW(SystemInputPwrCons), currentPowerRows),
        nested(ROW(SystemOutputPwrCons), currentPowerRows));
}();

static constexpr auto powerLimitRows = [] {
    using Record = sUpmBlock;
    return rowsOf(
        line("\n   Power Limits:  "),
        ROW(powerLimits.cpuPPL),
        ROW(powerLimits.cpuPL1),
        ROW(powerLimits.cpuPL2),
        ROW(powerLimits.cpuPL4),
        ROW(powerLimits.memPL1),
        ROW(powerLimits.memPL2),
        ROW(powerLimits.sysPL1),
        ROW(powerLimits.sysPL2),
        ROW(powerLimits.dimmBwThrtlPerc),
        onlyIn(inLimits, ROW(powerLimits.plStatus)),
        ROW(powerLimits.cpuPLAvailability),
        ROW(powerLimits.c0ResAvailablity),
        ROW(powerLimits.policyStatus),
        ROW(powerLimits.readRTC));
}();

static constexpr auto thermalRows = [] {
    using Record = sUpmBlock;
    return rowsOf(
        line("\n   CPU Power Thermal:  "),
        ROW(cpuPwrThermal.rawdts),
        ROW(cpuPwrThermal.thermalMargin),
        ROW(cpuPwrThermal.cpupkgPwr),
        ROW(cpuPwrThermal.tarTemp),
        ROW(cpuPwrThermal.cpuEnergy),
        ROW(cpuPwrThermal.cpuEnergyTS),
        ROW(cpuPwrThermal.dimmPwr),
        ROW(cpuPwrThermal.prevdimmPwr),
        ROW(cpuPwrThermal.cpuAvailablity),
        ROW(cpuPwrThermal.rawdtsAvailablity),
        ROW(cpuPwrThermal.thermalMarginAvailablity),
        ROW(cpuPwrThermal.cpupkgPwrAvailablity),
        ROW(cpuPwrThermal.tarTempAvailablity),
        ROW(cpuPwrThermal.cpuEnergyAvailablity),
        ROW(cpuPwrThermal.cpuEnergyTSAvailablity));
}();
// clang-format on

Rows powerLimitFields() {
    return fieldsOf<powerLimitRows>();
}

Rows thermalFields() {
    return fieldsOf<thermalRows>();
}

// Reads the section and prints its timestamp. Returns null after a failure.
static SectionBuffer beginView() {
    SectionBuffer section = readSectionOfBlock(MessageEnd::newline);
    if (section) {
        printUpmTimestamp(section.get());
    }
    return section;
}

static void printPowerReadings(const char *prefix, const uint8_t *section) {
    printRows({.prefix = prefix, .hyphens = readingHyphens}, tableOf<powerReadingRows>(), section);
}

static void printPowerLimits(const char *prefix, const uint8_t *section, Views view) {
    printRows({.prefix = prefix, .hyphens = blockHyphens}, tableOf<powerLimitRows>(),
              blockIn(section), view);
}

static void printThermalData(const char *prefix, const uint8_t *section) {
    printRows({.prefix = prefix, .hyphens = blockHyphens}, tableOf<thermalRows>(),
              blockIn(section));
}

static void printAllPolicies(const uint8_t *section) {
    static constexpr char separator[] = "          >>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>>"
                                        "<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<<         ";
    puts("\n   Policy Data:   ");
    for (int32_t policy = 0; policy < policyCount; ++policy) {
        puts(separator);
        printPolicy(section, policy, dumpStyle);
        puts(separator);
    }
}

void dumpUpmData() {
    if (const SectionBuffer section = beginView()) {
        printPowerReadings(dumpPrefix, section.get());
        printPowerLimits(dumpPrefix, section.get(), inDump);
        printThermalData(dumpPrefix, section.get());
        printAllPolicies(section.get());
    }
}

void showCpuPowerLimits() {
    if (const SectionBuffer section = beginView()) {
        printPowerReadings(limitsPrefix, section.get());
        printPowerLimits(limitsPrefix, section.get(), inLimits);
    }
}

void showThermalData() {
    if (const SectionBuffer section = beginView()) {
        printThermalData(thermalPrefix, section.get());
    }
}
