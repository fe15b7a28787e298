// The readings of a voltage regulator, which are part of the power reporting section.
#pragma once

#include "rows/row.h"

struct __attribute__((packed)) sVcoreVRData {
    Time32 u32IPMITimeStmp;
    float temp;
    float Vin;
    float Vout;
    float Pout;
    float Iout;
    float CntlrTemp;
    float Pcc;
    float Ocw;
    float FinalICA;
    uint8_t reserved1[1];
    char DisplayName[30];
    char PlanarId[30];
    char VendorName[31];
};
static_assert(sizeof(sVcoreVRData) == 132);

// One row per line.
// clang-format off
inline constexpr Row regulatorRows[] = {
    ROW(sVcoreVRData, u32IPMITimeStmp),
    ROW(sVcoreVRData, temp),
    ROW(sVcoreVRData, Vin),
    ROW(sVcoreVRData, Vout),
    ROW(sVcoreVRData, Pout),
    ROW(sVcoreVRData, Iout),
    ROW(sVcoreVRData, CntlrTemp),
    ROW(sVcoreVRData, Pcc),
    ROW(sVcoreVRData, Ocw),
    ROW(sVcoreVRData, FinalICA),
    ROW(sVcoreVRData, DisplayName),
    ROW(sVcoreVRData, PlanarId),
    ROW(sVcoreVRData, VendorName),
};
// clang-format on
