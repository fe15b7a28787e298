// Utilisation statistics (CUPS), which are part of the power reporting section.
#pragma once

#include "rows/row.h"

// The utilisation of one resource over one period.
struct __attribute__((packed)) sCupsPeriodStats {
    uint16_t average;
    uint16_t minimum;
    Time32 minimumTime;
    uint16_t maximum;
    Time32 maximumTime;
};
static_assert(sizeof(sCupsPeriodStats) == 14);

// The utilisation of all resources over one period.
struct __attribute__((packed)) sCupsPeriod {
    sCupsPeriodStats cpu;
    sCupsPeriodStats io;
    sCupsPeriodStats mem;
    sCupsPeriodStats sys;
};

// One reading of the average utilisation.
struct __attribute__((packed)) sOOBData {
    uint16_t cups_cpu_usage;
    uint16_t cups_io_usage;
    uint16_t cups_mem_usage;
    uint16_t cups_syslvl_usage;
};
static_assert(sizeof(sOOBData) == 8);

// One row per line. The report prints all rows of a reading on one line.
// clang-format off
inline constexpr Row readingRows[] = {
    ROW(sOOBData, cups_cpu_usage).verbatim("\tcups_cpu_usage = "),
    ROW(sOOBData, cups_mem_usage).verbatim("\tcups_mem_usage = "),
    ROW(sOOBData, cups_io_usage).verbatim("\tcups_io_usage = "),
    ROW(sOOBData, cups_syslvl_usage).verbatim("\tcups_syslvl_usage = "),
};
// clang-format on
