#include "upm/policy_fields.h"

#include <array>

using Record = sPolicy;

struct Field {
    Row row;
    PolicyPrompt prompt;
};

// clang-format off
#define NUMBER(member, max) {ROW(member), {false, max, "", ""}}
#define SWITCH(member) {ROW(member), {true, 1, " (0/1)", ""}}

// One row a line.
static constexpr Field fields[] = {
    SWITCH(state),
    NUMBER(policyPowerLimit, 100000),
    NUMBER(policyPowerLimitMultiplier, 1000),
    SWITCH(PolicyAggressiveIntervalEnable),
    SWITCH(PolicySetLimitToFloorImmediateEnable),
    NUMBER(PolicyResponseTimeLimit, 1000000),
    NUMBER(PolicyTotalResponseDelay, 1000000),
    NUMBER(PolicyRampUpDelay, 1000000),
    NUMBER(PolicyRampUpDuration, 1000000),
    SWITCH(limitingState),
    SWITCH(PolicyActiveState),
    NUMBER(NumResponseTimeLimitInterval, 100000),
    NUMBER(NumDecisionInterval, 100000),
    NUMBER(NumRampUpDurationInterval, 100000),
    NUMBER(NumRampUpDelayInterval, 100000),
    NUMBER(NumLimitParkingInterval, 100000),
    NUMBER(NumTotalResponseDelayInterval, 100000),
    NUMBER(NumRampUpRaiseLimitInterval, 100000),
    NUMBER(LoadSubsidedThreshold, 100000),
    SWITCH(PolicyEnableOverride),
    NUMBER(LimitParkingDuration, 1000000),
    NUMBER(LoadSubsidedPercentThreshold, 100),
    NUMBER(SFMultiplier, 100000),
    NUMBER(SFOffset, 100000),
    NUMBER(PolicyHysteresis, 100000),
    {ROW(PolicyDomain), {true, 3, " (0=cpu,1=mem,2=system,3=gpu)", " (0=cpu..3=gpu)"}},
    NUMBER(PolicyPwrInputSource, UINT32_MAX),
    NUMBER(PolicyPwrInputSimulData, UINT32_MAX),
    NUMBER(PolicyExcursion, UINT32_MAX),
    NUMBER(PolicyExcursionCounter, UINT32_MAX),
};
// clang-format on
static_assert(std::size(fields) == policyFieldCount);

// Whether each field begins where the one before it ends.
static consteval bool areContiguous() {
    size_t end = 0;
    for (const Field &field : fields) {
        if (field.row.shape.offset != end) {
            return false;
        }
        end += elementSize(field.row.shape.kind);
    }
    return end == offsetof(sPolicy, reserved68);
}
static_assert(areContiguous() && offsetof(sPolicy, reserved68) == 68);

static constexpr auto rows = makeTable<fields>();
static consteval auto promptColumn() {
    std::array<PolicyPrompt, policyFieldCount> prompts{};
    for (size_t i = 0; i < prompts.size(); ++i) {
        prompts[i] = fields[i].prompt;
    }
    return prompts;
}
static constexpr auto prompts = promptColumn();

Row policyRow(int index) {
    return Rows(rows)[static_cast<size_t>(index)];
}

const PolicyPrompt &policyPrompt(int index) {
    return prompts[static_cast<size_t>(index)];
}
