#include "orbelstatctl/signals.h"

#include "orbelstatctl/messages.h"
#include "output/standard_streams.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <poll.h>
#include <unistd.h>

static volatile sig_atomic_t interrupted = 0;
static volatile sig_atomic_t isCaught[NSIG] = {};

sigset_t interrupts() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

bool isInterrupted() {
    return interrupted != 0;
}

static void handleInterrupt(int /*number*/) {
    interrupted = 1;
    for (const int number : {SIGINT, SIGTERM}) {
        if (isCaught[number] != 0) {
            signal(number, SIG_DFL);
        }
    }
}

void catchInterrupts() {
    for (const int number : {SIGINT, SIGTERM}) {
        struct sigaction action {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler != SIG_IGN) {
            isCaught[number] = 1;
            action.sa_handler = handleInterrupt;
            action.sa_flags = SA_RESTART;
            sigaction(number, &action, nullptr);
        }
    }
}

bool sleepUntil(Clock::time_point moment, OnReaderExit onReaderExit) {
    // Blocked except inside ppoll: a signal between the test and ppoll would not end the sleep.
    const BlockedSignals blocked(interrupts());
    while (!isInterrupted()) {
        const auto left = std::max(moment - Clock::now(), Clock::duration::zero());
        const auto count = std::chrono::duration_cast<std::chrono::nanoseconds>(left).count();
        const timespec timeout = {count / 1'000'000'000, count % 1'000'000'000};
        pollfd output = {STDOUT_FILENO, 0, 0};
        const int events =
            ppoll(&output, onReaderExit == OnReaderExit::wake ? 1 : 0, &timeout, &blocked.previous);
        if (events >= 0) {
            return events == 0;
        }
        if (errno != EINTR) {
            fail(std::string("cannot sleep: ") + strerror(errno));
        }
    }
    return false;
}

bool printRow(std::string_view row) {
    sigset_t others;
    sigfillset(&others);
    sigdelset(&others, SIGINT);
    sigdelset(&others, SIGTERM);
    const BlockedSignals blocked(others);
    print(row);
    flushStandardOutput();
    return ferror(stdout) == 0;
}
