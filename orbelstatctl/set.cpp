#include "orbelstatctl/commands.h"
#include "orbelstatctl/values.h"
#include "output/standard_streams.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// A field and the bytes that it is to hold.
struct Assignment {
    Field field;
    std::string bytes;
    bool isWritten = false;
    bool isLeftAlone = false;
    int error = 0; // of the library, which has refused to write it

    // Of the bytes of the field's section.
    [[nodiscard]] bool isHeld(const uint8_t *section) const {
        return memcmp(section + field.offset, bytes.data(), bytes.size()) == 0;
    }
    [[nodiscard]] std::string valueIn(const uint8_t *section) const {
        return valueOf(*field.node->row, section + field.offset);
    }
};

// The lines of standard input. The last one must be whole: what a producer that died has printed of
// a value is another value.
Words readLines() {
    Words lines(1);
    for (int character = getchar(); character != EOF; character = getchar()) {
        character == '\n' ? lines.emplace_back() : lines.back() += static_cast<char>(character);
    }
    if (ferror(stdin) != 0) {
        throw Stop{failed, std::string("standard input: ") + strerror(errno)};
    }
    refuseIf(!lines.back().empty(), "standard input: the last line has no line end");
    lines.pop_back();
    refuseIf(lines.empty(), "standard input: nothing to set");
    return lines;
}

// Adds what PATH=VALUE assigns, unless it is there. Throws Stop if that is wrong; then the message
// begins with `shown`.
void addAssignments(std::vector<Assignment> &all, const std::string &text,
                    const std::string &shown) {
    const size_t end = std::min(text.find('='), text.size());
    refuseIf(end == text.size() || text.ends_with('\r') || text.find('\0') != std::string::npos,
             shown + ": not PATH=VALUE");
    const Path path = parsePath(text.substr(0, end), shown);
    const Node &node = *path.back().node;
    refuseIf(!node.isField(), shown + ": names a group; write one of its fields");
    refuseIf(!node.isWritable(), shown + ": may not be written");
    const std::vector<Field> fields = fieldsOf({path});
    const bool isBare = std::ranges::any_of(
        path, [](const Step &step) { return step.node->count != 0 && step.index == Step::none; });
    refuseIf(isBare, shown + ": names " + std::to_string(fields.size()) + " fields; write " +
                         textOf(path, "[*]"));
    std::string bytes;
    const std::string error = parseValue(*node.row, text.substr(end + 1), bytes);
    refuseIf(!error.empty(), shown + ": " + error);
    for (const Field &field : fields) {
        const auto other = std::ranges::find_if(
            all, [&](const Assignment &assignment) { return assignment.field.path == field.path; });
        refuseIf(other != all.end() && other->bytes != bytes,
                 shown + ": " + field.path + " is given two values");
        if (other == all.end()) {
            all.push_back({field, bytes});
        }
    }
}

// Writes, one field after the other, until the library refuses one.
void writeAssignments(const std::vector<Assignment *> &changes) {
    for (Assignment *change : changes) {
        const Field &field = change->field;
        change->error = field.node->write(field.offset, change->bytes.data(), change->bytes.size());
        if (change->error != 0) {
            return;
        }
        change->isWritten = true;
    }
}

// What is wrong with an assignment after all writes; "" if the bytes of its section, null if they
// cannot be read, confirm it.
std::string problemOf(const Assignment &assignment, const uint8_t *section) {
    if (assignment.error == 0 && section != nullptr && assignment.isHeld(section)) {
        return "";
    }
    const std::string found =
        section == nullptr ? "not verified" : "holds " + assignment.valueIn(section);
    if (assignment.error != 0) {
        return "cannot be written, " + libraryError(assignment.error) + "; " + found;
    }
    if (assignment.isWritten) {
        return "written, but " + found;
    }
    return assignment.isLeftAlone && section == nullptr ? "not verified" : "not written";
}

} // namespace

int setFields(const Words &words, bool isDryRun) {
    const bool areLines = words == Words{"-"};
    std::vector<Assignment> assignments;
    size_t number = 0;
    takeAll(areLines ? readLines() : words, [&](const std::string &text) {
        const std::string line = areLines ? "line " + std::to_string(++number) + ": " : "";
        addAssignments(assignments, text, line + text);
    });
    Source source;
    std::vector<Assignment *> changes;
    for (Assignment &assignment : assignments) {
        const uint8_t *section = source.bytesOf(assignment.field.node->section);
        if (section == nullptr) {
            return failed;
        }
        assignment.isLeftAlone = assignment.isHeld(section);
        if (!assignment.isLeftAlone) {
            changes.push_back(&assignment);
            const std::string before = assignment.valueIn(section);
            const auto *after = reinterpret_cast<const uint8_t *>(assignment.bytes.data());
            print(assignment.field.path + ": " + before + " -> " +
                  valueOf(*assignment.field.node->row, after) + '\n');
        }
    }
    // From here on nothing is allocated until all is written: no write goes unverified.
    flushStandardOutput();
    if (isDryRun || ferror(stdout) != 0) {
        return ferror(stdout) != 0 ? failed : succeeded;
    }
    writeAssignments(changes);
    source.refresh();
    bool areHeld = true;
    for (const Assignment &assignment : assignments) {
        const uint8_t *section = source.bytesOf(assignment.field.node->section);
        if (const std::string problem = problemOf(assignment, section); !problem.empty()) {
            complain(assignment.field.path + ": " + problem);
            areHeld = false;
        }
    }
    return areHeld ? succeeded : failed;
}
