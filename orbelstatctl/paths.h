// Paths as people write them, upm.policies[0..3].state, and the fields that they name.
#pragma once

#include "orbelstatctl/tree.h"

#include <string>

// One step of a path: a node, and of an array which elements.
struct Step {
    enum Index {
        none,  // no brackets: all elements, or what is no array
        one,   // [3]
        range, // [0..3] or [*]
    };
    const Node *node;
    Index index;
    uint32_t first;
    uint32_t last;
};
inline Step allOf(const Node &node) {
    return {&node, Step::none, 0, node.lastIndex()};
}

// From a root downwards. An empty path names everything.
using Path = std::vector<Step>;

// Understands a path below a node. Throws Stop if it names nothing; then the message begins with
// `shown`, what was typed.
Path parsePath(const std::string &text, const std::string &shown, const Node &start = tree());

// The path with the elements of each array: [3] or [0..3]; or, where no brackets name all, `bare`.
std::string textOf(const Path &path, const std::string &bare = "");

// The paths of all members of a kind, fields or arrays of fields, that lie below the path, in the
// order of the reports.
std::vector<Path> membersBelow(const Path &path, Kind kind = Kind::any);

// One field: no array, or one element of an array of fields.
struct Field {
    std::string path;
    const Node *node;
    std::vector<uint32_t> indices; // of each array on the way
    size_t offset;                 // in its section
};

// The fields of a kind that the paths name: path after path, those of one in the order of the
// reports.
std::vector<Field> fieldsOf(const std::vector<Path> &paths, Kind kind = Kind::any);

// The paths that were typed; the one of everything if there are none. Complains of every one that
// is wrong or names no field of the kind, and throws Stop.
std::vector<Path> parsePaths(const std::vector<std::string> &words, Kind kind);
