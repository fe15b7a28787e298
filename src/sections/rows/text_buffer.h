// Text on its way to standard output. The reports print up to four thousand values; a call of
// printf or even of fwrite for each would cost more than all the rest of the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Collects text and hands it to standard output when it is full and when it goes out of scope.
// Nothing else may print in between, so a TextBuffer lives within one function and what that calls
// with it.
class TextBuffer {
  public:
    // cppcheck-suppress uninitMemberVar ; text beyond `used` is never read
    TextBuffer() = default;
    ~TextBuffer() {
        flush();
    }
    TextBuffer(const TextBuffer &) = delete;
    TextBuffer &operator=(const TextBuffer &) = delete;

    void put(std::string_view characters) {
        if (characters.size() <= maxPiece) {
            memcpy(room(), characters.data(), characters.size());
            used += characters.size();
        } else {
            putLong(characters);
        }
    }
    void put(char character) {
        *room() = character;
        ++used;
    }
    void putLine(std::string_view characters);
    // A character up to 256 times; not at all if the count is negative.
    void putRun(char character, int count);
    // Decimal, padded on the left up to the width.
    void putUnsigned(uint64_t value, int width = 0, char padding = ' ');
    void putSigned(int32_t value);
    // "0x" and at least so many lower-case hexadecimal digits.
    void putHex(uint32_t value, int digits);
    // As printf's %.*f prints it, for 0 to 6 places.
    void putFixed(float value, int places);
    // As printf's %g prints it.
    void putGeneral(double value);

  private:
    static constexpr size_t maxPiece = 256;

    // Where at least maxPiece characters have room.
    char *room() {
        if (used > sizeof text - maxPiece) {
            flush();
        }
        return text + used;
    }
    void putLong(std::string_view characters);
    void flush();

    char text[4096];
    size_t used = 0;
};
