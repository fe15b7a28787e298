// Linked when CMake configures, with one or both of the wrapper files in src/shm. Calls the
// wrappers that are linked, so that an optimising linker keeps them.
#include "shm/platform.h"

#pragma weak orbelReadShm
#pragma weak orbelWriteShm
#pragma weak orbelPolicyName

int main() {
    uint8_t byte[1] = {};
    return (orbelReadShm != nullptr ? orbelReadShm(0, byte, 0, 1) : 0) +
           (orbelWriteShm != nullptr ? orbelWriteShm(0, byte, 0, 1) : 0) +
           (orbelPolicyName != nullptr ? orbelPolicyName(0)[0] : 0);
}
