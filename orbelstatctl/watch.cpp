#include "orbelstatctl/commands.h"
#include "orbelstatctl/signals.h"
#include "output/standard_streams.h"

#include <cmath>
#include <ctime>

using Values = std::vector<std::optional<std::string>>;

// Returns the time now, with milliseconds: seconds since 1970 or, for `isDate`, a date in UTC.
static std::string formatTime(bool isDate) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const std::string fraction = '.' + std::to_string(1000 + now.tv_nsec / 1'000'000).substr(1);
    char date[32];
    tm utc{};
    strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", gmtime_r(&now.tv_sec, &utc));
    return isDate ? date + fraction + 'Z' : std::to_string(now.tv_sec) + fraction;
}

static std::string formatRow(const Values &values) {
    Strings cells = {formatTime(false)};
    for (const auto &value : values) {
        cells.push_back(value.value_or(""));
    }
    return formatCsvRow(cells);
}

// Returns a line for each value that differs from the last one of its field, which it replaces.
static std::string formatChanges(const std::vector<Field> &fields, const Values &values,
                                 Values &last) {
    const std::string time = formatTime(true);
    std::string lines;
    for (size_t i = 0; i < values.size(); ++i) {
        if (values[i] && last[i] && *values[i] != *last[i]) {
            lines += time + ' ' + fields[i].path + ": " + *last[i] + " -> " + *values[i] + '\n';
        }
        last[i] = values[i] ? values[i] : last[i];
    }
    return lines;
}

ExitStatus runWatch(const Options &arguments) {
    const std::vector<Field> fields = expandPaths(parsePaths(arguments.operands, Kind::any));
    const Clock::duration interval = toDuration(arguments.number("-i", 0.001, 1e6, 1));
    const double count = arguments.number("-n", 1, 1e9, INFINITY);
    rejectIf(std::floor(count) != count, "-n: not an integer: " + arguments.last("-n"));
    const bool isCsv = arguments.has("--csv");
    Strings header = {"time"};
    std::ranges::transform(fields, std::back_inserter(header), &Field::path);
    Source source;
    Values last(fields.size());
    catchInterrupts();
    signal(SIGPIPE, SIG_IGN);
    const auto start = Clock::now();
    bool isMore = !isCsv || printRow(formatCsvRow(header));
    for (int64_t tick = 0; isMore && !isInterrupted();) {
        Values values;
        for (const Field &field : fields) {
            values.push_back(source.readValue(field));
        }
        source.invalidate();
        isMore = printRow(isCsv ? formatRow(values) : formatChanges(fields, values, last));
        // Ticks whose time has passed are skipped but still counted.
        tick = std::max(tick, (Clock::now() - start) / interval) + 1;
        isMore = isMore && static_cast<double>(tick) < count &&
                 sleepUntil(start + tick * interval, OnReaderExit::wake);
    }
    forgetClosedReader();
    return source.hasFailed() ? ExitStatus::failure : ExitStatus::success;
}

const char watchHelp[] = R"(Usage: orbelstatctl watch [-i SECONDS] [-n COUNT] [--csv] PATH ...

Print TIME PATH: OLD -> NEW whenever a value differs from the previous sample.

  -i SECONDS  Interval between samples, 0.001 to 1000000 (default: 1)
  -n COUNT    Stop after COUNT samples, including skipped ones (default: no limit)
  --csv       Print every sample as a row of comma-separated values

Examples:
  orbelstatctl watch upm.policies
  orbelstatctl watch --csv -i 0.1 -n 600 'psu[0..1].Pout' >power.csv
)";
