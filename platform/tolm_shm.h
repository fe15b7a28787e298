/* The shared-memory library of the platform: byte ranges of numbered sections. */
#ifndef TOLM_SHM_H
#define TOLM_SHM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Copies exactly `length` bytes from byte `offset` of the section into `buffer`. Returns 0, or a
 * negative errno value and copies nothing: -ENOENT without such a section, -EINVAL for a negative
 * offset or length, -ERANGE when the range does not lie inside the section.
 */
int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length);

/* The same in the other direction. A section never grows. */
int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset, int32_t length);

#ifdef __cplusplus
}
#endif

#endif
