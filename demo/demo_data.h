// Plausible values for the sections: a system that takes 612 W under a cap of 900, and the power
// supply units of its chassis. Times are recent. What may be edited is within its bound. Each
// function is given a record of zeros and fills in what is not zero in such a system.
#pragma once

#include "sections/power_reporting.h"
#include "shm/shm.h"

#include <span>

// One section's demo data.
struct DemoSection {
    Section section;
    const void *bytes;
    size_t size;
};

// All sections, filled now.
std::span<const DemoSection> demoSections();

// The power reporting section, the UPM data block at its end included.
void fillPowerReporting(sTolmAbsPowerReporting &record);
