/* The platform's shared-data library, in a file of C for its header, likewise. */
#include "shm/platform.h"

#include PLATFORM_DATA_HEADER

const char *orbelPolicyName(int16_t orbelPolicy) {
    return (const void *)policyTypeToString(orbelPolicy);
}
