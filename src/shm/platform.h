/*
 * The platform's functions with types of the program's own, whatever the platform's headers
 * declare. Names begin with `orbel`, since a macro of those headers could hit any other.
 */
#ifndef ORBEL_SHM_PLATFORM_H
#define ORBEL_SHM_PLATFORM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Tolm_shm_memread: copies bytes out of a section. Returns 0, or the library's error code. */
int orbelReadShm(int32_t section, uint8_t *bytes, int32_t offset, int32_t length);

/* Tolm_shm_memwrite: copies bytes into a section, likewise. Only reads from `bytes`. */
int orbelWriteShm(int32_t section, const uint8_t *bytes, int32_t offset, int32_t length);

/* policyTypeToString: the library's name of a policy, or null. */
const char *orbelPolicyName(int16_t policy);

#ifdef __cplusplus
}
#endif

#endif
