/* The shared-data library of the platform: texts for the numbers found in shared memory. */
#ifndef TOLM_DATA_H
#define TOLM_DATA_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The NUL-terminated name of a policy, 0 to 15, owned by the library. Never null. */
const char *policyTypeToString(int16_t policy);

#ifdef __cplusplus
}
#endif

#endif
