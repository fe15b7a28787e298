#include "orbelstatctl/source.h"

#include "orbelstatctl/values.h"
#include "upm/upm_block.h"

#include <cerrno>
#include <fcntl.h>
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

// Reads at most `limit` bytes of a file in a capture. Captures are untrusted: a file that is not
// regular is an error, and opening a FIFO does not block.
static Result<std::string> readFile(const std::string &path, size_t limit) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0) {
        return {"", strerror(errno)};
    }
    Result<std::string> contents{std::string(limit, '\0'), ""};
    size_t used = 0;
    ssize_t count = S_ISREG(status.st_mode) ? 1 : 0;
    while (count > 0 && used < limit) {
        count = read(descriptor, contents.value.data() + used, limit - used);
        used += static_cast<size_t>(std::max<ssize_t>(count, 0));
    }
    contents.value.resize(used);
    contents.error = !S_ISREG(status.st_mode) ? "not a regular file"
                     : count < 0              ? strerror(errno)
                                              : "";
    close(descriptor);
    return contents;
}

Source::Source(std::string capture, ReadErrors onError)
    : directory(std::move(capture)), errors(onError) {
    if (directory.empty()) {
        return;
    }
    struct stat status {};
    const bool exists = stat(directory.c_str(), &status) == 0;
    if (!exists || !S_ISDIR(status.st_mode)) {
        fail(directory + ": " + (exists ? "not a directory" : strerror(errno)));
    }
    const std::string path = directory + "/about";
    const auto [about, error] = readFile(path, maxTextSize);
    const std::string format = about.substr(0, about.find('\n'));
    const bool isKnown = !format.starts_with("capture=") || format == "capture=1";
    if (!isKnown || (!error.empty() && error != strerror(ENOENT))) {
        fail(path + ": " + (error.empty() ? "expected capture=1, found " + format : error));
    }
}

std::string Source::loadSection(Section section, std::string &bytes) const {
    const auto size = static_cast<size_t>(section.size);
    if (directory.empty()) {
        bytes.resize(size);
        const int error =
            readSection(section, reinterpret_cast<uint8_t *>(bytes.data()), 0, section.size);
        return error == 0 ? "" : libraryError(error);
    }
    const std::string path = directory + "/section-" + std::to_string(section.id);
    const auto [contents, error] = readFile(path, size + 1);
    bytes = contents;
    if (!error.empty() || bytes.size() == size) {
        return error;
    }
    return (bytes.size() > size ? "size is more than " : "size is ") +
           std::to_string(std::min(bytes.size(), size)) + " bytes, expected " +
           std::to_string(size);
}

std::optional<std::string_view> Source::readBytes(Section section) {
    auto &[bytes, error, isRead] = copies[section.id];
    if (!isRead) {
        const bool isQuiet = !error.empty() || errors == ReadErrors::keep;
        error = loadSection(section, bytes);
        isRead = true;
        if (!error.empty() && !isQuiet) {
            const std::string number = std::to_string(section.id);
            printError(directory.empty() ? "cannot read section " + number + " (" +
                                               rootsOf(section) + "): " + error
                                         : directory + "/section-" + number + ": " + error);
        }
        failed = failed || !error.empty();
    }
    return error.empty() ? std::optional<std::string_view>(bytes) : std::nullopt;
}

std::optional<std::string_view> Source::readBytes(const Field &field) {
    const auto bytes = readBytes(field.node().section);
    return bytes ? std::optional(bytes->substr(field.offset, field.node().row->size)) : bytes;
}

void Source::invalidate() {
    for (auto &[section, copy] : copies) {
        copy.isRead = false;
    }
}

void Source::loadPolicyNames() {
    const std::string path = directory + "/policy-names";
    const auto [text, error] = readFile(path, maxTextSize);
    names.emplace();
    size_t begin = 0;
    for (size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
        names->push_back(escaped(unescaped(text.substr(begin, end - begin))));
        begin = end + 1;
    }
    if (error == strerror(ENOENT)) {
        printError(path + ": " + error + "; policy names are not available");
    } else if (!error.empty() || begin != text.size() || names->size() != policyCount) {
        printError(path + ": " +
                   (!error.empty() ? error
                    : begin != text.size()
                        ? "the last line does not end in a newline"
                        : "has " + std::to_string(names->size()) + " line(s), expected " +
                              std::to_string(policyCount)));
        names->clear();
        failed = true;
    }
}

std::optional<std::string> Source::readValue(const Field &field) {
    const Node &node = field.node();
    if (!node.isPolicyName) {
        const auto bytes = readBytes(field);
        return bytes ? std::optional(formatValue(*node.row, *bytes)) : std::nullopt;
    }
    if (directory.empty()) {
        return escaped(policyName(static_cast<int>(field.offset)));
    }
    if (!names) {
        loadPolicyNames();
    }
    return names->empty() ? std::nullopt : std::optional((*names)[field.offset]);
}
