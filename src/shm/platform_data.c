/* Wrapper for the platform's shared-data library. In C because the library's header may be C only;
 * see platform_shm.c. */
#include "shm/platform.h"

#include PLATFORM_DATA_HEADER

const char *orbelPolicyName(int16_t orbelPolicy) {
    return (const void *)policyTypeToString(orbelPolicy);
}
