#include "orbelstatctl/write_fields.h"

#include "orbelstatctl/values.h"
#include "output/standard_streams.h"
#include "upm/upm_block.h"

#include <cerrno>

// Reads the next line. Returns false at the end of the file.
static bool readLine(FILE *file, InputLine &line) {
    line = {line.number + 1, "", false};
    int character = getc(file);
    for (; character != EOF && character != '\n'; character = getc(file)) {
        line.text += static_cast<char>(character);
    }
    line.isComplete = character == '\n';
    if (line.isComplete && line.text.ends_with('\r')) {
        line.text.pop_back();
    }
    return line.isComplete || !line.text.empty();
}

std::vector<InputLine> readLines(const std::string &path) {
    const bool isInput = path == "-";
    const std::unique_ptr<FILE, int (*)(FILE *)> opened(
        isInput ? nullptr : fopen(path.c_str(), "re"), fclose);
    FILE *file = isInput ? stdin : opened.get();
    std::vector<InputLine> lines;
    for (InputLine line{}; file != nullptr && readLine(file, line);) {
        const size_t begin = line.text.find_first_not_of(" \t");
        if (begin != std::string::npos && line.text[begin] != '#') {
            lines.push_back(line);
        }
    }
    if (file == nullptr || ferror(file) != 0) {
        fail((isInput ? "standard input" : path) + ": " + strerror(errno));
    }
    return lines;
}

// Writes one field after the other until a write fails. Allocates nothing: running out of memory
// here would leave writes unverified.
static void writeAll(std::vector<Assignment> &assignments) {
    for (auto &[field, bytes, before, isAttempted, error] : assignments) {
        isAttempted = bytes != before;
        error = isAttempted
                    ? writeUpmBlock(field.offset - upmBlockOffset, bytes.data(), bytes.size())
                    : 0;
        if (error != 0) {
            return;
        }
    }
}

// Returns why a field, of which `found` was read back, is wrong; "" if it holds its bytes.
static std::string writeError(const Assignment &assignment, std::optional<std::string_view> found) {
    const auto &[field, bytes, before, isAttempted, error] = assignment;
    const Row &row = *field.node().row;
    const std::string value = found ? formatValue(row, *found) : "";
    const std::string unread = "could not be read back";
    if (error != 0) {
        return "write failed, " + libraryError(error) + "; " +
               (found ? std::string("the value is ") + (found == before ? "still " : "now ") + value
                      : unread);
    }
    if (found == bytes) {
        return "";
    }
    if (isAttempted) {
        return found ? "wrote " + formatValue(row, bytes) + ", but the value read back is " + value
                     : "written, but " + unread;
    }
    if (bytes != before) {
        return "not written because of the failure above";
    }
    return found ? "changed by another process, now " + value : unread;
}

ExitStatus writeFields(std::vector<Assignment> assignments, Source &source, bool isDryRun) {
    std::string lines;
    for (auto &[field, bytes, before, isAttempted, error] : assignments) {
        const auto memory = source.readBytes(field);
        if (!memory) {
            return ExitStatus::failure;
        }
        before = *memory;
        const Row &row = *field.node().row;
        lines += before == bytes ? ""
                                 : field.path + ": " + formatValue(row, before) + " -> " +
                                       formatValue(row, bytes) + '\n';
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
        const std::string error = writeError(assignment, source.readBytes(assignment.field));
        if (!error.empty()) {
            printError(assignment.field.path + ": " + error);
            status = ExitStatus::failure;
        }
    }
    return status;
}
