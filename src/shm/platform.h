/*
 * Wrappers for the functions of the platform's libraries. Their types are fixed; those in the
 * platform's headers may differ. All names begin with `orbel`, so that macros in those headers
 * cannot replace them.
 */
#ifndef ORBEL_SHM_PLATFORM_H
#define ORBEL_SHM_PLATFORM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Calls Tolm_shm_memread: copies `length` bytes at `offset` of a section. Returns 0, or the
 * library's error code. */
int orbelReadShm(int32_t section, uint8_t *bytes, int32_t offset, int32_t length);

/* Calls Tolm_shm_memwrite: copies `length` bytes to `offset` of a section. Returns 0, or the
 * library's error code. */
int orbelWriteShm(int32_t section, const uint8_t *bytes, int32_t offset, int32_t length);

/* Calls policyTypeToString: returns the library's name of a policy, or null. */
const char *orbelPolicyName(int16_t policy);

#ifdef __cplusplus
}
#endif

#endif
