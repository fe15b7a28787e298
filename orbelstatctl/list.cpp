#include "orbelstatctl/commands.h"
#include "orbelstatctl/values.h"

// Of each member of a kind that the paths name the first element, with a path that has them all.
static std::vector<Field> membersOf(const std::vector<Path> &paths, Kind kind) {
    std::vector<Field> members;
    for (const Path &path : paths) {
        for (const Path &member : membersBelow(path, kind)) {
            Field first = fieldsOf({member}).front();
            first.path = textOf(member);
            members.push_back(first);
        }
    }
    return members;
}

int listFields(const Words &words, bool perElement, bool onlyWritable) {
    const Kind kind = onlyWritable ? Kind::writable : Kind::any;
    const std::vector<Path> paths = parsePaths(words, kind);
    for (const auto &[path, node, indices, offset] :
         perElement ? fieldsOf(paths, kind) : membersOf(paths, kind)) {
        const std::string section = std::to_string(node->section.id);
        print(path + '\t' + typeNameOf(*node) + '\t' +
              (node->isPolicyName() ? "-\t-" : section + '\t' + std::to_string(offset)) +
              (node->isWritable() ? '\t' + boundsOf(*node->row) : "") + '\n');
    }
    return succeeded;
}
