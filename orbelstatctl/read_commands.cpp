// list, get and metrics: a line a field.
#include "orbelstatctl/commands.h"
#include "orbelstatctl/values.h"

#include <algorithm>

// Whether what one path of a member names is among what another does.
static bool isWithin(const Path &small, const Path &large) {
    return std::ranges::equal(small, large, [](const Step &step, const Step &other) {
        return step.node == other.node && other.first <= step.first && step.last <= other.last;
    });
}

// The first element of each member that the paths name, with the path of all that are named. Where
// several paths name parts of one member, all these elements.
static std::vector<Field> membersOf(const std::vector<Path> &paths) {
    std::vector<Path> named;
    for (const Path &path : paths) {
        std::ranges::move(membersBelow(path), std::back_inserter(named));
    }
    std::vector<Field> lines;
    for (const Path &member : membersBelow({})) {
        std::vector<Path> parts;
        std::ranges::copy_if(named, std::back_inserter(parts), [&](const Path &part) {
            return isWithin(part, member) && std::ranges::none_of(named, [&](const Path &other) {
                       return isWithin(part, other) && (!isWithin(other, part) || &other < &part);
                   });
        });
        std::vector<Field> elements = fieldsOf(parts);
        if (parts.size() == 1) {
            elements.resize(1);
            elements[0].path = textOf(parts[0]);
        }
        std::ranges::move(elements, std::back_inserter(lines));
    }
    return lines;
}

int listFields(const Words &words, bool perElement, bool onlyWritable) {
    const std::vector<Path> paths =
        parsePaths(words, onlyWritable ? &Node::isWritable : &Node::isField, mayNotBeWritten);
    for (const auto &[path, node, indices, offset] :
         perElement ? fieldsOf(paths) : membersOf(paths)) {
        if (!onlyWritable || node->isWritable()) {
            const std::string section = std::to_string(node->section.id);
            print(path + '\t' + typeNameOf(*node) + '\t' +
                  (node->isPolicyName() ? "-\t-" : section + '\t' + std::to_string(offset)) +
                  (node->isWritable() ? '\t' + boundsOf(*node->row) : "") + '\n');
        }
    }
    return succeeded;
}

// Why setFields would not bring back what a field holds; "" if it would.
static std::string lossOf(const Row &row, const std::string &value, const uint8_t *at) {
    try {
        return bytesOf(row, value, "") == std::string(at, at + row.size)
                   ? ""
                   : ": not with the same bytes";
    } catch (const Stop &stop) {
        return stop.message;
    }
}

int getFields(Source &source, const Words &words, bool onlyValues, bool onlyWritable) {
    bool isLost = false;
    for (const Field &field : fieldsOf(parsePaths(
             words, onlyWritable ? &Node::isWritable : &Node::isField, mayNotBeWritten))) {
        const bool isWanted = !onlyWritable || field.node->isWritable();
        const auto value = isWanted ? source.valueOf(field) : std::nullopt;
        if (!value) {
            continue;
        }
        if (onlyWritable) {
            const uint8_t *at = source.bytesOf(field.node->section) + field.offset;
            if (const std::string loss = lossOf(*field.node->row, *value, at); !loss.empty()) {
                complain(field.path + '=' + *value + ": cannot be set back, " + loss.substr(2));
                isLost = true;
                continue;
            }
        }
        print((onlyValues ? "" : field.path + '=') + *value + '\n');
    }
    return source.hasFailed() || isLost ? failed : succeeded;
}

// "{policies="3"}": each index of a field, named after its array.
static std::string labelsOf(const Path &member, const Field &field) {
    std::string labels;
    auto index = field.indices.begin();
    for (const Step &step : member) {
        if (step.node->count != 0) {
            labels += (labels.empty() ? "{" : ",") + std::string(step.node->name) + "=\"" +
                      std::to_string(*index++) + '"';
        }
    }
    return labels.empty() ? "" : labels + '}';
}

int printMetrics(Source &source, const Words &words) {
    static const std::map<std::string, std::string> spellings = {
        {"inf", "+Inf"}, {"-inf", "-Inf"}, {"nan", "NaN"}, {"-nan", "NaN"}};
    std::multimap<const Node *, Field> fields;
    for (const Field &field : fieldsOf(parsePaths(words, &Node::isNumber, "names no number"))) {
        if (field.node->isNumber() && source.valueOf(field)) {
            fields.emplace(field.node, field);
        }
    }
    for (const Path &member : membersBelow({})) {
        std::string name = "orbelstat";
        for (const Step &step : member) {
            name.append("_").append(step.node->name);
        }
        const auto [begin, end] = fields.equal_range(member.back().node);
        if (begin != end) {
            print("# HELP " + name + ' ' + textOf(member) + '\n');
            print("# TYPE " + name + " gauge\n");
        }
        for (auto entry = begin; entry != end; ++entry) {
            const std::string value = *source.valueOf(entry->second);
            const auto spelling = spellings.find(value);
            print(name + labelsOf(member, entry->second) + ' ' +
                  (spelling == spellings.end() ? value : spelling->second) + '\n');
        }
    }
    return source.hasFailed() ? failed : succeeded;
}
