// Demo data for the sections: a system that consumes 612 W under a cap of 900 W, and the power
// supply units of its chassis. All times are recent, and writable fields are within their bounds.
#pragma once

#include "sections/power_reporting.h"
#include "shm/shm.h"

#include <span>

// A section and its demo data.
struct DemoSection {
    Section section;
    const void *bytes;
    size_t size;
};

// Returns all sections, with times relative to the moment of the call.
std::span<const DemoSection> demoSections();

// Fills a record of zeros, including the UPM data block at its end.
void fillPowerReporting(sTolmAbsPowerReporting &record);
