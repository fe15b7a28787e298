// The fields of the shared memory by their paths: first the root, a section's short name, then the
// members' names as in the records, joined by points, elements in brackets.
#pragma once

#include "rows/row.h"
#include "shm/shm.h"

#include <string>
#include <vector>

// One field: a scalar, an element of an array, or a text.
struct Field {
    std::string path;
    Section section;
    size_t offset;  // of the first byte within the section
    const Row *row; // whose member it is, or an element of it: its type, size and bound
};

// Whether a path is the outer one or lies below it. All lie below "".
bool isIn(std::string_view outer, std::string_view inner);

// The fields that the wanted path names or that lie below it: in the order of the roots and, within
// each element of a root, in the order of the record. "" names all.
std::vector<Field> fieldsIn(std::string_view wanted);

// The same for a path that a user wrote: says on standard error if it names none.
std::vector<Field> fieldsOrComplaint(std::string_view path);

// The largest number that a whole field may be set to: its bound, or what its bytes hold if that is
// less. The field must be one that may be written.
uint32_t maxWritable(const Row &row);
