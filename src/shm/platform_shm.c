/*
 * The platform's shared-memory library. This file is C, as the library's header is, and includes that
 * header last and no other: it is compiled when configuring, too, to see whether the header will do.
 */
#include "shm/platform.h"

#include PLATFORM_SHM_HEADER

int orbelReadShm(int32_t orbelSection, uint8_t *orbelBytes, int32_t orbelOffset,
                 int32_t orbelLength) {
    return (int)Tolm_shm_memread(orbelSection, (void *)orbelBytes, orbelOffset, orbelLength);
}

int orbelWriteShm(int32_t orbelSection, const uint8_t *orbelBytes, int32_t orbelOffset,
                  int32_t orbelLength) {
    return (int)Tolm_shm_memwrite(orbelSection, (void *)orbelBytes, orbelOffset, orbelLength);
}
