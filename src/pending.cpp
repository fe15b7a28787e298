// Operations that the command line knows and that are still to come: each says so in one line.
#include "sections/global_section.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"
#include "upm/policy_report.h"
#include "upm/policy_writes.h"
#include "upm/views.h"
#include "wizard/wizard.h"

#include <cstdio>

static void sayPending(const char *operation) {
    printf("%s: not available in this version\n", operation);
}
#define PENDING(operation, ...)                                                                    \
    void operation(__VA_ARGS__) {                                                                  \
        sayPending(#operation);                                                                    \
    }
PENDING(printGlobalSectionOffsets)
PENDING(dumpGlobalSection)
PENDING(dumpPSUInfo)
PENDING(dumpPowerReporting)
PENDING(showPolicy, uint32_t)
PENDING(showAllPolicies)
PENDING(writePolicyState, uint32_t, int32_t)
PENDING(clearPolicyData)
PENDING(dumpUpmData)
PENDING(showCpuPowerLimits)
PENDING(showThermalData)
PENDING(runOverwriteWizard)
