/*
 * The minimum that a report can cost, for the benchmark: `minimum TEXT [SECTION OFFSET LENGTH]...`
 * starts with the platform's two libraries, makes the report's own reads and writes its finished
 * text from a file, in pieces as large as the report's own.
 */
#include "tolm_shm.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

int main(int argc, char **argv) {
    static uint8_t section[65536];
    static char piece[16384];

    for (int i = 2; i + 2 < argc; i += 3) {
        const int32_t length = atoi(argv[i + 2]);
        if (length > (int32_t)sizeof section ||
            Tolm_shm_memread(atoi(argv[i]), section, atoi(argv[i + 1]), length) != 0) {
            return 1;
        }
    }
    const int text = argc > 1 ? open(argv[1], O_RDONLY) : -1;
    ssize_t length = 0;
    while ((length = read(text, piece, sizeof piece)) > 0) {
        if (write(STDOUT_FILENO, piece, (size_t)length) != length) {
            return 1;
        }
    }
    return length < 0;
}
