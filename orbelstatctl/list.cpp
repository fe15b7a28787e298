#include "orbelstatctl/commands.h"

// Returns u8, i16, double, time32, char[64], byte[256], ...; "text" for a policy's name.
static std::string formatType(const Node &field) {
    if (field.isPolicyName) {
        return "text";
    }
    const std::string name(typeInfo(field.row->type).name);
    return isByteString(field.row->type) ? name + '[' + std::to_string(field.row->size) + ']'
                                         : name;
}

ExitStatus runList(const Arguments &arguments) {
    const auto expansion = arguments.has("-a") ? Expansion::elements : Expansion::members;
    const auto kind = arguments.has("-w") ? Kind::writable : Kind::any;
    for (const Field &field : expandPaths(parsePaths(arguments.operands, kind), kind, expansion)) {
        const Node &node = field.node();
        const std::string location =
            std::to_string(node.section.id) + '\t' + std::to_string(field.offset);
        print(field.path + '\t' + formatType(node) + '\t' +
              (node.isPolicyName ? "-\t-" : location) +
              (node.isWritable() ? '\t' + formatBounds(*node.row) : "") + '\n');
    }
    return ExitStatus::success;
}

const char listHelp[] = R"(Usage: orbelstatctl [--from DIRECTORY] list [-aw] [PATH ...]

Print path, type, section, offset in bytes and, for a writable field, the bounds
of each member, separated by tabs. Reads no shared memory.

  -a  List each element of an array
  -w  List only writable fields

Examples:
  orbelstatctl list -w upm.powerLimits
  orbelstatctl list -a 'psu[0]'
)";
