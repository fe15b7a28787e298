#include "orbelstatctl/tree.h"

#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/psu_info.h"
#include "upm/upm_block.h"

#include <algorithm>
#include <numeric>

static int writeUpm(size_t offset, const void *bytes, size_t length) {
    return writeUpmBlock(offset - upmBlockOffset, bytes, length);
}

// Records of a root.
struct Table {
    std::string_view group; // below the root; "" if the members stand right there
    size_t offset;          // of the first record within the section
    size_t stride;          // to the record of the root's next element
    std::span<const Row> rows;
};

// What the paths of a section, or of a part of one, begin with.
struct Root {
    std::string_view name;
    uint32_t count; // of elements; 0 if it is no array
    Section section;
    std::span<const Table> tables;
    Node::Write *write; // how its fields are written; null if none may be
};

// One table a line.
// clang-format off
static constexpr Table globalTables[] = {{"", 0, 0, globalSectionRows}};
static constexpr Table psuTables[] = {
    {"", offsetof(sPSUInfoSection, units), sizeof(sTolmAbsPSUInfo), psuRowsBeforeBus},
    {"", offsetof(sPSUInfoSection, units), sizeof(sTolmAbsPSUInfo), psuRowsAfterBus},
    {"psuBus", offsetof(sPSUInfoSection, buses), sizeof(sPSUBusInfo), psuBusRows},
};
static constexpr Table reportingTables[] = {{"", 0, 0, powerReportingRows}};
static constexpr Table upmTables[] = {{"", upmBlockOffset, 0, upmRows}};
static constexpr Table configTables[] = {{"", 0, 0, powerConfigRows}};
static constexpr Root roots[] = {
    {"global", 0, globalPowerSection, globalTables, nullptr},
    {"psu", psuCount, psuInfoSection, psuTables, nullptr},
    {"reporting", 0, powerReportingSection, reportingTables, nullptr},
    {"upm", 0, powerReportingSection, upmTables, writeUpm},
    {"config", 0, powerConfigSection, configTables, nullptr},
};
// clang-format on
static_assert(std::ranges::all_of(roots, [](const Root &root) {
    return std::ranges::count(allSections, root.section.id, &Section::id) == 1;
}));

// The node that a path leads to, made as needed; its last step has the count.
static Node &nodeAt(Node &start, std::string_view path, uint32_t count = 0) {
    if (path.empty()) {
        return start;
    }
    const size_t end = std::min(path.find('.'), path.size());
    const std::string_view name = path.substr(0, end);
    auto member = std::ranges::find(start.members, name, &Node::name);
    if (member == start.members.end()) {
        start.members.push_back({name, start.section, start.write});
        member = start.members.end() - 1;
    }
    if (end < path.size()) {
        return nodeAt(*member, path.substr(end + 1), count);
    }
    member->count = count;
    return *member;
}

// A row of a record, and the row that nests it, if one does.
struct Place {
    const Table *table;
    const Row *outer;
    const Row *row;
    size_t begin; // within the section, of the first of all elements
    size_t end;
};

// The rows of a root that show members, each member once, in the order of the section. Reports show
// members in an order of their own, some twice, and an element by a row of its own.
static std::vector<Place> placesOf(const Root &root) {
    std::vector<Place> places;
    const auto add = [&](const Table &table, const Row *outer, const Row &row) {
        if (!row.path.empty()) {
            const size_t begin = table.offset + (outer != nullptr ? outer->offset : 0) + row.offset;
            places.push_back(
                {&table, outer, &row, begin, begin + size_t{row.size} * row.elements()});
        }
    };
    for (const Table &table : root.tables) {
        for (const Row &row : table.rows) {
            for (const Row &inner : row.nested) {
                add(table, &row, inner);
            }
            if (row.nested.empty()) {
                add(table, nullptr, row);
            }
        }
    }
    std::ranges::stable_sort(places, [](const Place &left, const Place &right) {
        return left.begin != right.begin ? left.begin < right.begin : left.end > right.end;
    });
    const auto isInside = [](const Place &outer, const Place &inner) {
        return inner.end <= outer.end;
    };
    places.erase(std::unique(places.begin(), places.end(), isInside), places.end());
    return places;
}

static void addRoot(Node &all, const Root &root) {
    all.members.push_back({root.name, root.section, root.write, root.count});
    for (const Place &place : placesOf(root)) {
        Node *node = &nodeAt(all.members.back(), place.table->group);
        std::vector<size_t> strides(root.count != 0 ? 1 : 0, place.table->stride);
        for (const Row *row : {place.outer, place.row}) {
            if (row != nullptr) {
                node = &nodeAt(*node, row->path, row->count);
                strides.insert(strides.end(), row->isArray() ? 1 : 0, row->size);
            }
        }
        node->row = place.row;
        node->offset = place.begin;
        node->strides = strides;
    }
}

size_t Node::offsetAt(const std::vector<uint32_t> &indices) const {
    return std::inner_product(strides.begin(), strides.end(), indices.begin(), offset);
}

const Node &tree() {
    static const Node all = [] {
        Node made;
        for (const Root &root : roots) {
            addRoot(made, root);
        }
        Node &policies = nodeAt(made, "upm.policies", policyCount);
        policies.members.insert(policies.members.begin(), {"name", policies.section});
        return made;
    }();
    return all;
}
