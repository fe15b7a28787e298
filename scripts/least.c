/*
 * The least that a report can cost, for the benchmark: a start with the platform's two libraries,
 * the report's own reads and its finished text, written in pieces as large as the report's own. The
 * benchmark generates the two included files, so that nothing is left to be worked out at run time.
 */
#include "tolm_shm.h"

#include <unistd.h>

static const struct {
    int32_t section, offset, length;
} reads[] = {
#include "reads.inc"
    {0, 0, 0} /* the end */
};
static const unsigned char text[] = {
#include "text.inc"
};

int main(void) {
    static uint8_t buffer[65536];
    const size_t piece = 16384;

    for (int i = 0; reads[i].length != 0; ++i) {
        if (Tolm_shm_memread(reads[i].section, buffer, reads[i].offset, reads[i].length) != 0) {
            return 1;
        }
    }
    for (size_t at = 0; at < sizeof text; at += piece) {
        const size_t length = sizeof text - at < piece ? sizeof text - at : piece;
        if (write(STDOUT_FILENO, text + at, length) != (ssize_t)length) {
            return 1;
        }
    }
    return 0;
}
