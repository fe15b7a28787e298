// Where values come from: the live shared memory, or a capture that `save` made of it.
#pragma once

#include "orbelstatctl/paths.h"

#include <map>
#include <optional>

// "error -2 of the library (No such file or directory)".
std::string libraryError(int error);

class Source {
  public:
    // A capture's directory; "" for the live memory.
    explicit Source(std::string capture = "") : directory(std::move(capture)) {}

    // The bytes of a section, read whole when first wanted; null, with a complaint, if that fails.
    const uint8_t *bytesOf(Section section);
    // Why they could not be read; "" if they could.
    std::string errorOf(Section section) {
        return copies[section.id].error;
    }
    // Has the sections read anew, into the same memory.
    void refresh();

    // The platform's name of policy 0..15, not escaped; "" if a capture has none.
    std::string policyName(uint32_t policy);
    // Whether there are names: not in captures of older versions. Complains once if there are none.
    bool hasPolicyNames();

    // The value of a field as `get` prints it; nothing if it cannot be read.
    std::optional<std::string> valueOf(const Field &field);

    // Whether anything could not be read so far.
    [[nodiscard]] bool hasFailed() const {
        return failed;
    }

  private:
    struct Copy {
        std::vector<uint8_t> bytes;
        std::string error;
        bool isRead = false;
    };
    std::string readError(Section section, std::vector<uint8_t> &bytes) const;

    std::string directory;
    std::map<int32_t, Copy> copies;                // by the sections' numbers
    std::optional<std::vector<std::string>> names; // of a capture; empty if there are none
    bool failed = false;
};
