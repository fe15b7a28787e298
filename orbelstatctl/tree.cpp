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
    {"psuBus", offsetof(sPSUInfoSection, buses), sizeof(sPSUBusInfo), psuBusRows},
    {"", offsetof(sPSUInfoSection, units), sizeof(sTolmAbsPSUInfo), psuRowsAfterBus},
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

// The node that a path leads to, made as needed.
static Node &nodeAt(Node &start, std::string_view path) {
    const size_t end = std::min(path.find('.'), path.size());
    const std::string_view name = path.substr(0, end);
    auto member = std::ranges::find(start.members, name, &Node::name);
    if (member == start.members.end()) {
        start.members.push_back({name, start.section, start.write});
        member = start.members.end() - 1;
    }
    return end < path.size() ? nodeAt(*member, path.substr(end + 1)) : *member;
}

// Adds the members that rows show, below a node. The first of their records begins at an offset of
// the section; the strides are those of the arrays on the way.
static void addRows(Node &node, std::span<const Row> rows, size_t offset,
                    const std::vector<size_t> &strides) {
    for (const Row &row : rows) {
        if (row.path.empty() || row.path.ends_with(']')) {
            continue; // no member, or one element of an array that has a row of its own
        }
        Node &member = nodeAt(node, row.path);
        if (member.row != nullptr) {
            continue; // a second row of the member
        }
        std::vector<size_t> all = strides;
        all.insert(all.end(), row.isArray() ? 1 : 0, row.size);
        member.count = row.count;
        if (row.nested.empty()) {
            member.row = &row;
            member.offset = offset + row.offset;
            member.strides = all;
        } else {
            addRows(member, row.nested, offset + row.offset, all);
        }
    }
}

static Node makeTree() {
    Node all;
    for (const Root &root : roots) {
        all.members.push_back({root.name, root.section, root.write, root.count});
        Node &node = all.members.back();
        for (const Table &table : root.tables) {
            Node &group = table.group.empty() ? node : nodeAt(node, table.group);
            addRows(group, table.rows, table.offset,
                    std::vector<size_t>(root.count != 0 ? 1 : 0, table.stride));
        }
    }
    Node &policies = nodeAt(all, "upm.policies");
    policies.members.insert(policies.members.begin(), {"name", policies.section});
    return all;
}

size_t Node::offsetAt(const std::vector<uint32_t> &indices) const {
    return std::inner_product(strides.begin(), strides.end(), indices.begin(), offset);
}

const Node &tree() {
    static const Node all = makeTree();
    return all;
}
