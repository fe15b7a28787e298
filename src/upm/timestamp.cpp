#include "upm/timestamp.h"

#include <cstdio>
#include <ctime>

void printUpmTimestamp(uint64_t milliseconds) {
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
