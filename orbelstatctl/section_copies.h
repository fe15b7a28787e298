// Copies of the sections that a command looks into.
#pragma once

#include "orbelstatctl/fields.h"

// Copies of sections, each read whole when it is first wanted.
class SectionCopies {
  public:
    // The copy of a section; null if it cannot be read, which the first call says on standard
    // error.
    uint8_t *of(Section section);

  private:
    struct Copy {
        SectionBuffer bytes;
        bool isTried = false;
    };
    Copy copies[std::size(allSections)];
};
