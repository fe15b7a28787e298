// The beginning of the reports that print a whole section.
#pragma once

#include "rows/print_rows.h"
#include "shm/shm.h"

// Reads the whole section and prints the header line, with the name of the section's record and the
// section's size in bytes. If the allocation or the read fails, prints a message and returns null.
SectionBuffer beginReport(Section section, const char *record);
