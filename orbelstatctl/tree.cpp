#include "orbelstatctl/tree.h"

#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/psu_info.h"
#include "upm/upm_block.h"

// The members of a root, which is a section or a part of one, or of a group directly below it.
struct Table {
    std::string_view root;
    std::string_view group; // "" if the members are the root's own
    uint32_t count;         // number of the root's elements; 0 if it is not an array
    Section section;
    size_t offset; // of the first record in the section, in bytes
    size_t stride; // bytes to the record of the root's next element
    std::span<const Row> rows;
};

static constexpr Table tables[] = {
    {"global", "", 0, globalPowerSection, 0, 0, globalSectionRows},
    {"psu", "", psuCount, psuInfoSection, offsetof(sPSUInfoSection, units), sizeof(sTolmAbsPSUInfo),
     psuRowsBeforeBus},
    {"psu", "psuBus", psuCount, psuInfoSection, offsetof(sPSUInfoSection, buses),
     sizeof(sPSUBusInfo), psuBusRows},
    {"psu", "", psuCount, psuInfoSection, offsetof(sPSUInfoSection, units), sizeof(sTolmAbsPSUInfo),
     psuRowsAfterBus},
    {"reporting", "", 0, powerReportingSection, 0, 0, powerReportingRows},
    {"upm", "", 0, powerReportingSection, upmBlockOffset, 0, upmRows},
    {"config", "", 0, powerConfigSection, 0, 0, powerConfigRows},
};
static constexpr auto isKnown = [](const Table &table) {
    return std::ranges::count(allSections, table.section.id, &Section::id) == 1;
};
static_assert(std::ranges::all_of(tables, isKnown), "add it to allSections in src/shm/shm.h");

// Returns the node at `path` below `start`. Creates the missing ones.
static Node &findOrAddNode(Node &start, std::string_view path) {
    const size_t end = std::min(path.find('.'), path.size());
    const std::string_view name = path.substr(0, end);
    auto member = std::ranges::find(start.members, name, &Node::name);
    if (member == start.members.end()) {
        start.members.push_back({name, start.section});
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
    for (const Table &table : tables) {
        Node &part = findOrAddNode(root, table.root);
        part.section = table.section;
        part.count = table.count;
        addRows(table.group.empty() ? part : findOrAddNode(part, table.group), table.rows,
                table.offset, std::vector<size_t>(part.count != 0 ? 1 : 0, table.stride));
    }
    Node &policies = findOrAddNode(root, "upm.policies");
    Node &name = *policies.members.insert(policies.members.begin(), {"name", policies.section});
    name.isPolicyName = true;
    name.strides = {1}; // its offset is the number of the policy
    return root;
}

const Node &tree() {
    static const Node root = makeTree();
    return root;
}
