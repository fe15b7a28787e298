#include "orbelstatctl/section_copies.h"

#include <algorithm>
#include <cstdio>

uint8_t *SectionCopies::of(Section section) {
    const auto *place = std::find_if(std::begin(allSections), std::end(allSections),
                                     [&](Section other) { return other.id == section.id; });
    Copy &copy = copies[place - allSections];
    if (!copy.isTried) {
        copy.isTried = true;
        copy.bytes = allocateBuffer(section.size);
        if (!copy.bytes) {
            fprintf(stderr, "orbelstatctl: section %d: no memory for a copy\n", section.id);
        } else if (const int error = readSection(section, copy.bytes.get(), 0, section.size)) {
            fprintf(stderr, "orbelstatctl: section %d: cannot be read, error %d of the library\n",
                    section.id, error);
            copy.bytes.reset();
        }
    }
    return copy.bytes.get();
}
