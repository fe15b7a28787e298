// The power configuration section (PWR_CFG_CLR_SEC) and its report.
#pragma once

#include "rows/row.h"
#include "shm/shm.h"

// The record of the section. Bytes that nothing uses are called reserved1, reserved2, ...
struct __attribute__((packed)) sTolmAbsPowerConfigClr {
    float peakHeadroom;
    uint32_t instHeadroom;
    int32_t peakPowerTime;
    int32_t peakPowerStartTime;
    Time32 peakAmpsTime;
    Time32 peakAmpsStartTime;
    uint8_t reserved1[8];
    uint32_t cumulativePower;
    int32_t cumulativePowerStartTime;
    float cumulativeStartEnergy;
    uint8_t reserved2[180];
};
static_assert(sizeof(sTolmAbsPowerConfigClr) == powerConfigSection.size);
static_assert(offsetof(sTolmAbsPowerConfigClr, cumulativePower) == 32);

// One row per line.
// clang-format off
inline constexpr Row powerConfigRows[] = {
    ROW(sTolmAbsPowerConfigClr, peakHeadroom),
    ROW(sTolmAbsPowerConfigClr, instHeadroom),
    ROW(sTolmAbsPowerConfigClr, peakPowerTime),
    ROW(sTolmAbsPowerConfigClr, peakPowerStartTime),
    ROW(sTolmAbsPowerConfigClr, peakAmpsTime),
    ROW(sTolmAbsPowerConfigClr, peakAmpsStartTime),
    ROW(sTolmAbsPowerConfigClr, cumulativePower),
    ROW(sTolmAbsPowerConfigClr, cumulativePowerStartTime),
    ROW(sTolmAbsPowerConfigClr, cumulativeStartEnergy),
};
// clang-format on

// Prints the section field by field. If the allocation or the read fails, prints only a message.
void dumpPowerConfig();
