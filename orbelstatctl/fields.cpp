#include "orbelstatctl/fields.h"

#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"
#include "upm/upm_block.h"

#include <algorithm>
#include <cstdio>

// A table of a root's members.
struct Table {
    std::string_view group; // below the root; "" if the members stand right there
    size_t offset;          // of the record within the section
    size_t stride;          // to the record of the root's next element
    std::span<const Row> rows;
};

struct Root {
    std::string_view name;
    int count; // of elements; 0 if it is no array
    Section section;
    std::span<const Table> tables;
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
    {"global", 0, globalPowerSection, globalTables},
    {"psu", psuCount, psuInfoSection, psuTables},
    {"reporting", 0, powerReportingSection, reportingTables},
    {"upm", 0, powerReportingSection, upmTables},
    {"config", 0, powerConfigSection, configTables},
};
// clang-format on

bool isIn(std::string_view outer, std::string_view inner) {
    const size_t size = outer.size();
    return inner.starts_with(outer) &&
           (size == 0 || size == inner.size() || inner[size] == '.' || inner[size] == '[');
}

// Whether something that is wanted may lie at a path or below it.
static bool leadsTo(std::string_view wanted, std::string_view path) {
    return isIn(wanted, path) || isIn(path, wanted);
}

static std::string joined(const std::string &path, std::string_view name, int index = noIndex) {
    std::string text = path;
    if (!name.empty()) {
        text += '.';
        text += name;
    }
    return index == noIndex ? text : text + '[' + std::to_string(index) + ']';
}

// The fields of one element of a root that are wanted, as they are found.
struct Search {
    std::string_view wanted;
    Section section;
    std::vector<Field> fields;

    // Of a member that is no struct, of a record at `offset` whose path is given.
    void addMember(const Row &row, const std::string &path, size_t offset) {
        if (row.path.empty() || !leadsTo(wanted, joined(path, row.path))) {
            return;
        }
        for (uint32_t i = 0; i < row.elements(); ++i) {
            const std::string below = joined(path, row.path, row.indexOf(i));
            if (isIn(wanted, below)) {
                fields.push_back(
                    {below, section, offset + row.offset + size_t{i} * row.size, &row});
            }
        }
    }
    // Of a struct or an array of them, likewise.
    void addStructs(const Row &row, const std::string &path, size_t offset) {
        for (uint32_t i = 0; i < row.elements(); ++i) {
            const std::string below = joined(path, row.path, row.indexOf(i));
            if (leadsTo(wanted, below)) {
                for (const Row &inner : row.nested) {
                    addMember(inner, below, offset + row.offset + size_t{i} * row.size);
                }
            }
        }
    }
};

// The fields of one element of a root. Reports show members in their own order, and some of them
// twice: here each is once and in its place.
static std::vector<Field> fieldsOfElement(std::string_view wanted, const Root &root, size_t element,
                                          const std::string &path) {
    Search search{wanted, root.section, {}};
    for (const Table &table : root.tables) {
        const std::string group = joined(path, table.group);
        const size_t offset = table.offset + element * table.stride;
        for (const Row &row : table.rows) {
            row.nested.empty() ? search.addMember(row, group, offset)
                               : search.addStructs(row, group, offset);
        }
    }
    std::vector<Field> &fields = search.fields;
    std::stable_sort(fields.begin(), fields.end(), [](const Field &left, const Field &right) {
        return left.offset < right.offset;
    });
    const auto end =
        std::unique(fields.begin(), fields.end(), [](const Field &left, const Field &right) {
            return left.offset == right.offset;
        });
    fields.erase(end, fields.end());
    return fields;
}

std::vector<Field> fieldsIn(std::string_view wanted) {
    std::vector<Field> all;
    for (const Root &root : roots) {
        for (int i = 0; i < std::max(root.count, 1); ++i) {
            std::string path(root.name);
            if (root.count != 0) {
                path += '[' + std::to_string(i) + ']';
            }
            if (leadsTo(wanted, path)) {
                const std::vector<Field> fields =
                    fieldsOfElement(wanted, root, static_cast<size_t>(i), path);
                all.insert(all.end(), fields.begin(), fields.end());
            }
        }
    }
    return all;
}

std::vector<Field> fieldsOrComplaint(std::string_view path) {
    std::vector<Field> fields = path.empty() ? std::vector<Field>() : fieldsIn(path);
    if (fields.empty()) {
        fprintf(stderr, "orbelstatctl: %.*s: no such field\n", static_cast<int>(path.size()),
                path.data());
    }
    return fields;
}

uint32_t maxWritable(const Row &row) {
    return std::min(*row.bound, maxOf(row.type));
}
