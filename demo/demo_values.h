// Helpers that fill records with demo data.
#pragma once

#include "sections/power_consumption.h"

#include <cstdio>
#include <ctime>
#include <initializer_list>

// Sets all flags to 1.
inline void setFlags(std::initializer_list<uint8_t *> flags) {
    for (uint8_t *flag : flags) {
        *flag = 1;
    }
}

// Return a time in the past, in seconds since 1970-01-01 00:00:00 UTC.
inline uint32_t secondsAgo(int seconds) {
    return static_cast<uint32_t>(time(nullptr) - seconds);
}
inline Time32 minutesAgo(int minutes) {
    return static_cast<Time32>(secondsAgo(60 * minutes));
}

// Converts a value that is known to fit.
inline uint16_t u16(int value) {
    return static_cast<uint16_t>(value);
}

// Formats text with one number, truncated to the field, and fills the rest with NULs.
template <size_t size> void setText(char (&field)[size], const char *format, int number) {
    for (char &character : field) {
        character = '\0';
    }
    snprintf(field, size, format, number);
}

// Copies text without a NUL and pads the field with blanks.
template <size_t size> void setPadded(char (&field)[size], const char *text) {
    for (size_t i = 0; i < size; ++i) {
        field[i] = *text != '\0' ? *text++ : ' ';
    }
}

// Returns an entry with a current power in watts that was measured `minutes` ago.
inline sPwrConsEntry makeConsumption(int current, int minutes) {
    sPwrConsEntry entry{};
    entry.u16CurPwr = u16(current);
    entry.u16MinPwr = u16(current * 6 / 10);
    entry.u16MaxPwr = u16(current * 14 / 10);
    entry.u16AvgPwr = u16(current * 9 / 10);
    entry.u32IPMITimeStmp = minutesAgo(minutes);
    return entry;
}
