// What commands have in common: messages, and copies of the sections.
#pragma once

#include "companion/fields.h"

// Prints one line on standard error, headed by the program's name.
__attribute__((format(printf, 1, 2))) void complain(const char *format, ...);

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

// How many fields a path names; says so on standard error if there are none.
size_t countFields(std::string_view path);
