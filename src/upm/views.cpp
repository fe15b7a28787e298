#include "upm/views.h"

#include "sections/field.h"
#include "sections/power_reporting.h"
#include "upm/policy_report.h"
#include "upm/timestamp.h"

#include <cstdio>

using Record = sTolmAbsPowerReporting;

static constexpr char dumpPrefix[] = "   sPowerReport.";
static constexpr char limitsPrefix[] = "   sCpuPwrLimits.";
static constexpr char thermalPrefix[] = "   sThermalSection.";
static constexpr int readingHyphens = 6;
static constexpr int upmHyphens = 5;
static constexpr PolicyStyle dumpStyle{.indent = "   ", .unsignedPowerLimit = true};

static constexpr Views inDump = 1;
static constexpr Views inLimits = 2;

// One row a line.
// clang-format off
static constexpr Row powerReadingRows[] = {
    ROW(CpuPwrCons[0].u16CurPwr),
    ROW(CpuPwrCons[1].u16CurPwr),
    ROW(CpuPwrCons[2].u16CurPwr),
    ROW(CpuPwrCons[3].u16CurPwr),
    ROW(CpuPwrCons[4].u16CurPwr),
    ROW(MemPwrCons[0].u16CurPwr),
    ROW(MemPwrCons[1].u16CurPwr),
    ROW(MemPwrCons[2].u16CurPwr),
    ROW(MemPwrCons[3].u16CurPwr),
    ROW(MemPwrCons[4].u16CurPwr),
    ROW(MemPwrCons[5].u16CurPwr),
    ROW(MemPwrCons[6].u16CurPwr),
    ROW(MemPwrCons[7].u16CurPwr),
    ROW(MemPwrCons[8].u16CurPwr),
    ROW(SystemInputPwrCons.u16CurPwr),
    ROW(SystemOutputPwrCons.u16CurPwr),
};
static constexpr auto powerReadings = makeTable<powerReadingRows>();

static constexpr Row powerLimitRows[] = {
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
    ROW(powerLimits.readRTC),
};
static constexpr auto powerLimits = makeTable<powerLimitRows>();

static constexpr Row thermalRows[] = {
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
    ROW(cpuPwrThermal.cpuEnergyTSAvailablity),
};
static constexpr auto thermalData = makeTable<thermalRows>();
// clang-format on

// Reads the section and prints its timestamp. Returns null after a failure.
static SectionBuffer beginView() {
    SectionBuffer section =
        readWholeSection(Section::powerReporting, powerReportingSize, MessageEnd::newline);
    if (section) {
        printUpmTimestamp(load<uint64_t>(section.get() + offsetof(Record, upmTimestamp)));
    }
    return section;
}

static void printPowerReadings(const char *prefix, const uint8_t *section) {
    printRows({.prefix = prefix, .hyphens = readingHyphens}, powerReadings, section);
}

static void printPowerLimits(const char *prefix, const uint8_t *section, Views view) {
    printRows({.prefix = prefix, .hyphens = upmHyphens}, powerLimits, section, view);
}

static void printThermalData(const char *prefix, const uint8_t *section) {
    printRows({.prefix = prefix, .hyphens = upmHyphens}, thermalData, section);
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
