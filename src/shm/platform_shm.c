/* The platform's shared-memory library, in C as its header is. Configuring compiles this file, too,
 * to see whether that header will do; so it includes that one last, and no other. */
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
