// The power consumption entry, used throughout the power reporting section and, without its time,
// in the global power section.
#pragma once

#include "rows/row.h"

// The power consumption of one domain.
struct __attribute__((packed)) sPwrConsEntry {
    uint16_t u16CurPwr;
    uint16_t u16MinPwr;
    uint16_t u16MaxPwr;
    uint16_t u16AvgPwr;
    Time32 u32IPMITimeStmp;
    uint8_t reserved1[5];
};
static_assert(sizeof(sPwrConsEntry) == 17);

// One row per line.
// clang-format off
inline constexpr Row consumptionRows[] = {
    ROW(sPwrConsEntry, u16CurPwr),
    ROW(sPwrConsEntry, u16MinPwr),
    ROW(sPwrConsEntry, u16MaxPwr),
    ROW(sPwrConsEntry, u16AvgPwr),
    ROW(sPwrConsEntry, u32IPMITimeStmp),
};
// clang-format on
// Without the time.
inline constexpr std::span<const Row> powerRows = std::span(consumptionRows).first(4);
