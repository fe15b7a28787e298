#include "orbelstatctl/commands.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstring>
#include <ctime>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
using Values = std::vector<std::optional<std::string>>;

// The time now: seconds since 1970 with milliseconds, or the same as a date and time of UTC.
static std::string timeText(bool isDate) {
    const auto now = std::chrono::floor<milliseconds>(std::chrono::system_clock::now());
    const auto total = now.time_since_epoch().count();
    const time_t seconds = total / 1000;
    const std::string fraction = '.' + std::to_string(1000 + total % 1000).substr(1);
    char date[32];
    tm utc{};
    strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", gmtime_r(&seconds, &utc));
    return isDate ? date + fraction + 'Z' : std::to_string(seconds) + fraction;
}

// A cell of a line of comma-separated values.
static std::string cellOf(const std::string &text) {
    std::string quoted = "\"";
    for (const char character : text) {
        quoted += character == '"' ? "\"\"" : std::string(1, character);
    }
    return text.find_first_of(",\"") == std::string::npos ? text : quoted + '"';
}

static std::string csvOf(const Values &values) {
    std::string line = timeText(false);
    for (const auto &value : values) {
        line += ',' + cellOf(value.value_or(""));
    }
    return line + '\n';
}

// The changes since the last value of each field, which they replace.
static std::string changesOf(const std::vector<Field> &fields, const Values &values, Values &last) {
    const std::string time = timeText(true);
    std::string lines;
    for (size_t i = 0; i < fields.size(); ++i) {
        if (values[i] && last[i] && *values[i] != *last[i]) {
            lines += time + ' ' + fields[i].path + ": " + *last[i] + " -> " + *values[i] + '\n';
        }
        last[i] = values[i] ? values[i] : last[i];
    }
    return lines;
}

// A descriptor that can be read once a signal has asked for the end. A closed pipe sends none.
static int openEndSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    signal(SIGPIPE, SIG_IGN);
    return signalfd(-1, &signals, SFD_CLOEXEC);
}

// Waits for a moment. Returns false if before that a signal has asked for the end or nobody reads
// standard output any more.
static bool waitUntil(Clock::time_point moment, int endSignals) {
    pollfd ends[] = {{endSignals, POLLIN, 0}, {STDOUT_FILENO, 0, 0}};
    const auto left = std::chrono::ceil<milliseconds>(moment - Clock::now()).count();
    return poll(ends, std::size(ends), static_cast<int>(std::max<int64_t>(left, 0))) == 0;
}

// Writes a text, in pieces that a pipe takes whole or not yet. Returns false if before that a
// signal has asked for the end or nobody reads any more.
static bool writeUnlessEnded(std::string_view text, int endSignals) {
    while (!text.empty()) {
        pollfd files[] = {{endSignals, POLLIN, 0}, {STDOUT_FILENO, POLLOUT, 0}};
        if (poll(files, std::size(files), -1) < 0 || files[0].revents != 0) {
            return false;
        }
        const ssize_t written =
            write(STDOUT_FILENO, text.data(), std::min<size_t>(text.size(), PIPE_BUF));
        if (written < 0 && errno != EPIPE) {
            throw Stop{failed, std::string("standard output: ") + strerror(errno)};
        }
        if (written < 0) {
            return false;
        }
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

int watchFields(const Words &words, double seconds, uint64_t count, bool isCsv) {
    const std::vector<Field> fields = fieldsOf(parsePaths(words, Kind::any));
    const std::chrono::duration<double> interval(seconds);
    const int endSignals = openEndSignals();
    const auto start = Clock::now();
    Source source;
    Values values(fields.size());
    Values last(fields.size());
    std::string text = isCsv ? "time" : "";
    for (size_t i = 0; isCsv && i < fields.size(); ++i) {
        text += ',' + fields[i].path + (i + 1 == fields.size() ? "\n" : "");
    }
    for (uint64_t tick = 0; count == 0 || tick < count;) {
        std::ranges::transform(fields, values.begin(),
                               [&](const Field &field) { return source.valueOf(field); });
        text += isCsv ? csvOf(values) : changesOf(fields, values, last);
        if (!writeUnlessEnded(text, endSignals)) {
            break;
        }
        text.clear();
        source.refresh();
        // A tick whose moment has passed is skipped, and counts.
        tick = std::max(tick, static_cast<uint64_t>((Clock::now() - start) / interval)) + 1;
        const auto wait = std::chrono::duration_cast<Clock::duration>(tick * interval);
        if ((count == 0 || tick < count) && !waitUntil(start + wait, endSignals)) {
            break;
        }
    }
    return source.hasFailed() ? failed : succeeded;
}
