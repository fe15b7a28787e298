#include "orbelstatctl/commands.h"

struct Cell {
    std::string text;
    bool isNumber; // aligned to the right
};
using Cells = std::vector<Cell>;

struct Column {
    std::string header;
    std::vector<Field> fields; // one per row
};

// Returns the paths of the columns below a node: those with these names or, without names, all
// plain values of a record except bytes, or all arrays of plain values in a group.
static std::vector<Path> parseNames(const Strings &names, const Node &node) {
    const bool isRecord = node.isRecordArray();
    std::vector<Path> paths;
    for (const Node &member : node.members) {
        if (member.isField() && !member.isBytes() && (member.count == 0) == isRecord) {
            paths.push_back({allOf(member)});
        }
    }
    return names.empty() ? paths : parseAll(names, [&](const std::string &name) {
        Result<Path> path = parsePath(name, node);
        if (path.error.empty() && !isRecord &&
            !(path.value.back().node->isField() && path.value.back().isBareArray())) {
            path.error = "not an array of plain values";
        }
        return path;
    });
}

// Adds the columns for a path below `group`: one or, for an array in each record, one per element.
static void addColumns(const Path &group, const Path &below, std::vector<Column> &columns) {
    Path path = group;
    path.insert(path.end(), below.begin(), below.end());
    const bool isRecord = group.back().node->isRecordArray();
    const std::vector<Field> fields = expandPaths({path});
    const size_t rows = group.back().last - group.back().first + 1;
    const size_t width = isRecord ? fields.size() / rows : 1;
    for (size_t column = 0; column < width; ++column) {
        const auto steps = fields[column].steps.begin() + static_cast<ptrdiff_t>(group.size());
        const std::string header = formatPath({steps, fields[column].steps.end()});
        columns.push_back({isRecord ? header : header.substr(0, header.rfind('[')), {}});
        for (size_t i = column; i < fields.size(); i += width) {
            columns.back().fields.push_back(fields[i]);
        }
    }
}

// Returns the columns of the table of `group`, which has this text.
static std::vector<Column> findColumns(const Path &group, const std::string &text,
                                       const Strings &names) {
    const Node &node = *group.back().node;
    rejectIf(node.isField(), text + ": not an array of records or a group");
    rejectIf(std::any_of(group.begin(), group.end() - 1,
                         [](const Step &step) { return step.first != step.last; }),
             text + ": selects several groups; name one of them");
    std::vector<Column> columns;
    for (const Path &path : parseNames(names, node)) {
        addColumns(group, path, columns);
    }
    rejectIf(columns.empty(), text + ": contains no array of plain values");
    for (const auto &[header, fields] : columns) {
        rejectIf(fields.size() != columns[0].fields.size(),
                 text + ": " + columns[0].header + " and " + header +
                     " have different numbers of elements; name the FIELDs to print");
    }
    return columns;
}

// Prints a table of columns, or the columns as rows.
static void printTable(const std::vector<Cells> &columns, bool isTransposed, bool isCsv) {
    const size_t width = isTransposed ? columns[0].size() : columns.size();
    const size_t height = isTransposed ? columns.size() : columns[0].size();
    const auto at = [&](size_t row, size_t column) -> const Cell & {
        return isTransposed ? columns[row][column] : columns[column][row];
    };
    std::vector<size_t> widths(width);
    for (size_t i = 0; i < width * height; ++i) {
        widths[i % width] = std::max(widths[i % width], at(i / width, i % width).text.size());
    }
    for (size_t row = 0; row < height; ++row) {
        Strings cells;
        std::string line;
        for (size_t column = 0; column < width; ++column) {
            const auto &[text, isNumber] = at(row, column);
            const std::string padding(widths[column] - text.size(), ' ');
            line += (column == 0 ? "" : "  ") + (isNumber ? padding + text : text + padding);
            cells.push_back(text);
        }
        print(isCsv ? formatCsvRow(cells) : line.substr(0, line.find_last_not_of(' ') + 1) + '\n');
    }
}

static ExitStatus runTable(const Arguments &arguments) {
    const Strings &operands = arguments.operands;
    const Path group = parsePaths({operands[0]}, Kind::any)[0];
    const auto columns = findColumns(group, operands[0], {operands.begin() + 1, operands.end()});
    const bool isTransposed = arguments.has("-t");
    const Step &rows = group.back();
    std::vector<Cells> table = {
        {{rows.node->isRecordArray() ? std::string(rows.node->name) : "index", !isTransposed}}};
    for (size_t i = 0; i < columns[0].fields.size(); ++i) {
        table[0].push_back({std::to_string(rows.first + i), true});
    }
    Source source(arguments.last("--from"));
    for (const auto &[header, fields] : columns) {
        const bool isNumber = fields[0].node().isNumber();
        table.push_back({{header, isNumber && !isTransposed}});
        for (const Field &field : fields) {
            table.back().push_back({source.readValue(field).value_or(""), isNumber});
        }
    }
    if (source.hasFailed()) {
        return ExitStatus::failure;
    }
    printTable(table, isTransposed, arguments.has("--csv"));
    return ExitStatus::success;
}

static constexpr char help[] =
    R"(Usage: orbelstatctl [--from DIRECTORY] table [-t] [--csv] PATH [FIELD ...]

Print one row per record of an array or, for a group, one row per index of its
arrays. FIELD is a column, a path below PATH (default: all single values of a
record except byte[n], or all arrays of a group).

  -t     Transpose: one row per field
  --csv  Print comma-separated values, for programs

Examples:
  orbelstatctl table upm.policies name state policyPowerLimit
  watch -n1 -d orbelstatctl table -t psu Vin Pin Pout
)";

const Command tableCommand = {
    "table",  "Print an array of records, or the arrays of a group, as a table",
    runTable, "t --csv",
    help,     "PATH"};
