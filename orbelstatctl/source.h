// The source of values: the live shared memory, or a capture that `save` made.
#pragma once

#include "orbelstatctl/paths.h"

#include <map>

// Returns "library error -13 (as errno: Permission denied)", with the text only for a negated errno
// value: each platform library has its own error numbers.
std::string libraryError(int error);

enum class ReadErrors { print, keep };

class Source {
  public:
    // The live memory or, if `capture` is not empty, the capture in that directory. Throws a
    // failure if that is not a directory, or if its file `about` cannot be read or names a later
    // format. With `keep`, failed reads of sections are not printed.
    explicit Source(std::string capture = "", ReadErrors onError = ReadErrors::print);

    // Returns the bytes of a section, which is read on first use; nothing if that fails.
    std::optional<std::string_view> readBytes(Section section);
    // Returns the bytes of a field other than a policy's name.
    std::optional<std::string_view> readBytes(const Field &field);
    // Returns why the section could not be read; "" if it could.
    std::string errorOf(Section section) {
        return copies[section.id].error;
    }
    // Makes the next access to each section read it again.
    void invalidate();

    // Returns the value of a field as `get` prints it; nothing if it cannot be read. A capture
    // without policy names is reported, but does not count as a failed read.
    std::optional<std::string> readValue(const Field &field);

    // Whether any read has failed so far.
    [[nodiscard]] bool hasFailed() const {
        return failed;
    }

  private:
    struct Copy {
        std::string bytes;
        std::string error;
        bool isRead = false; // since the last call of invalidate
    };
    // Reads a section into `bytes`, whose memory is reused. Returns why that fails, or "".
    [[nodiscard]] std::string loadSection(Section section, std::string &bytes) const;
    void loadPolicyNames();

    std::string directory;
    ReadErrors errors;
    std::map<int32_t, Copy> copies; // by section number
    std::optional<Strings> names;   // of the policies in a capture, escaped; empty on failure
    bool failed = false;
};
