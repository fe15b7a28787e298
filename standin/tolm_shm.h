/*
 * The shared-memory library of the platform: byte ranges of numbered sections.
 *
 * Of the stand-in, section n is the file section-<n> in the directory that the environment variable
 * TOLM_SHM_DIR names, or in /dev/shm/tolm if that is unset or empty. Each call is whole: it holds
 * the file's lock (flock), shared to read and exclusive to write.
 */
#ifndef TOLM_SHM_H
#define TOLM_SHM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Copies exactly `length` bytes from byte `offset` of the section into `buffer`. Returns 0, or a
 * negative errno value and then, but for -EIO, copies nothing:
 *
 *     -ENOENT (-2)         there is no such section
 *     -EIO (-5)            only a part could be copied
 *     -ENXIO (-6)          the section's file is no regular one (a FIFO, a socket, a device)
 *     -EACCES (-13)        it may not be read, or written
 *     -EISDIR (-21)        it is a directory
 *     -EINVAL (-22)        offset or length is negative
 *     -ERANGE (-34)        the range does not lie inside the section
 *     -ENAMETOOLONG (-36)  its path is too long
 *     -ELOOP (-40)         it is a symbolic link
 *
 * or whatever else the file system says.
 */
int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length);

/* The same in the other direction. A section never grows. */
int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset, int32_t length);

#ifdef __cplusplus
}
#endif

#endif
