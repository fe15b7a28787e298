#include "orbelstatctl/write_fields.h"

#include "orbelstatctl/values.h"
#include "output/standard_streams.h"

#include <cerrno>

std::string description(const InputLine &line) {
    return (line.number != 0 ? "line " + std::to_string(line.number) + ": " : "") + line.text;
}

std::vector<InputLine> readLines(FILE *file, const std::string &name) {
    std::vector<InputLine> lines;
    InputLine line{1, "", true};
    for (int character = getc(file); character != EOF || !line.text.empty();
         character = getc(file)) {
        if (character != '\n' && character != EOF) {
            line.text += static_cast<char>(character);
            continue;
        }
        line.isComplete = character == '\n';
        line.text.resize(line.text.size() - (line.isComplete && line.text.ends_with('\r') ? 1 : 0));
        const size_t begin = line.text.find_first_not_of(" \t");
        if (begin != std::string::npos && line.text[begin] != '#') {
            lines.push_back(line);
        }
        line = {line.number + 1, "", true};
    }
    if (ferror(file) != 0) {
        fail(name + ": " + strerror(errno));
    }
    return lines;
}

std::string formatBytes(const Field &field, const std::string &bytes) {
    return formatValue(*field.node().row, reinterpret_cast<const uint8_t *>(bytes.data()));
}

// Writes one field after the other until a write fails. Allocates nothing: running out of memory
// here would leave writes unverified.
static void writeAll(std::vector<Assignment> &assignments) {
    for (auto &[field, bytes, before, alreadySet, isWritten, error] : assignments) {
        if (!alreadySet) {
            error = field.node().write(field.offset, bytes.data(), bytes.size());
            isWritten = error == 0;
            if (!isWritten) {
                return;
            }
        }
    }
}

// Returns what is wrong with a field after all writes; "" if it holds its bytes. `section` has the
// bytes of its section; null if they could not be read back.
static std::string writeError(const Assignment &assignment, const uint8_t *section) {
    const auto &[field, bytes, before, alreadySet, isWritten, error] = assignment;
    const std::string value =
        section != nullptr ? formatValue(*field.node().row, section + field.offset) : "";
    const std::string unread = "could not be read back";
    if (error != 0) {
        return "write failed, " + libraryError(error) + "; " +
               (section == nullptr
                    ? unread
                    : std::string("the value is ") + (value == before ? "still " : "now ") + value);
    }
    if (section != nullptr && memcmp(section + field.offset, bytes.data(), bytes.size()) == 0) {
        return "";
    }
    if (isWritten) {
        return section == nullptr
                   ? "written, but " + unread
                   : "wrote " + formatBytes(field, bytes) + ", but the value read back is " + value;
    }
    return !alreadySet          ? "not written because of the failure above"
           : section == nullptr ? unread
                                : "changed by another process, now " + value;
}

ExitStatus writeFields(std::vector<Assignment> assignments, Source &source, bool isDryRun) {
    std::string lines;
    for (auto &[field, bytes, before, alreadySet, isWritten, error] : assignments) {
        const uint8_t *section = source.sectionBytes(field.node().section);
        if (section == nullptr) {
            return ExitStatus::failure;
        }
        before = formatValue(*field.node().row, section + field.offset);
        alreadySet = memcmp(section + field.offset, bytes.data(), bytes.size()) == 0;
        lines += alreadySet
                     ? ""
                     : field.path + ": " + before + " -> " + formatBytes(field, bytes) + '\n';
    }
    print(lines);
    flushStandardOutput();
    if (isDryRun || ferror(stdout) != 0) {
        return ferror(stdout) != 0 ? ExitStatus::failure : ExitStatus::success;
    }
    writeAll(assignments);
    source.invalidate();
    auto status = ExitStatus::success;
    for (const Assignment &assignment : assignments) {
        const Field &field = assignment.field;
        const std::string error = writeError(assignment, source.sectionBytes(field.node().section));
        if (!error.empty()) {
            printError(field.path + ": " + error);
            status = ExitStatus::failure;
        }
    }
    return status;
}
