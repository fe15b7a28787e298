// SIGINT and SIGTERM in watch and wait, sleeping, and blocking signals.
#pragma once

#include <chrono>
#include <csignal>
#include <string_view>

using Clock = std::chrono::steady_clock;

// Converts seconds, at most a million.
inline Clock::duration toDuration(double seconds) {
    return std::chrono::round<Clock::duration>(std::chrono::duration<double>(seconds));
}

// Blocks signals while it exists.
class BlockedSignals {
  public:
    explicit BlockedSignals(const sigset_t &signals) {
        sigprocmask(SIG_BLOCK, &signals, &previous);
    }
    ~BlockedSignals() {
        sigprocmask(SIG_SETMASK, &previous, nullptr);
    }
    BlockedSignals(const BlockedSignals &) = delete;
    BlockedSignals &operator=(const BlockedSignals &) = delete;

    sigset_t previous{}; // the mask before
};

// Returns the set of SIGINT and SIGTERM.
sigset_t interrupts();

// From now on the first SIGINT or SIGTERM only makes isInterrupted() return true; a second one ends
// the program at once, whatever it is doing. Signals that are ignored stay ignored.
void catchInterrupts();
bool isInterrupted();

enum class OnReaderExit { ignore, wake };

// Sleeps until `moment`. Returns false if SIGINT or SIGTERM arrives first or, with `wake`, if
// standard output loses its reader. Throws a failure if sleeping fails.
bool sleepUntil(Clock::time_point moment, OnReaderExit onReaderExit);

// Prints and flushes a row. Meanwhile blocks all signals except SIGINT and SIGTERM: a handler of
// the platform's library could interrupt the write, and then the C library would drop the row.
// Returns false if it cannot be written.
bool printRow(std::string_view row);
