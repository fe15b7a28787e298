// The power consumption entry, which the power reporting section and, under another name, the
// global power section are full of.
#pragma once

#include "sections/field.h"

struct __attribute__((packed)) sPwrConsEntry {
    uint16_t u16CurPwr;
    uint16_t u16MinPwr;
    uint16_t u16MaxPwr;
    uint16_t u16AvgPwr;
    time32 u32IPMITimeStmp; // unused in the global power section
    uint8_t reserved12[5];
};
static_assert(sizeof(sPwrConsEntry) == 17);

// The four powers, then the time. In watts, as the controller's sensors report them.
inline constexpr Row consumptionFields[] = {
#define CONSUMPTION_ROW(member)                                                                    \
    makeRow(#member, kindOf<decltype(sPwrConsEntry::member)>(), 0, offsetof(sPwrConsEntry, member))
    CONSUMPTION_ROW(u16CurPwr), CONSUMPTION_ROW(u16MinPwr),       CONSUMPTION_ROW(u16MaxPwr),
    CONSUMPTION_ROW(u16AvgPwr), CONSUMPTION_ROW(u32IPMITimeStmp),
#undef CONSUMPTION_ROW
};
