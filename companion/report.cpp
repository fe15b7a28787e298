#include "companion/report.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

void complain(const char *format, ...) {
    va_list arguments;
    va_start(arguments, format);
    fputs("orbelstatctl: ", stderr);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
}

uint8_t *SectionCopies::of(Section section) {
    const auto *place = std::find_if(std::begin(allSections), std::end(allSections),
                                     [&](Section other) { return other.id == section.id; });
    Copy &copy = copies[place - allSections];
    if (!copy.isTried) {
        copy.isTried = true;
        copy.bytes = allocateBuffer(section.size);
        if (!copy.bytes) {
            complain("section %d: no memory for a copy", section.id);
        } else if (const int error = readSection(section, copy.bytes.get(), 0, section.size)) {
            complain("section %d: cannot be read, error %d of the library", section.id, error);
            copy.bytes.reset();
        }
    }
    return copy.bytes.get();
}

size_t countFields(std::string_view path) {
    size_t count = 0;
    if (!path.empty()) {
        forEachField(path, [&](const Field & /*field*/) { ++count; });
    }
    if (count == 0) {
        complain("%.*s: no such field", static_cast<int>(path.size()), path.data());
    }
    return count;
}
