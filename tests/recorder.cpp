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

static void record(const char *line) {
    const char *path = getenv("RECORD");
    if (FILE *file = path != nullptr ? fopen(path, "a") : nullptr; file != nullptr) {
        fputs(line, file);
        fclose(file);
    }
}

// The function of this name in the libraries that come after this one.
template <typename Function> static Function *next(const char *name, Function * /*ours*/) {
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

extern "C" int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length) {
    static int calls = 0;
    char line[64];
    int failing = 0;
    int result = 0;
    if (const char *kept = getenv("KEEP_OPEN"); kept != nullptr && calls == 0) {
        open(kept, O_RDWR);
    }
    snprintf(line, sizeof line, "read %d %d %d\n", section, offset, length);
    record(line);
    ++calls;
    if (const char *last = getenv("END_AT_READ"); last != nullptr && atoi(last) == calls) {
        _exit(0);
    }
    const char *rule = getenv("FAIL_READ");
    if (rule != nullptr && sscanf(rule, "%d:%d", &failing, &result) == 2 && failing == calls) {
        return result;
    }
    return next("Tolm_shm_memread", Tolm_shm_memread)(section, buffer, offset, length);
}

extern "C" int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset,
                                 int32_t length) {
    static char line[8192];
    int used = snprintf(line, sizeof line, "write %d %d %d:", section, offset, length);
    for (int i = 0; i < length; ++i) {
        used += snprintf(line + used, sizeof line - static_cast<size_t>(used), " %02x", buffer[i]);
    }
    strcpy(line + used, "\n");
    record(line);
    const char *refused = getenv("FAIL_WRITES");
    return refused != nullptr
               ? atoi(refused)
               : next("Tolm_shm_memwrite", Tolm_shm_memwrite)(section, buffer, offset, length);
}

extern "C" const char *policyTypeToString(int16_t policy) {
    static char name[512];
    const char *format = getenv("POLICY_NAME");
    snprintf(name, sizeof name, "name %d\n", policy);
    record(name);
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
    return timeFails("localtime_r") ? nullptr : next("localtime_r", localtime_r)(time, local);
}

extern "C" size_t strftime(char *text, size_t size, const char *format, const tm *time) {
    return timeFails("strftime") ? 0 : next("strftime", strftime)(text, size, format, time);
}

extern "C" int open(const char *path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    static int failures = 0;
    const char *failing = getenv("NO_NULL");
    if (failing != nullptr && strcmp(path, "/dev/null") == 0 && failures < atoi(failing)) {
        ++failures;
        errno = EACCES;
        return -1;
    }
    return next("open", open)(path, flags, mode);
}
