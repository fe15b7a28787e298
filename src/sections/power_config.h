// The power configuration section (PWR_CFG_CLR_SEC) and its report.
#pragma once

#include "sections/row.h"
#include "shm/shm.h"

struct __attribute__((packed)) sTolmAbsPowerConfigClr {
    float peakHeadroom;
    uint32_t instHeadroom;
    int32_t peakPowerTime;
    int32_t peakPowerStartTime;
    time32 peakAmpsTime;
    time32 peakAmpsStartTime;
    uint8_t reserved24[8];
    uint32_t cumulativePower;
    int32_t cumulativePowerStartTime;
    float cumulativeStartEnergy;
    uint8_t reserved44[180];
};
static_assert(sizeof(sTolmAbsPowerConfigClr) == powerConfigSize);
static_assert(offsetof(sTolmAbsPowerConfigClr, cumulativePower) == 32);

// Prints the section field by field (12 lines); a failed allocation or read prints its message
// only.
void dumpPowerConfig();
