#include "orbelstatctl/commands.h"

#include <algorithm>
#include <unistd.h>

// The paths of the columns below an element: what was named, or all that are no arrays or groups.
static std::vector<Path> columnsOf(const Node &element, const Words &names) {
    std::vector<Path> columns;
    for (const std::string &name : names) {
        columns.push_back(parsePath(name, name, element));
    }
    for (const Node &member : element.members) {
        if (names.empty() && member.isField() && member.count == 0) {
            columns.push_back({allOf(member)});
        }
    }
    return columns;
}

// Prints rows of cells: tabs between them, or on a terminal aligned, numbers to the right.
static void printRows(const std::vector<Words> &rows, const std::vector<bool> &areNumbers) {
    const bool isTerminal = isatty(STDOUT_FILENO) != 0;
    std::vector<size_t> widths(areNumbers.size());
    for (const Words &row : rows) {
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = isTerminal ? std::max(widths[i], row[i].size()) : 0;
        }
    }
    for (const Words &row : rows) {
        std::string line;
        for (size_t i = 0; i < row.size(); ++i) {
            const std::string padding(std::max(widths[i], row[i].size()) - row[i].size(), ' ');
            line += i == 0 ? "" : isTerminal ? "  " : "\t";
            line += areNumbers[i] ? padding + row[i] : row[i] + padding;
        }
        print(line.substr(0, isTerminal ? line.find_last_not_of(' ') + 1 : line.size()) + '\n');
    }
}

int printTable(Source &source, const std::string &path, const Words &names) {
    const Path records = parsePath(path, path);
    const Step &all = records.back();
    refuseIf(all.node->count == 0 || all.node->isField(), path + ": names no array of records");
    const std::vector<Path> columns = columnsOf(*all.node, names);
    std::vector<Words> rows{{std::string(all.node->name)}};
    std::vector<bool> areNumbers{true};
    for (uint32_t i = all.first; i <= all.last; ++i) {
        Path element = records;
        element.back() = {all.node, Step::one, i, i};
        Words row{std::to_string(i)};
        for (const Path &column : columns) {
            Path cell = element;
            cell.insert(cell.end(), column.begin(), column.end());
            for (const Field &field : fieldsOf({cell})) {
                row.push_back(source.valueOf(field).value_or(""));
                if (i == all.first) {
                    rows[0].push_back(field.path.substr(textOf(element).size() + 1));
                    areNumbers.push_back(field.node->isNumber());
                }
            }
        }
        rows.push_back(row);
    }
    if (source.hasFailed()) {
        return failed;
    }
    printRows(rows, areNumbers);
    return succeeded;
}
