// Where values come from: the live shared memory, or a capture that `save` made.
#pragma once

#include "orbelstatctl/paths.h"

#include <map>
#include <optional>

// Returns "library error -13 (as errno: Permission denied)", with the text only for a negated errno
// value: what a number means is up to the platform's library.
std::string libraryError(int error);

enum class ReadErrors { print, keep };

class Source {
  public:
    // The live memory or, if `directory` is not empty, the capture in that directory. Throws a
    // failure if that is not a capture of a known format. With `keep`, errors of reads are not
    // printed.
    explicit Source(std::string directory = "", ReadErrors errors = ReadErrors::print);

    // Returns the bytes of a section, which is read on first use; null if that fails.
    const uint8_t *sectionBytes(Section section);
    // Returns why the section could not be read; "" if it could.
    std::string errorOf(Section section) {
        return copies[section.id].error;
    }
    // Makes the next access to each section read it again, into the same buffer.
    void invalidate();

    // Returns the platform's name for policy 0..15, not escaped; nothing if it cannot be read or,
    // with a message, for a capture of version 0.2, which has no names.
    std::optional<std::string> policyName(uint32_t policy);

    // Returns the value of a field as `get` prints it; nothing if it cannot be read.
    std::optional<std::string> readValue(const Field &field);

    // Whether any read has failed so far.
    [[nodiscard]] bool hasFailed() const {
        return failed;
    }

  private:
    struct Copy {
        std::vector<uint8_t> bytes;
        std::string error;
        bool isRead = false;
    };
    [[nodiscard]] std::string loadSection(Section section, std::vector<uint8_t> &bytes) const;
    void loadPolicyNames();
    void report(const std::string &message) const;

    std::string directory;
    ReadErrors errors;
    std::map<int32_t, Copy> copies; // by section number
    Strings names;                  // of the policies in a capture
    bool areNamesLoaded = false;
    bool failed = false;
};
