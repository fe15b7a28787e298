#include "orbelstatctl/source.h"

#include "orbelstatctl/messages.h"
#include "orbelstatctl/values.h"
#include "upm/upm_block.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

std::string libraryError(int error) {
    const char *meaning = -4096 < error && error < 0 ? strerrordesc_np(-error) : nullptr;
    return "error " + std::to_string(error) + " of the library" +
           (meaning != nullptr ? std::string(" (") + meaning + ')' : "");
}

// "reporting, upm": what paths of the section begin with.
static std::string rootsOf(Section section) {
    std::string roots;
    for (const Node &root : tree().members) {
        if (root.section.id == section.id) {
            roots += (roots.empty() ? "" : ", ") + std::string(root.name);
        }
    }
    return roots;
}

// Reads a section; returns why that fails, or "".
std::string Source::readError(Section section, std::vector<uint8_t> &bytes) const {
    bytes.resize(static_cast<size_t>(section.size));
    if (directory.empty()) {
        const int error = readSection(section, bytes.data(), 0, section.size);
        return error == 0 ? "" : libraryError(error);
    }
    std::ifstream file(directory + "/section-" + std::to_string(section.id), std::ios::binary);
    if (!file) {
        return strerror(errno);
    }
    std::ostringstream read;
    read << file.rdbuf(); // of a directory nothing
    const std::string found = read.str();
    if (found.size() != bytes.size()) {
        return std::to_string(found.size()) + " bytes, not " + std::to_string(bytes.size());
    }
    std::ranges::copy(found, bytes.begin());
    return "";
}

const uint8_t *Source::bytesOf(Section section) {
    auto &[bytes, error, isRead] = copies[section.id];
    if (!isRead) {
        const bool wasWrong = !error.empty();
        error = readError(section, bytes);
        isRead = true;
        if (!error.empty() && !wasWrong) {
            const std::string number = std::to_string(section.id);
            complain(directory.empty() ? "section " + number + " (" + rootsOf(section) +
                                             "): cannot be read, " + error
                                       : directory + "/section-" + number + ": " + error);
        }
        failed = failed || !error.empty();
    }
    return error.empty() ? bytes.data() : nullptr;
}

void Source::refresh() {
    for (auto &[section, copy] : copies) {
        copy.isRead = false;
    }
}

bool Source::hasPolicyNames() {
    if (directory.empty() || names) {
        return directory.empty() || !names->empty();
    }
    const std::string path = directory + "/policy-names";
    std::ifstream file(path);
    names.emplace();
    for (std::string line; std::getline(file, line);) {
        names->push_back(unescaped(line));
    }
    if (!file.is_open()) {
        complain(path + ": " + strerror(errno) + "; the policies' names are empty");
    } else if (names->size() != policyCount) {
        complain(path + ": " + std::to_string(names->size()) + " lines, not " +
                 std::to_string(policyCount));
        names->clear();
        failed = true;
    }
    return !names->empty();
}

std::string Source::policyName(uint32_t policy) {
    return directory.empty()  ? ::policyName(static_cast<int>(policy))
           : hasPolicyNames() ? (*names)[policy]
                              : "";
}

std::optional<std::string> Source::valueOf(const Field &field) {
    if (field.node->isPolicyName()) {
        return escaped(policyName(field.indices.at(0)));
    }
    const uint8_t *bytes = bytesOf(field.node->section);
    return bytes == nullptr ? std::nullopt
                            : std::optional(::valueOf(*field.node->row, bytes + field.offset));
}
