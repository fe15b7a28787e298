#include "sections/rows/time_text.h"

#include <ctime>

const char *time32ToString(Time32 time, char (&text)[timeTextSize]) {
    const auto seconds = static_cast<time_t>(static_cast<uint32_t>(time));
    // Unlike ctime, ctime_r does not look at the time zone's file again on every call.
    return ctime_r(&seconds, text);
}
