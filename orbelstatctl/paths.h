// Paths such as upm.policies[0..3].state, and the fields that they select.
#pragma once

#include "orbelstatctl/messages.h"
#include "orbelstatctl/tree.h"

// One step of a path: a node and, if it is an array, the selected elements.
struct Step {
    enum Index {
        none,  // no brackets: all elements, or not an array
        one,   // [3]
        range, // [0..3] or [*]
    };
    const Node *node;
    Index index = none;
    uint32_t first = 0;
    uint32_t last = node->lastIndex();

    // Whether it selects several elements without naming them.
    [[nodiscard]] bool isBareArray() const {
        return node->count != 0 && index == none;
    }
};

// The steps from a root downwards. An empty path selects everything.
using Path = std::vector<Step>;

// Parses a path below `start`. The error does not contain the path itself.
Result<Path> parsePath(std::string_view text, const Node &start = tree());

// Parses paths; without any, returns the path that selects everything. Throws a usage error with a
// message for each one that is invalid or selects no field of the kind.
std::vector<Path> parsePaths(const Strings &texts, Kind kind);

// Formats a path with [3] or [0..3] after each array, or `bare` where the path has no brackets.
std::string formatPath(std::span<const Step> path, const std::string &bare = "");

// A field or, with ranges in its steps, the elements of one member.
struct Field {
    Path steps;
    std::string path; // formatted
    size_t offset;    // of the first element in its section, in bytes; a policy's name: its number

    [[nodiscard]] const Node &node() const {
        return *steps.back().node;
    }
};

// One Field per member, with the ranges of its arrays, or one Field per element.
enum class Expansion { members, elements };

// Returns the fields of a kind that the paths select: path by path, those of each in report order.
std::vector<Field> expandPaths(const std::vector<Path> &paths, Kind kind = Kind::any,
                               Expansion expansion = Expansion::elements);
