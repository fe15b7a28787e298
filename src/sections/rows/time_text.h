// The time text of the section reports.
#pragma once

#include "sections/rows/row.h"

inline constexpr size_t timeTextSize = 26; // what ctime_r asks for

// Local time in the fixed layout of ctime, "Thu Jan  1 00:00:00 1970\n", written to `text` and
// returned. The time zone is read once a run, and every value of Time32 has a text.
const char *time32ToString(Time32 time, char (&text)[timeTextSize]);
