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
            putUnbuffered(characters);
        }
    }
    void put(char character) {
        *room() = character;
        ++used;
    }
    // A character up to 256 times; not at all if the count is 0 or negative.
    void putRepeated(char character, int count);
    // How many characters have been put so far.
    [[nodiscard]] size_t size() const {
        return flushed + used;
    }
    // Decimal.
    void putUnsigned(uint64_t value);
    void putSigned(int32_t value);
    // Decimal, padded on the left up to the width.
    void putPadded(uint64_t value, int width, char padding = ' ');
    // "0x" and two lower-case hexadecimal digits.
    void putHexByte(uint8_t value);
    // "0x" and as many digits as the value has, but at least so many.
    void putHex(uint16_t value, int minDigits);
    // As printf's %.*f prints it, for 1 to 6 places.
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
    void putUnbuffered(std::string_view characters);
    void flush();

    char text[4096];
    size_t used = 0;    // characters in `text`
    size_t flushed = 0; // characters before them
};
