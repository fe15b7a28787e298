#include "orbelstatctl/tree.h"

#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/psu_info.h"
#include "upm/upm_block.h"

static int writeUpm(size_t offset, const void *bytes, size_t length) {
    return writeUpmBlock(offset - upmBlockOffset, bytes, length);
}

// An array of records, or one, below a root.
struct Table {
    std::string_view group; // the path below the root; "" if the members are the root's own
    size_t offset;          // of the first record in the section, in bytes
    size_t stride;          // bytes to the record of the root's next element
    std::span<const Row> rows;
};

// The first component of paths: a section or a part of one.
struct Root {
    std::string_view name;
    uint32_t count; // number of elements; 0 if it is not an array
    Section section;
    std::span<const Table> tables;
    Node::Write *write; // writes the root's fields; null if none may be written
};

// One table per line.
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

// Returns the node at `path` below `start`. Creates the missing ones.
static Node &findOrAddNode(Node &start, std::string_view path) {
    const size_t end = std::min(path.find('.'), path.size());
    const std::string_view name = path.substr(0, end);
    auto member = std::ranges::find(start.members, name, &Node::name);
    if (member == start.members.end()) {
        start.members.push_back({name, start.section, start.write});
        member = start.members.end() - 1;
    }
    return end < path.size() ? findOrAddNode(*member, path.substr(end + 1)) : *member;
}

// Adds the members that rows show below a node. `offset` is that of the first record in the
// section; `strides` are those of the arrays that enclose the record.
static void addRows(Node &node, std::span<const Row> rows, size_t offset,
                    const std::vector<size_t> &strides) {
    for (const Row &row : rows) {
        if (row.path.empty() || row.path.ends_with(']')) {
            continue; // not a member, or a single element of an array that has its own row
        }
        Node &member = findOrAddNode(node, row.path);
        if (member.row != nullptr) {
            continue; // a second row of the same member
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
    Node root;
    for (const Root &part : roots) {
        root.members.push_back({part.name, part.section, part.write, part.count});
        Node &node = root.members.back();
        for (const Table &table : part.tables) {
            Node &group = table.group.empty() ? node : findOrAddNode(node, table.group);
            addRows(group, table.rows, table.offset,
                    std::vector<size_t>(part.count != 0 ? 1 : 0, table.stride));
        }
    }
    Node &policies = findOrAddNode(root, "upm.policies");
    Node &name = *policies.members.insert(policies.members.begin(), {"name", policies.section});
    name.isPolicyName = true;
    return root;
}

const Node &tree() {
    static const Node root = makeTree();
    return root;
}
