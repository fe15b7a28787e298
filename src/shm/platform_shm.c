/* Wrapper for the platform's shared-memory library. In C because the library's header may be C
 * only. CMake also compiles this file to check that header, so the file includes it last, and no
 * header of the other library. */
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
