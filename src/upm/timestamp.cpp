#include "upm/timestamp.h"

#include "sections/rows/print_rows.h"
#include "upm/block.h"

#include <cstdio>
#include <ctime>

void printUpmTimestamp(const uint8_t *section) {
    const auto milliseconds = load<uint64_t>(blockIn(section) + offsetof(sUpmBlock, timestamp));
    const auto seconds = static_cast<time_t>(milliseconds / 1000);
    tm local{};
    char dateAndTime[64];
    char year[8];
    if (localtime_r(&seconds, &local) == nullptr) {
        puts("Timestamp: <invalid time>");
    } else if (strftime(dateAndTime, sizeof dateAndTime, "%a %b %d %H:%M:%S", &local) == 0 ||
               strftime(year, sizeof year, "%Y", &local) == 0) {
        puts("Timestamp: <formatting error>");
    } else {
        printf("Timestamp: %s.%03d %s\n", dateAndTime, static_cast<int>(milliseconds % 1000), year);
    }
}
