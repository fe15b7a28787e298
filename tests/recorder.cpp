// An LD_PRELOAD library that logs every call to the platform's libraries, makes selected calls fail
// and forwards the rest. Controlled by environment variables:
//     RECORD          file that the calls are appended to, one per line; always given
//     FAIL_READ       n:result   the n-th read fails with result; n:result:m up to the m-th one
//     FAIL_WRITES     result     every write fails with result
//     POKE            n:section:offset:byte  another process changes a byte before the n-th call
//     RAISE           n:signal   the signal arrives in the n-th call and in each later one
//     CLOCK           start:step the time in milliseconds: advances by step in each read and by
//                                sleeps, which are logged and not slept
//     END_AT_CALL     n          the n-th call ends the program, whose unwritten output is lost
//     KEEP_OPEN       file       opened for writing at the first call, and left open
//     POLICY_NAME     prefix     of every policy's name, before its number; no name if empty
//     FAIL_MALLOC     size       malloc fails for requests of this size
//     FAIL_OPEN_NULL  n          the first n openings of /dev/null fail
//     FAIL_CALL       function   dup2, fsync, localtime_r, ppoll, strftime, or fclose of standard
//     output fails
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <poll.h>
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

static int calls = 0; // logged so far

// Does what another process would do at this moment.
static void interfere() {
    int call = 0;
    int section = 0;
    int offset = 0;
    int value = 0;
    sscanf(setting("POKE"), "%d:%d:%d:%d", &call, &section, &offset, &value);
    if (call == calls) {
        char path[512];
        snprintf(path, sizeof path, "%s/section-%d", setting("TOLM_SHM_DIR"), section);
        FILE *file = fopen(path, "r+");
        fseek(file, offset, SEEK_SET);
        fputc(value, file);
        fclose(file);
    }
    if (sscanf(setting("RAISE"), "%d:%d", &call, &value) == 2 && calls >= call) {
        raise(value);
    }
}

static void record(const char *format, auto... values) {
    if (calls++ == 0) {
        static FILE *kept [[maybe_unused]] = fopen(setting("KEEP_OPEN"), "r+");
    }
    FILE *file = fopen(getenv("RECORD"), "a");
    fprintf(file, format, values...);
    fclose(file);
    interfere();
    if (calls == atoi(setting("END_AT_CALL"))) {
        _exit(0);
    }
}

static int64_t passed = 0; // milliseconds since the start of CLOCK

static int64_t readClock(const char *format) {
    long value = 0;
    sscanf(setting("CLOCK"), format, &value);
    return value;
}

extern "C" int clock_gettime(clockid_t clock, timespec *time) {
    if (*setting("CLOCK") == '\0') {
        return NEXT(clock_gettime)(clock, time);
    }
    const int64_t now = readClock("%ld") + passed;
    *time = {now / 1000, now % 1000 * 1000000};
    return 0;
}

extern "C" int ppoll(pollfd *files, nfds_t count, const timespec *timeout,
                     const sigset_t *signals) {
    if (fails("ppoll") || *setting("CLOCK") == '\0') {
        return fails("ppoll") ? -1 : NEXT(ppoll)(files, count, timeout, signals);
    }
    const int64_t time = timeout->tv_sec * 1000 + (timeout->tv_nsec + 999999) / 1000000;
    record("sleep %ld\n", time);
    passed += time;
    return 0;
}

extern "C" int __ppoll_chk(pollfd *files, nfds_t count, const timespec *timeout,
                           const sigset_t *signals, size_t /*size*/) {
    return ppoll(files, count, timeout, signals);
}

extern "C" int fsync(int file) {
    record("%s\n", "fsync");
    return fails("fsync") ? -1 : NEXT(fsync)(file);
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
    passed += readClock("%*ld:%ld");
    int first = 0;
    int result = 0;
    int last = 0;
    const bool isOne = sscanf(setting("FAIL_READ"), "%d:%d:%d", &first, &result, &last) < 3;
    ++reads;
    return first <= reads && reads <= (isOne ? first : last)
               ? result
               : NEXT(Tolm_shm_memread)(section, buffer, offset, length);
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
