// The tree of names: sections, records and fields as the records' tables have them.
#pragma once

#include "rows/row.h"
#include "shm/shm.h"

#include <vector>

// Which fields a command takes.
enum class Kind { any, number, writable };

// A root, a group of fields, an array of groups, a field or an array of fields.
struct Node {
    // Writes bytes at an offset of the section; returns 0 or the library's error code.
    using Write = int(size_t offset, const void *bytes, size_t length);

    std::string_view name;
    Section section{};
    Write *write = nullptr;         // null where nothing may be written
    uint32_t count = 0;             // of elements; 0 if it is no array
    std::vector<Node> members = {}; // in the order of the report; none if it is a field
    const Row *row = nullptr;       // of a field; null of a group and of the name of a policy
    size_t offset = 0;              // of a field in its section, where all indices are 0
    std::vector<size_t> strides =
        {}; // bytes from one element to the next, of each array on the way

    // Of a field in its section, with an index for each array on the way.
    [[nodiscard]] size_t offsetAt(const std::vector<uint32_t> &indices) const;
    [[nodiscard]] uint32_t lastIndex() const {
        return std::max(count, 1U) - 1;
    }
    [[nodiscard]] bool isField() const {
        return members.empty();
    }
    // The name that the platform gives to a policy: a text that lies in no section.
    [[nodiscard]] bool isPolicyName() const {
        return isField() && row == nullptr;
    }
    [[nodiscard]] bool isNumber() const {
        return row != nullptr && !isByteString(row->type);
    }
    [[nodiscard]] bool isWritable() const {
        return row != nullptr && row->bound && write != nullptr;
    }
    [[nodiscard]] bool is(Kind kind) const {
        return kind == Kind::any || (kind == Kind::number ? isNumber() : isWritable());
    }
};

// All roots, as the members of a node without a name.
const Node &tree();
