// Stand-in for the controller's shared-data library.
#include "standin/tolm_data.h"

const char *policyTypeToString(int16_t policy) {
    static const char *const names[] = {
        "USER_POWER_CAP",    "RACK_POWER_CAP",     "GROUP_POWER_CAP", "BOOT_POWER_CAP",
        "PSU_REDUNDANCY",    "PSU_HOT_SPARE",      "PSU_OVERLOAD",    "INPUT_UNDERVOLTAGE",
        "INLET_TEMPERATURE", "OUTLET_TEMPERATURE", "CPU_THERMAL",     "MEMORY_THERMAL",
        "GPU_THERMAL",       "FAN_FAILURE",        "BATTERY_BACKUP",  "SAFE_FALLBACK",
    };
    static constexpr int count = sizeof names / sizeof *names;
    return policy >= 0 && policy < count ? names[policy] : "UNKNOWN_POLICY";
}
