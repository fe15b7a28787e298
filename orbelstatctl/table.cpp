#include "orbelstatctl/commands.h"

struct Column {
    std::string header;
    std::vector<Field> fields; // one per row; none for the column of indices
    Strings cells = {};        // the header, then one per row

    // Whether the cells are aligned to the right.
    [[nodiscard]] bool isNumber() const {
        return fields.empty() || fields[0].node().isNumber();
    }
};

// Returns the paths of the columns below a node: those with these names or, without names, all
// plain values of a record except bytes, or all arrays of plain values in a group.
static std::vector<Path> parseNames(const Strings &names, const Node &node) {
    const bool isRecord = node.count != 0;
    std::vector<Path> paths;
    for (const Node &member : node.members) {
        if (member.isField() && !member.isBytes() && (member.count == 0) == isRecord) {
            paths.push_back({{&member}});
        }
    }
    return names.empty() ? paths : parseAll(names, [&](const std::string &name) {
        Result<Path> path = parsePath(name, node);
        if (path.error.empty() && !isRecord &&
            !(path.value.back().node->isField() && path.value.back().isBareArray())) {
            path.error = "not an array of single values";
        }
        return path;
    });
}

// Adds the columns for a path below `group`: one or, for an array in each record, one per element.
static void addColumns(const Path &group, const Path &below, std::vector<Column> &columns) {
    Path path = group;
    path.insert(path.end(), below.begin(), below.end());
    std::vector<Column> added;
    for (const Field &field : expandPaths({path})) {
        std::string header = formatPath(std::span(field.steps).subspan(group.size()));
        if (group.back().node->count == 0) {
            header.resize(header.rfind('[')); // the index is that of the row
        }
        auto column = std::ranges::find(added, header, &Column::header);
        if (column == added.end()) {
            column = added.insert(column, {header, {}});
        }
        column->fields.push_back(field);
    }
    columns.insert(columns.end(), added.begin(), added.end());
}

// Returns the columns of the table of `group`. `text` is its path as the user typed it.
static std::vector<Column> findColumns(const Path &group, const std::string &text,
                                       const Strings &names) {
    const Node &node = *group.back().node;
    rejectIf(node.isField(), text + ": neither an array of records nor a group");
    rejectIf(std::any_of(group.begin(), group.end() - 1,
                         [](const Step &step) { return step.first != step.last; }),
             text + ": selects several groups; name one of them");
    std::vector<Column> columns;
    for (const Path &path : parseNames(names, node)) {
        addColumns(group, path, columns);
    }
    rejectIf(columns.empty(), text + ": contains no array of single values");
    for (const Column &column : columns) {
        rejectIf(column.fields.size() != columns[0].fields.size(),
                 text + ": " + columns[0].header + " and " + column.header +
                     " have different numbers of elements; name the FIELDs to print");
    }
    return columns;
}

// Prints a table of columns, or the columns as rows.
static void printTable(const std::vector<Column> &columns, bool isTransposed, bool isCsv) {
    const size_t width = isTransposed ? columns[0].cells.size() : columns.size();
    const size_t height = isTransposed ? columns.size() : columns[0].cells.size();
    const auto at = [&](size_t row, size_t column) -> const std::string & {
        return isTransposed ? columns[row].cells[column] : columns[column].cells[row];
    };
    std::vector<size_t> widths(width);
    for (size_t i = 0; i < width * height; ++i) {
        widths[i % width] = std::max(widths[i % width], at(i / width, i % width).size());
    }
    for (size_t row = 0; row < height; ++row) {
        Strings cells;
        std::string line;
        for (size_t column = 0; column < width; ++column) {
            cells.push_back(at(row, column));
            const std::string padding(widths[column] - cells.back().size(), ' ');
            const bool isRight =
                isTransposed ? column > 0 && columns[row].isNumber() : columns[column].isNumber();
            line += (column == 0 ? "" : "  ") +
                    (isRight ? padding + cells.back() : cells.back() + padding);
        }
        print(isCsv ? formatCsvRow(cells) : line.substr(0, line.find_last_not_of(' ') + 1) + '\n');
    }
}

ExitStatus runTable(const Options &arguments) {
    const Strings &operands = arguments.operands;
    const Path group = parsePaths({operands[0]}, Kind::any)[0];
    auto columns = findColumns(group, operands[0], {operands.begin() + 1, operands.end()});
    Source source(arguments.last("--from"));
    for (auto &[header, fields, cells] : columns) {
        cells = {header};
        for (const Field &field : fields) {
            cells.push_back(source.readValue(field).value_or(""));
        }
    }
    if (source.hasFailed()) {
        return ExitStatus::failure;
    }
    const Node &node = *group.back().node;
    Column indices{"", {}, {node.count != 0 ? std::string(node.name) : "index"}};
    for (size_t i = 0; i < columns[0].fields.size(); ++i) {
        indices.cells.push_back(std::to_string(group.back().first + i));
    }
    columns.insert(columns.begin(), indices);
    printTable(columns, arguments.has("-t"), arguments.has("--csv"));
    return ExitStatus::success;
}

const char tableHelp[] =
    R"(Usage: orbelstatctl [--from DIRECTORY] table [-t] [--csv] PATH [FIELD ...]

Print one row per record of an array or, for a group, one row per index of its
arrays. Each FIELD is a path relative to PATH and becomes a column (default: all
single values of a record except byte[n], or all arrays of a group).

  -t     Transpose: one row per field
  --csv  Print comma-separated values, for programs

Examples:
  orbelstatctl table upm.policies name state policyPowerLimit
  watch -n1 -d orbelstatctl table -t psu Vin Pin Pout
)";
