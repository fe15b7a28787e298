/*
 * The baseline of the benchmark, a program that does only the unavoidable work of a report:
 * `baseline TEXT [SECTION OFFSET LENGTH]...` loads the platform's two libraries, makes the report's
 * reads and copies its finished text from the file TEXT to standard output, in pieces of the size
 * in which the report writes.
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
