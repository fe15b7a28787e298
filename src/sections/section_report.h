// What every report of a whole section begins with.
#pragma once

#include "rows/print_rows.h"
#include "shm/shm.h"

// Reads the section whole and prints the header line, with the name of the section's record and the
// section's size in bytes. On a failed allocation or read prints its message and returns null.
SectionBuffer beginReport(Section section, const char *record);
