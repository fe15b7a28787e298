// Linked when configuring, to see whether the platform's libraries will do: calls what the program
// calls.
#include "shm/platform.h"

int main() {
    uint8_t byte[1] = {};
    return orbelReadShm(0, byte, 0, 1) + orbelWriteShm(0, byte, 0, 1) + orbelPolicyName(0)[0];
}
