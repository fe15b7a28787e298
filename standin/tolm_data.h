/*
 * The shared-data library of the platform: texts for numbers in the shared memory.
 *
 * The stand-in takes the names of the policies from the file policy-names in the directory of its
 * sections (see tolm_shm.h), where `orbelstatctl save` puts it. Each of its 16 lines is a name and
 * ends in a newline. Within a name, \n is a newline, \t a tab, \\ a backslash and \xhh, with two
 * lower-case hexadecimal digits, any byte. If the file is missing, invalid, not a regular file or
 * larger than 64 KiB, built-in demo names are used. The file is read once, at the first call.
 */
#ifndef TOLM_DATA_H
#define TOLM_DATA_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Returns the name of a policy, 0 to 15, NUL-terminated and owned by the library; "UNKNOWN_POLICY"
 * for any other number. Never returns null.
 */
const char *policyTypeToString(int16_t policy);

#ifdef __cplusplus
}
#endif

#endif
