#include "orbelstatctl/source.h"

#include "orbelstatctl/values.h"
#include "upm/upm_block.h"

#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

// Much more than `save` writes to a file of text.
static constexpr size_t maxTextSize = 65536;

std::string libraryError(int error) {
    const char *meaning = -4096 < error && error < 0 ? strerrordesc_np(-error) : nullptr;
    return "library error " + std::to_string(error) +
           (meaning != nullptr ? std::string(" (as errno: ") + meaning + ')' : "");
}

// Returns "reporting, upm": the first components of the section's paths.
static std::string rootsOf(Section section) {
    std::string roots;
    for (const Node &root : tree().members) {
        if (root.section.id == section.id) {
            roots += (roots.empty() ? "" : ", ") + std::string(root.name);
        }
    }
    return roots;
}

// Reads at most `limit` bytes of a file of a capture, which may come from anywhere: only of a
// regular file, without waiting for the other end of a FIFO.
static Result<std::string> readFile(const std::string &path, size_t limit) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const std::unique_ptr<FILE, int (*)(FILE *)> file(
        descriptor < 0 ? nullptr : fdopen(descriptor, "r"), fclose);
    struct stat status {};
    if (!file || fstat(descriptor, &status) != 0) {
        return {"", strerror(errno)};
    }
    if (!S_ISREG(status.st_mode)) {
        return {"", "not a regular file"};
    }
    std::string bytes(limit, '\0');
    bytes.resize(fread(bytes.data(), 1, limit, file.get()));
    return {bytes, ferror(file.get()) != 0 ? strerror(errno) : ""};
}

static bool isMissing(const std::string &path) {
    return access(path.c_str(), F_OK) != 0 && errno == ENOENT;
}

Source::Source(std::string capture, ReadErrors whatToDo)
    : directory(std::move(capture)), errors(whatToDo) {
    const std::string path = directory + "/about";
    struct stat status {};
    if (!directory.empty() && (stat(directory.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))) {
        fail(directory + ": not a directory");
    }
    if (directory.empty() || isMissing(path)) {
        return;
    }
    const auto [about, error] = readFile(path, maxTextSize);
    const std::string format = about.substr(0, about.find('\n'));
    if (!error.empty() || (format.starts_with("capture=") && format != "capture=1")) {
        fail(path + ": " + (error.empty() ? "expected capture=1, found " + format : error));
    }
}

void Source::report(const std::string &message) const {
    if (errors == ReadErrors::print) {
        printError(message);
    }
}

// Reads a section. Returns why that fails, or "".
std::string Source::loadSection(Section section, std::vector<uint8_t> &bytes) const {
    bytes.resize(static_cast<size_t>(section.size));
    if (directory.empty()) {
        const int error = readSection(section, bytes.data(), 0, section.size);
        return error == 0 ? "" : libraryError(error);
    }
    const auto [contents, error] =
        readFile(directory + "/section-" + std::to_string(section.id), bytes.size() + 1);
    const size_t found = contents.size();
    if (!error.empty() || found == bytes.size()) {
        std::ranges::copy(contents, bytes.begin());
        return error;
    }
    return "size is " +
           (found > bytes.size() ? "more than " + std::to_string(bytes.size())
                                 : std::to_string(found)) +
           " bytes, expected " + std::to_string(bytes.size());
}

const uint8_t *Source::sectionBytes(Section section) {
    auto &[bytes, error, isRead] = copies[section.id];
    if (!isRead) {
        const bool hadFailed = !error.empty();
        error = loadSection(section, bytes);
        isRead = true;
        if (!error.empty() && !hadFailed) {
            const std::string number = std::to_string(section.id);
            report(directory.empty()
                       ? "cannot read section " + number + " (" + rootsOf(section) + "): " + error
                       : directory + "/section-" + number + ": " + error);
        }
        failed = failed || !error.empty();
    }
    return error.empty() ? bytes.data() : nullptr;
}

void Source::invalidate() {
    for (auto &[section, copy] : copies) {
        copy.isRead = false;
    }
}

void Source::loadPolicyNames() {
    const std::string path = directory + "/policy-names";
    const auto [text, error] = readFile(path, maxTextSize);
    areNamesLoaded = true;
    size_t begin = 0;
    for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
        names.push_back(unescaped(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    if (isMissing(path)) {
        report(path + ": " + error + "; policy names are not available");
    } else if (!error.empty() || begin != text.size() || names.size() != policyCount) {
        report(path + ": " +
               (!error.empty()         ? error
                : begin != text.size() ? "the last line does not end in a newline"
                                       : "has " + std::to_string(names.size()) +
                                             " line(s), expected " + std::to_string(policyCount)));
        names.clear();
        failed = true;
    }
}

std::optional<std::string> Source::policyName(uint32_t policy) {
    if (directory.empty()) {
        return ::policyName(static_cast<int>(policy));
    }
    if (!areNamesLoaded) {
        loadPolicyNames();
    }
    return names.empty() ? std::nullopt : std::optional(names[policy]);
}

std::optional<std::string> Source::readValue(const Field &field) {
    const Node &node = field.node();
    if (node.isPolicyName) {
        const std::optional<std::string> name = policyName(field.indices().at(0));
        return name ? std::optional(escaped(*name)) : std::nullopt;
    }
    const uint8_t *bytes = sectionBytes(node.section);
    return bytes != nullptr ? std::optional(formatValue(*node.row, bytes + field.offset))
                            : std::nullopt;
}
