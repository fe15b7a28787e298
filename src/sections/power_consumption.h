// The power consumption entry, which the power reporting section and, under another name, the
// global power section are full of.
#pragma once

#include "sections/table.h"

struct __attribute__((packed)) sPwrConsEntry {
    uint16_t u16CurPwr;
    uint16_t u16MinPwr;
    uint16_t u16MaxPwr;
    uint16_t u16AvgPwr;
    time32 u32IPMITimeStmp;
    uint8_t reserved12[5];
};
static_assert(sizeof(sPwrConsEntry) == 17);

// The four powers, then the time.
namespace consumption {
using Record = sPwrConsEntry;
// One row a line.
// clang-format off
inline constexpr Row rows[] = {
    ROW(u16CurPwr),
    ROW(u16MinPwr),
    ROW(u16MaxPwr),
    ROW(u16AvgPwr),
    ROW(u32IPMITimeStmp),
};
// clang-format on
} // namespace consumption
inline constexpr auto consumptionFields = makeTable<consumption::rows>();
