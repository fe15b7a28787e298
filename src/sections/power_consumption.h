// The power consumption entry, which the power reporting section and, without the time, the global
// power section are full of.
#pragma once

#include "sections/rows/row.h"

struct __attribute__((packed)) sPwrConsEntry {
    uint16_t u16CurPwr;
    uint16_t u16MinPwr;
    uint16_t u16MaxPwr;
    uint16_t u16AvgPwr;
    Time32 u32IPMITimeStmp;
    uint8_t reserved1[5];
};
static_assert(sizeof(sPwrConsEntry) == 17);

// One row a line.
// clang-format off
inline constexpr auto powerRows = [] {
    using Record = sPwrConsEntry;
    return rowsOf(
        ROW(u16CurPwr),
        ROW(u16MinPwr),
        ROW(u16MaxPwr),
        ROW(u16AvgPwr));
}();
inline constexpr auto consumptionRows = [] {
    using Record = sPwrConsEntry;
    return rowsOf(powerRows, ROW(u32IPMITimeStmp));
}();
// clang-format on
