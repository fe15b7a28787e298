/*
 * The shared-memory library of the platform: reads and writes bytes of numbered sections.
 *
 * In the stand-in, section n is the file section-<n> in the directory that the environment variable
 * TOLM_SHM_DIR names, or in /dev/shm/tolm if that is unset or empty. Reads and writes are atomic
 * with respect to each other: a call holds a lock on the file (flock), shared for a read and
 * exclusive for a write.
 */
#ifndef TOLM_SHM_H
#define TOLM_SHM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Copies exactly `length` bytes at offset `offset` of the section into `buffer`. Returns 0, or a
 * negative errno value. After any error other than -EIO, nothing has been copied. The values are
 *
 *     -ENOENT (-2)         the section does not exist
 *     -EIO (-5)            only some of the bytes could be copied
 *     -ENXIO (-6)          the section's file is a FIFO, a socket or a device
 *     -EACCES (-13)        the section may not be read
 *     -EISDIR (-21)        the section's file is a directory
 *     -EINVAL (-22)        offset or length is negative
 *     -ERANGE (-34)        the range is not within the section
 *     -ENAMETOOLONG (-36)  the path of the section's file is too long
 *     -ELOOP (-40)         the section's file is a symbolic link
 *
 * and any other error of the file system.
 */
int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length);

/*
 * Copies exactly `length` bytes from `buffer` to offset `offset` of the section. A section never
 * grows. Returns the same values as Tolm_shm_memread. A file without any write permission bit, as
 * in a capture, is write-protected for every user: the result is -EACCES, also for root.
 */
int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset, int32_t length);

#ifdef __cplusplus
}
#endif

#endif
