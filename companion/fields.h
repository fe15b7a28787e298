// The fields of the shared memory by their paths: first the root, a section's short name, then the
// members' names as in the records, joined by points, elements in brackets.
#pragma once

#include "sections/rows/table.h"
#include "shm/shm.h"

#include <optional>
#include <span>

// One field: a scalar, an element of an array, or a text.
struct Field {
    std::string_view path; // only while it is visited
    Section section;
    int32_t offset; // of the first byte within the section
    int32_t size;   // in bytes
    Kind type;      // what the member's type stands for
};

// What a record contributes to the fields of a root.
struct RecordPlace {
    std::string_view group; // below the root; "" if the fields stand right there
    int32_t offset;         // of the record within the section
    int32_t stride;         // to the same record of the root's next element
    Rows (*fields)();
};

struct Root {
    std::string_view name;
    size_t count; // of elements; 0 if it is no array
    Section section;
    std::span<const RecordPlace> records;
};

// All roots, in the order in which fields are visited.
std::span<const Root> allRoots();

// A path under construction. The longest there is has some sixty characters.
class Path {
  public:
    // Adds a piece, after a point unless it is the first.
    void append(std::string_view piece);
    void appendIndex(size_t index);
    // Takes off what stands beyond `length`.
    void cut(size_t length) {
        used = length;
    }
    [[nodiscard]] std::string_view view() const {
        return {text, used};
    }

  private:
    char text[256];
    size_t used = 0;
};

// Whether a path is the one that is wanted or lies below it. All lie below "".
bool isIn(std::string_view wanted, std::string_view path);

// Appends each index below `count` to the path of an array, or nothing if `count` is 0, and calls
// visit(element) for those that the wanted path names, lies in or leads to.
template <typename Visit>
void forEachElement(Path &path, size_t count, std::string_view wanted, Visit visit) {
    const size_t length = path.view().size();
    const auto leadsToWanted = [&] {
        return isIn(wanted, path.view()) || isIn(path.view(), wanted);
    };
    if (!leadsToWanted()) {
        return;
    }
    for (size_t element = 0; element == 0 || element < count; ++element) {
        if (count != 0) {
            path.appendIndex(element);
        }
        if (leadsToWanted()) {
            visit(static_cast<int32_t>(element));
        }
        path.cut(length);
    }
}

// Calls visit(Field) for the values of one member, which is no struct, of a record at `offset`,
// whose path stands in `path`.
template <typename Visit>
void forEachValue(Path &path, const RowView &row, const Root &root, int32_t offset,
                  std::string_view wanted, const Visit &visit) {
    const size_t length = path.view().size();
    const RowShape &shape = row.shape;
    const bool isText = shape.kind == Kind::text;
    path.append(row.label);
    forEachElement(path, isText ? 0 : shape.count, wanted, [&](int32_t element) {
        if (isIn(wanted, path.view())) {
            visit(Field{path.view(), root.section, offset + shape.offset + element * shape.size,
                        isText ? shape.count : shape.size, shape.kind});
        }
    });
    path.cut(length);
}

// The same for all members of a record, structs and arrays of them included.
template <typename Visit>
void forEachFieldOfRecord(Path &path, const Rows &rows, const Root &root, int32_t offset,
                          std::string_view wanted, const Visit &visit) {
    forEachRow(rows, allViews, [&](const RowView &row, const Rows &nested) {
        if (nested.size() == 0) {
            forEachValue(path, row, root, offset, wanted, visit);
            return;
        }
        const size_t length = path.view().size();
        path.append(row.label);
        forEachElement(path, row.shape.count, wanted, [&](int32_t element) {
            const int32_t start = offset + row.shape.offset + element * row.shape.size;
            forEachRow(nested, allViews, [&](const RowView &inner, const Rows & /*none*/) {
                forEachValue(path, inner, root, start, wanted, visit);
            });
        });
        path.cut(length);
    });
}

// Calls visit(Field) for every field that the wanted path names or that lies below it, in the order
// of the roots and, within each, of their records. "" names all.
template <typename Visit> void forEachField(std::string_view wanted, const Visit &visit) {
    Path path;
    for (const Root &root : allRoots()) {
        path.cut(0);
        path.append(root.name);
        forEachElement(path, root.count, wanted, [&](int32_t element) {
            const size_t length = path.view().size();
            for (const RecordPlace &record : root.records) {
                if (!record.group.empty()) {
                    path.append(record.group);
                }
                forEachFieldOfRecord(path, record.fields(), root,
                                     record.offset + element * record.stride, wanted, visit);
                path.cut(length);
            }
        });
    }
}

// How many fields a path names; says so on standard error if there are none.
size_t countFields(std::string_view path);

// The greatest value of an integer field that the wizard may write: the wizard's bound, or what the
// field's bytes hold if that is less; the least is 0. Of a double, which goes from -maxDouble to
// maxDouble, it says nothing. Empty if the wizard may not write the field.
std::optional<uint32_t> writeBoundOf(const Field &field);
