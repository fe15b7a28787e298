// What every report of a whole section does: read, header, rows.
#pragma once

#include "sections/rows/print_rows.h"
#include "shm/shm.h"

struct SectionReport {
    Section section;
    const char *record; // the name of the section's record, for the header
    Style style;
    Rows rows;
    Views views = allViews;
};

// Reads the section and prints the header line, with the section's size, and the rows. A failed
// allocation or read prints its message only.
void printSection(const SectionReport &report);
