// Stand-in for the controller's shared-data library.
#include "tolm_data.h"

const char *policyTypeToString(int16_t policy) {
    switch (policy) {
    case 0:
        return "USER_POWER_CAP";
    case 1:
        return "RACK_POWER_CAP";
    case 2:
        return "GROUP_POWER_CAP";
    case 3:
        return "BOOT_POWER_CAP";
    case 4:
        return "PSU_REDUNDANCY";
    case 5:
        return "PSU_HOT_SPARE";
    case 6:
        return "PSU_OVERLOAD";
    case 7:
        return "INPUT_UNDERVOLTAGE";
    case 8:
        return "INLET_TEMPERATURE";
    case 9:
        return "OUTLET_TEMPERATURE";
    case 10:
        return "CPU_THERMAL";
    case 11:
        return "MEMORY_THERMAL";
    case 12:
        return "GPU_THERMAL";
    case 13:
        return "FAN_FAILURE";
    case 14:
        return "BATTERY_BACKUP";
    case 15:
        return "SAFE_FALLBACK";
    default:
        return "UNKNOWN_POLICY";
    }
}
