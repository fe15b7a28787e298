// Takes the platform libraries' place at run time: writes every call down, lets chosen calls fail
// and hands the rest on to the next library. Controlled by environment variables:
//     RECORD       file that the calls are appended to, a line each
//     FAIL_READ    n:result   the n-th read fails with result
//     END_AT_READ  n          the n-th read ends the program, whose unwritten output is lost
//     FAIL_WRITES  result     every write fails with result
//     KEEP_OPEN    file       opened for writing at the first read, and left open
//     POLICY_NAME  format     of every policy's name, with its number; none at all if empty
//     REFUSE       size       malloc refuses requests of this size
//     NO_NULL      n          the first n openings of /dev/null fail
//     NO_TIME      function   localtime_r or strftime fails
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#ifndef __SANITIZE_ADDRESS__
extern "C" void *__libc_malloc(size_t size);

extern "C" void *malloc(size_t size) {
    const char *refused = getenv("REFUSE");
    return refused != nullptr && strtoul(refused, nullptr, 10) == size ? nullptr
                                                                       : __libc_malloc(size);
}
#endif

static void record(const char *line, int length) {
    const char *path = getenv("RECORD");
    const int file = path != nullptr ? open(path, O_WRONLY | O_APPEND | O_CREAT, 0600) : -1;
    if (file >= 0) {
        if (write(file, line, static_cast<size_t>(length)) != length) {
            abort();
        }
        close(file);
    }
}

// The result that FAIL_READ gives to this call.
static int failure(int call) {
    int failing = 0;
    int result = 0;
    const char *rule = getenv("FAIL_READ");
    const bool applies = rule != nullptr && sscanf(rule, "%d:%d", &failing, &result) == 2;
    return applies && call == failing ? result : 0;
}

using Read = int (*)(int32_t, uint8_t *, int32_t, int32_t);
using Write = int (*)(int32_t, const uint8_t *, int32_t, int32_t);

extern "C" int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length) {
    static int calls = 0;
    char line[64];
    if (const char *kept = getenv("KEEP_OPEN"); kept != nullptr && calls == 0) {
        open(kept, O_RDWR);
    }
    record(line, snprintf(line, sizeof line, "read %d %d %d\n", section, offset, length));
    const int result = failure(++calls);
    if (const char *last = getenv("END_AT_READ"); last != nullptr && atoi(last) == calls) {
        _exit(0);
    }
    const auto next = reinterpret_cast<Read>(dlsym(RTLD_NEXT, "Tolm_shm_memread"));
    return result != 0 ? result : next(section, buffer, offset, length);
}

extern "C" int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset,
                                 int32_t length) {
    static char line[8192];
    int used = snprintf(line, sizeof line, "write %d %d %d:", section, offset, length);
    for (int i = 0; i < length; ++i) {
        used += snprintf(line + used, sizeof line - static_cast<size_t>(used), " %02x", buffer[i]);
    }
    line[used++] = '\n';
    record(line, used);
    const auto next = reinterpret_cast<Write>(dlsym(RTLD_NEXT, "Tolm_shm_memwrite"));
    const char *refused = getenv("FAIL_WRITES");
    return refused != nullptr ? atoi(refused) : next(section, buffer, offset, length);
}

extern "C" const char *policyTypeToString(int16_t policy) {
    static char name[512];
    const char *format = getenv("POLICY_NAME");
    record(name, snprintf(name, sizeof name, "name %d\n", policy));
    if (format != nullptr && *format == '\0') {
        return nullptr;
    }
    snprintf(name, sizeof name, "%s-%d", format != nullptr ? format : "POLICY", policy);
    return name;
}

static bool timeFails(const char *function) {
    const char *failing = getenv("NO_TIME");
    return failing != nullptr && strcmp(failing, function) == 0;
}

extern "C" tm *localtime_r(const time_t *time, tm *local) {
    const auto next = reinterpret_cast<decltype(&localtime_r)>(dlsym(RTLD_NEXT, "localtime_r"));
    return timeFails("localtime_r") ? nullptr : next(time, local);
}

extern "C" size_t strftime(char *text, size_t size, const char *format, const tm *time) {
    const auto next = reinterpret_cast<decltype(&strftime)>(dlsym(RTLD_NEXT, "strftime"));
    return timeFails("strftime") ? 0 : next(text, size, format, time);
}

extern "C" int open(const char *path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    const auto next = reinterpret_cast<decltype(&open)>(dlsym(RTLD_NEXT, "open"));
    static int failures = 0;
    const char *failing = getenv("NO_NULL");
    if (failing != nullptr && strcmp(path, "/dev/null") == 0 && failures < atoi(failing)) {
        ++failures;
        errno = EACCES;
        return -1;
    }
    return next(path, flags, mode);
}
