#include "orbelstatctl/commands.h"

// Returns u8, i16, double, time32, char[64], byte[256], ...; "text" for a policy's name.
static std::string formatType(const Node &node) {
    if (node.isPolicyName) {
        return "text";
    }
    const std::string name(typeInfo(node.row->type).name);
    return isByteString(node.row->type) ? name + '[' + std::to_string(node.row->size) + ']' : name;
}

ExitStatus runList(const Options &arguments) {
    const auto expansion = arguments.has("-a") ? Expansion::elements : Expansion::members;
    const auto kind = arguments.has("-w") ? Kind::writable : Kind::any;
    for (const Field &field : expandPaths(parsePaths(arguments.operands, kind), kind, expansion)) {
        const Node &node = field.node();
        const std::string place =
            std::to_string(node.section.id) + '\t' + std::to_string(field.offset);
        print(field.path + '\t' + formatType(node) + '\t' + (node.isPolicyName ? "-\t-" : place) +
              (node.isWritable() ? '\t' + formatBounds(*node.row) : "") + '\n');
    }
    return ExitStatus::success;
}

const char listHelp[] = R"(Usage: orbelstatctl [--from DIRECTORY] list [-aw] [PATH ...]

Print one line per member, with columns separated by tabs: path, type, section,
offset in bytes and, if it is writable, its bounds. Does not read shared memory.

  -a  List each element of an array
  -w  List only writable members

Examples:
  orbelstatctl list -w upm.powerLimits
  orbelstatctl list -a 'psu[0]'
)";
