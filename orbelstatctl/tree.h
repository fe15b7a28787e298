// The tree of names: sections, records and fields, built from the records' tables.
#pragma once

#include "rows/row.h"
#include "shm/shm.h"

#include <vector>

// The fields that a command accepts; metrics are numbers and text.
enum class Kind { any, writable, metric };

// A root, a group of fields, an array of groups, a field or an array of fields.
struct Node {
    std::string_view name;
    Section section{};
    uint32_t count = 0;               // number of elements; 0 if it is not an array
    std::vector<Node> members = {};   // in report order; empty for a field
    const Row *row = nullptr;         // the field's row; null for a group and for a policy's name
    size_t offset = 0;                // of a field in its section, in bytes, if all indices are 0
    std::vector<size_t> strides = {}; // for each array in a field's path, bytes between elements
    bool isPolicyName = false;        // text that comes from the platform's library

    [[nodiscard]] uint32_t lastIndex() const {
        return std::max(count, 1U) - 1;
    }
    [[nodiscard]] bool isField() const {
        return members.empty();
    }
    [[nodiscard]] bool isText() const {
        return isPolicyName || (row != nullptr && row->type == Type::text);
    }
    [[nodiscard]] bool isBytes() const {
        return row != nullptr && row->type == Type::bytes;
    }
    [[nodiscard]] bool isNumber() const {
        return row != nullptr && !isByteString(row->type);
    }
    [[nodiscard]] bool isWritable() const {
        return row != nullptr && row->bound;
    }
    [[nodiscard]] bool is(Kind kind) const {
        return kind == Kind::any || (kind == Kind::metric ? !isBytes() : isWritable());
    }
};

// Returns a node without a name, whose members are the roots: global, psu, reporting, upm, config.
const Node &tree();
