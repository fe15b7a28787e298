// What may be written to the UPM data block, field by field, and up to which bound.
#pragma once

#include "sections/rows/table.h"
#include "upm/block.h"

#include <algorithm>
#include <optional>

// An integer field takes whole numbers from 0 to `max`. That may be more than a field of two bytes
// holds; how its low bytes are written is its editor's business. A double takes numbers from
// -maxDouble to maxDouble.
struct WritableField {
    Row row;
    uint32_t max;
};
inline constexpr double maxDouble = 1e9;

consteval WritableField upTo(uint32_t max, const Row &row) {
    return {row, max};
}
consteval WritableField upToMaxDouble(const Row &row) {
    return {row, 0};
}

// One field a line.
// clang-format off

// All fields of a policy record, in record order, which is that of the reports and of the policy
// editor's numbers. Offsets are bytes from the start of the policy.
inline constexpr auto policyFields = [] {
    using Record = sPolicy;
    return std::array{
        upTo(1, ROW(state)),
        upTo(100000, ROW(policyPowerLimit)),
        upTo(1000, ROW(policyPowerLimitMultiplier)),
        upTo(1, ROW(PolicyAggressiveIntervalEnable)),
        upTo(1, ROW(PolicySetLimitToFloorImmediateEnable)),
        upTo(1000000, ROW(PolicyResponseTimeLimit)),
        upTo(1000000, ROW(PolicyTotalResponseDelay)),
        upTo(1000000, ROW(PolicyRampUpDelay)),
        upTo(1000000, ROW(PolicyRampUpDuration)),
        upTo(1, ROW(limitingState)),
        upTo(1, ROW(PolicyActiveState)),
        upTo(100000, ROW(NumResponseTimeLimitInterval)),
        upTo(100000, ROW(NumDecisionInterval)),
        upTo(100000, ROW(NumRampUpDurationInterval)),
        upTo(100000, ROW(NumRampUpDelayInterval)),
        upTo(100000, ROW(NumLimitParkingInterval)),
        upTo(100000, ROW(NumTotalResponseDelayInterval)),
        upTo(100000, ROW(NumRampUpRaiseLimitInterval)),
        upTo(100000, ROW(LoadSubsidedThreshold)),
        upTo(1, ROW(PolicyEnableOverride)),
        upTo(1000000, ROW(LimitParkingDuration)),
        upTo(100, ROW(LoadSubsidedPercentThreshold)),
        upTo(100000, ROW(SFMultiplier)),
        upTo(100000, ROW(SFOffset)),
        upTo(100000, ROW(PolicyHysteresis)),
        upTo(3, ROW(PolicyDomain)),
        upTo(UINT32_MAX, ROW(PolicyPwrInputSource)),
        upTo(UINT32_MAX, ROW(PolicyPwrInputSimulData)),
        upTo(UINT32_MAX, ROW(PolicyExcursion)),
        upTo(UINT32_MAX, ROW(PolicyExcursionCounter)),
    };
}();

// The power limits and thermal values that may be written; of an array, each element.
inline constexpr auto limitAndThermalFields = [] {
    using Record = sUpmBlock;
    return std::array{
        upTo(100000, ROW(powerLimits.cpuPPL)),
        upTo(100000, ROW(powerLimits.cpuPL1)),
        upTo(100000, ROW(powerLimits.cpuPL2)),
        upTo(100000, ROW(powerLimits.cpuPL4)),
        upTo(100000, ROW(powerLimits.sysPL1)),
        upTo(100000, ROW(powerLimits.sysPL2)),
        upTo(100, ROW(powerLimits.dimmBwThrtlPerc)),
        upTo(100000, ROW(cpuPwrThermal.rawdts)),
        upTo(100000, ROW(cpuPwrThermal.thermalMargin)),
        upTo(100000, ROW(cpuPwrThermal.cpupkgPwr)),
        upTo(100000, ROW(cpuPwrThermal.tarTemp)),
        upToMaxDouble(ROW(cpuPwrThermal.dimmPwr)),
    };
}();
// clang-format on

// The column of bounds, apart from the rows that only the compiler needs.
template <const auto &fields>
inline constexpr auto boundsOf = [] {
    std::array<uint32_t, std::size(fields)> column{};
    std::transform(fields.begin(), fields.end(), column.begin(),
                   [](const WritableField &field) { return field.max; });
    return column;
}();

// A value that may be written: its size in bytes, and its bound as above.
struct WritableValue {
    uint16_t size;
    uint32_t max;
};
// The value whose bytes begin at `offset` of the block: a field or an element of one. Nothing if
// none that may be written does.
std::optional<WritableValue> writableValueAt(size_t offset);

consteval bool allMembersHaveRows() {
    size_t end = 0;
    for (const WritableField &field : policyFields) {
        if (field.row.shape.offset != end) {
            return false;
        }
        end += field.row.shape.size;
    }
    return end == offsetof(sPolicy, reserved1);
}
static_assert(allMembersHaveRows(),
              "a member of the policy record has no row, or not in its place");

// The field with this offset in the block; there must be one.
consteval WritableField limitOrThermalField(size_t offset) {
    return *std::find_if(
        limitAndThermalFields.begin(), limitAndThermalFields.end(),
        [offset](const WritableField &field) { return field.row.shape.offset == offset; });
}
