#include "orbelstatctl/commands.h"
#include "orbelstatctl/section_copies.h"
#include "orbelstatctl/values.h"

#include <algorithm>
#include <cstring>

namespace {

// The step of a path that begins at `start`: a member's name or an index in brackets.
std::string_view stepAt(std::string_view path, size_t start) {
    size_t end = start + 1;
    while (end < path.size() && path[end] != '.' && path[end] != '[') {
        ++end;
    }
    return {path.data() + start, path.data() + end};
}

// A document under construction: fields come in with their paths below the document's root, and
// what a path has in common with the one before it are the objects and arrays that stay open.
class Document {
  public:
    explicit Document(TextBuffer &text) : out(text) {}

    // Puts all that stands before the value of a field. An empty path is that of a document which
    // is one value.
    void beginField(std::string_view path);
    void end();

  private:
    // An open object or array.
    struct Level {
        size_t start; // of its members' steps in the path
        char closing;
    };

    // Whether a path that is like the last one up to `differing` has a member of this level: of an
    // array that takes the opening bracket, of an object not one character.
    static bool isMemberOf(const Level &level, size_t differing) {
        return level.closing == ']' ? level.start < differing : level.start <= differing;
    }
    // Opens the object or array of the step at `start`, and begins that step's line.
    void open(std::string_view path, size_t start);
    void beginMember(std::string_view step);
    void close();
    void beginLine();

    TextBuffer &out;
    Level levels[8]{};
    size_t depth = 0;
    char lastPath[256]{};
    size_t lastLength = 0;
};

void Document::beginLine() {
    out.put('\n');
    out.putRun(' ', static_cast<int>(2 * depth));
}

void Document::beginMember(std::string_view step) {
    beginLine();
    if (step[0] != '[') {
        out.put('"');
        out.put(step);
        out.put("\": ");
    }
}

void Document::open(std::string_view path, size_t start) {
    const bool isArray = path[start] == '[';
    out.put(isArray ? '[' : '{');
    levels[depth++] = {start, isArray ? ']' : '}'};
    beginMember(stepAt(path, start));
}

void Document::close() {
    --depth;
    beginLine();
    out.put(levels[depth].closing);
}

void Document::beginField(std::string_view path) {
    if (path.empty()) {
        return;
    }
    size_t start = path[0] == '.' ? 1 : 0;
    if (depth == 0) {
        open(path, start);
    } else {
        const char *differing =
            std::mismatch(path.begin(), path.end(), lastPath, lastPath + lastLength).first;
        while (!isMemberOf(levels[depth - 1], static_cast<size_t>(differing - path.begin()))) {
            close();
        }
        out.put(',');
        start = levels[depth - 1].start;
        beginMember(stepAt(path, start));
    }
    for (start += stepAt(path, start).size(); start < path.size();
         start += stepAt(path, start).size()) {
        start += path[start] == '.' ? 1 : 0;
        open(path, start);
    }
    memcpy(lastPath, path.data(), path.size());
    lastLength = path.size();
}

void Document::end() {
    while (depth > 0) {
        close();
    }
    out.put('\n');
}

} // namespace

int printJson(Words arguments) {
    const std::string_view wanted = arguments.empty() ? "" : arguments[0];
    const std::vector<Field> fields = arguments.empty() ? fieldsIn("") : fieldsOrComplaint(wanted);
    if (fields.empty()) {
        return refused;
    }
    SectionCopies copies;
    bool areRead = true;
    for (const Field &field : fields) {
        areRead = copies.of(field.section) != nullptr && areRead;
    }
    if (!areRead) {
        return failed;
    }
    TextBuffer out;
    Document document(out);
    for (const Field &field : fields) {
        document.beginField(std::string_view(field.path).substr(wanted.size()));
        putJsonValue(out, field, copies.of(field.section));
    }
    document.end();
    return succeeded;
}
