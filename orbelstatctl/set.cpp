#include "orbelstatctl/commands.h"
#include "orbelstatctl/section_copies.h"
#include "orbelstatctl/values.h"
#include "upm/upm_block.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <sys/types.h>

namespace {

// Text that the C library allocated, freed when its owner returns.
struct FreeText {
    void operator()(char *text) const {
        free(text);
    }
};
using AllocatedText = std::unique_ptr<char[], FreeText>;

// A field and what is to be written to it.
struct Assignment {
    Field field;
    uint8_t bytes[maxValueSize];
};

// Reads standard input to its end, without the last line's. Says on standard error what is wrong
// with it, and returns the exit status of that.
ExitStatus readInput(AllocatedText &input) {
    char *text = nullptr;
    size_t allocated = 0;
    const ssize_t length = getdelim(&text, &allocated, '\0', stdin);
    input.reset(text);
    if (ferror(stdin) != 0) {
        fprintf(stderr, "orbelstatctl: standard input: %s\n", strerror(errno));
        return failed;
    }
    if (length <= 0) {
        fprintf(stderr, "orbelstatctl: standard input: nothing to set\n");
        return refused;
    }
    char &last = text[length - 1];
    if (last == '\0') {
        fprintf(stderr, "orbelstatctl: standard input: a NUL byte\n");
        return refused;
    }
    last = last == '\n' ? '\0' : last;
    return succeeded;
}

// Takes PATH=VALUE apart. Returns null, or what is wrong with it.
const char *parseAssignment(const char *text, Assignment &assignment) {
    const size_t length = strlen(text);
    if (length > 0 && text[length - 1] == '\r') {
        return "ends in a carriage return";
    }
    const std::string_view path(text, strcspn(text, "="));
    if (path.size() == length) {
        return *text == '-' ? "not PATH=VALUE: --dry-run comes first, and - stands alone"
                            : "not PATH=VALUE";
    }
    const std::vector<Field> fields = path.empty() ? std::vector<Field>() : fieldsIn(path);
    if (fields.empty()) {
        return "no such field";
    }
    if (fields[0].path != path) {
        return "names more than one field";
    }
    if (!fields[0].row->bound) {
        return "may not be written";
    }
    assignment.field = fields[0];
    return parseValue(*fields[0].row, text + path.size() + 1, assignment.bytes);
}

// Writes the assignments in turn until one fails; `section` is a copy of the section and gets what
// shared memory should hold afterwards. Returns how many were written.
size_t writeAssignments(std::span<const Assignment> assignments, uint8_t *section, bool isDryRun) {
    TextBuffer out;
    size_t written = 0;
    for (const Assignment &assignment : assignments) {
        const Field &field = assignment.field;
        const size_t size = field.row->size;
        if (!isDryRun) {
            const size_t offset = field.offset - upmBlockOffset;
            if (const int error = writeUpmBlock(offset, assignment.bytes, size)) {
                fprintf(stderr, "orbelstatctl: %s: cannot be written, error %d of the library\n",
                        field.path.c_str(), error);
                break;
            }
        }
        out.put(field.path);
        out.put(": ");
        putValue(out, field, section);
        memcpy(section + field.offset, assignment.bytes, size);
        out.put(" -> ");
        putValue(out, field, section);
        out.put('\n');
        ++written;
    }
    return written;
}

// Whether shared memory holds what was written to these fields.
bool isReadBack(std::span<const Assignment> assignments, const uint8_t *expected) {
    SectionCopies copies;
    const uint8_t *section = copies.of(powerReportingSection);
    bool isSame = section != nullptr;
    for (const Assignment &assignment : assignments) {
        const Field &field = assignment.field;
        if (section != nullptr &&
            memcmp(section + field.offset, expected + field.offset, field.row->size) != 0) {
            fprintf(stderr, "orbelstatctl: %s: does not read back as it was written\n",
                    field.path.c_str());
            isSame = false;
        }
    }
    return isSame;
}

} // namespace

int setFields(Words arguments) {
    const bool isDryRun = strcmp(arguments[0], "--dry-run") == 0;
    const Words words = arguments.subspan(isDryRun ? 1 : 0);
    if (words.empty()) {
        fprintf(stderr, "orbelstatctl: set: nothing to set; see orbelstatctl --help\n");
        return refused;
    }
    size_t count = words.size();
    AllocatedText input;
    if (count == 1 && strcmp(words[0], "-") == 0) {
        if (const ExitStatus status = readInput(input); status != succeeded) {
            return status;
        }
        count += static_cast<size_t>(std::count(input.get(), strchr(input.get(), '\0'), '\n'));
    }
    std::vector<Assignment> assignments(count);
    bool areTaken = true;
    char *rest = input.get();
    for (size_t i = 0; i < count; ++i) {
        const char *text = input ? strsep(&rest, "\n") : words[i];
        if (const char *wrong = parseAssignment(text, assignments[i])) {
            areTaken = false;
            const auto shown = static_cast<int>(strcspn(text, "\r")); // which would hide the rest
            input ? fprintf(stderr, "orbelstatctl: line %zu: %.*s: %s\n", i + 1, shown, text, wrong)
                  : fprintf(stderr, "orbelstatctl: %.*s: %s\n", shown, text, wrong);
        }
    }
    if (!areTaken) {
        return refused;
    }
    SectionCopies copies;
    uint8_t *section = copies.of(powerReportingSection);
    if (section == nullptr) {
        return failed;
    }
    const size_t written = writeAssignments(assignments, section, isDryRun);
    const bool isDone = isDryRun || isReadBack(std::span(assignments).first(written), section);
    return isDone && written == count ? succeeded : failed;
}
