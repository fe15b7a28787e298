// The reports of the program, in one list, from which all that holds for every report is tested.
#pragma once

#include "upm/upm_block.h"

#include <optional>
#include <string>
#include <vector>

// A run of records that are shown one after the other in the same way.
struct Repetition {
    const char *opening; // how the text of the first one begins
    const char *number;  // how each is named in it: a format of printf
    int first;           // the number of the first
    size_t count;        // of records
    size_t lines;        // of one record
    struct Array {
        size_t start, size; // of the first record in the section, in bytes
    };
    std::vector<Array> arrays; // that hold the records, or the parts of each
};

struct Report {
    std::vector<std::string> arguments;
    const char *golden; // null if another test says what the report is made of
    size_t lines;
    std::optional<Section> section = {};
    int32_t readSize = section ? section->size : 0; // of its first read, in bytes
    const char *failureEnd = "\n";                  // after a failure message
    std::vector<Repetition> repetitions = {};       // in the order of the report
};

// clang-format off
constexpr size_t policyLines = std::size(policyRows) - 1; // one of them has two rows, for two reports
inline const std::vector<Report> allReports{
    {{"-o"}, "global-offsets.txt", 109},
    {.arguments = {"-d"}, .golden = "global-dump.txt", .lines = 159,
     .section = globalPowerSection,
     .repetitions = {{"   CpuPowerStat", "CpuPowerStat[%d].", 0, 4, 4, {{486, 17}}},
                     {"   MemPowerStat", "MemPowerStat[%d].", 0, 8, 4, {{571, 17}}}}},
    {.arguments = {"-e"}, .golden = "psu-info.txt", .lines = 12 * 93,
     .section = psuInfoSection, .readSize = 816,
     .repetitions = {{"sTolmAbsPSUInfo DATA", "INFO FOR PSU %d ::", 1, 12, 93,
                      {{0, 816}, {9792, 35}}}}},
    {.arguments = {"-r"}, .golden = "power-reporting.txt", .lines = 683,
     .section = powerReportingSection,
     .repetitions = {{"   Last minute", "Last minute-%2d\t", 0, 60, 1, {{383, 8}}},
                     {"   Last hour", "Last hour-%2d\t", 0, 24, 1, {{863, 8}}},
                     {"   Last day", "Last day-%2d\t", 0, 14, 1, {{1055, 8}}},
                     {"   sPowerReportSection.CpuPwrCons", "CpuPwrCons[%d].", 0, 5, 6, {{1183, 17}}},
                     {"   sPowerReportSection.MemPwrCons", "MemPwrCons[%d].", 0, 9, 6, {{1268, 17}}},
                     {"   sPowerReportSection.vcoreVRData", "vcoreVRData[%d].", 0, 20, 14,
                      {{1525, 132}}},
                     {"   cpuSample", "", 0, 25, 1, {{28635, 1}}}}},
    {{"-c"}, "power-config.txt", 12, powerConfigSection},
    {.arguments = {"-u"}, .golden = "upm-dump.txt", .lines = 120 + 16 * (policyLines + 2),
     .section = powerReportingSection,
     .repetitions = {{"          >>>", "-%1$d(%1$d).", 0, 16, policyLines + 2, {{29029, 72}}}}},
    {{"-u", "-t"}, "upm-thermal.txt", 63, powerReportingSection},
    {{"-u", "-p", "-c"}, "upm-power-limits.txt", 57, powerReportingSection},
    {{"-u", "-p", "-a"}, nullptr, 9 + 16 * (policyLines + 2), powerReportingSection,
     powerReportingSection.size, ""},
    {.arguments = {"-u", "-p", "7"}, .golden = "upm-policy.txt", .lines = 9 + policyLines,
     .section = powerReportingSection, .failureEnd = ""},
};
// clang-format on
