// An LD_PRELOAD library that logs every call to the platform's libraries, makes selected calls fail
// and forwards the rest. Controlled by environment variables:
//     RECORD          file that the calls are appended to, one per line; always given
//     FAIL_READ       n:result   the n-th read fails with result
//     FAIL_WRITES     result     every write fails with result
//     END_AT_CALL     n          the n-th call ends the program, whose unwritten output is lost
//     KEEP_OPEN       file       opened for writing at the first call, and left open
//     POLICY_NAME     prefix     of every policy's name, before its number; no name if empty
//     FAIL_MALLOC     size       malloc fails for requests of this size
//     FAIL_OPEN_NULL  n          the first n openings of /dev/null fail
//     FAIL_CALL       function   dup2, localtime_r, strftime, or fclose of standard output fails
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <unistd.h>

// The function of this name in the libraries that come after this one.
#define NEXT(function) reinterpret_cast<decltype(&function)>(dlsym(RTLD_NEXT, #function))

static const char *setting(const char *name) {
    const char *text = getenv(name);
    return text != nullptr ? text : "";
}

static bool fails(const char *function) {
    errno = EIO;
    return strcmp(setting("FAIL_CALL"), function) == 0;
}

static void record(const char *format, auto... values) {
    static int calls = 0;
    if (calls++ == 0) {
        static FILE *kept [[maybe_unused]] = fopen(setting("KEEP_OPEN"), "r+");
    }
    FILE *file = fopen(getenv("RECORD"), "a");
    fprintf(file, format, values...);
    fclose(file);
    if (calls == atoi(setting("END_AT_CALL"))) {
        _exit(0);
    }
}

#ifndef __SANITIZE_ADDRESS__
extern "C" void *__libc_malloc(size_t size);

extern "C" void *malloc(size_t size) {
    const bool hasFailed = size > 0 && strtoul(setting("FAIL_MALLOC"), nullptr, 10) == size;
    return hasFailed ? nullptr : __libc_malloc(size);
}
#endif

extern "C" int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length) {
    static int reads = 0;
    record("read %d %d %d\n", section, offset, length);
    int failing = 0;
    int result = 0;
    sscanf(setting("FAIL_READ"), "%d:%d", &failing, &result);
    return failing == ++reads ? result : NEXT(Tolm_shm_memread)(section, buffer, offset, length);
}

extern "C" int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset,
                                 int32_t length) {
    char bytes[4096] = ""; // enough for the policies, which are written at once
    for (int i = 0; i < length; ++i) {
        snprintf(bytes + 3 * i, 4, " %02x", buffer[i]);
    }
    record("write %d %d %d:%s\n", section, offset, length, bytes);
    const char *result = getenv("FAIL_WRITES");
    return result != nullptr ? atoi(result)
                             : NEXT(Tolm_shm_memwrite)(section, buffer, offset, length);
}

extern "C" const char *policyTypeToString(int16_t policy) {
    static char name[512];
    record("name %d\n", policy);
    const char *prefix = getenv("POLICY_NAME");
    snprintf(name, sizeof name, "%s-%d", prefix != nullptr ? prefix : "POLICY", policy);
    return prefix != nullptr && *prefix == '\0' ? nullptr : name;
}

extern "C" tm *localtime_r(const time_t *time, tm *local) {
    return fails("localtime_r") ? nullptr : NEXT(localtime_r)(time, local);
}

extern "C" size_t strftime(char *text, size_t size, const char *format, const tm *time) {
    return fails("strftime") ? 0 : NEXT(strftime)(text, size, format, time);
}

extern "C" int dup2(int from, int to) {
    return fails("dup2") ? -1 : NEXT(dup2)(from, to);
}

extern "C" int fclose(FILE *file) {
    return file == stdout && fails("fclose") ? EOF : NEXT(fclose)(file);
}

// Passes on a mode even if there is none.
extern "C" int open(const char *path, int flags, unsigned mode) {
    static int failures = 0;
    if (strcmp(path, "/dev/null") == 0 && failures < atoi(setting("FAIL_OPEN_NULL"))) {
        ++failures;
        errno = EACCES;
        return -1;
    }
    return NEXT(open)(path, flags, mode);
}
