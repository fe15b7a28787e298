// A buffer for text on its way to standard output. The reports print up to four thousand values; a
// call of printf or even fwrite for each of them would cost more than the rest of the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Collects text and passes it to standard output when the buffer is full and when it goes out of
// scope. Nothing else may print in between, so a TextBuffer belongs to one function and to the
// functions that it is passed to.
class TextBuffer {
  public:
    // cppcheck-suppress uninitMemberVar ; only the first `used` characters of `text` are read
    TextBuffer() = default;
    ~TextBuffer() {
        flush();
    }
    TextBuffer(const TextBuffer &) = delete;
    TextBuffer &operator=(const TextBuffer &) = delete;

    void put(std::string_view characters) {
        if (characters.size() <= maxLength) {
            memcpy(reserve(), characters.data(), characters.size());
            used += characters.size();
        } else {
            putUnbuffered(characters);
        }
    }
    void put(char character) {
        *reserve() = character;
        ++used;
    }
    // Writes a character `count` times, at most 256; not at all if `count` is 0 or negative.
    void putRepeated(char character, int count);
    // Returns the number of characters that have been put so far.
    [[nodiscard]] size_t size() const {
        return flushed + used;
    }
    // Write a number in decimal.
    void putUnsigned(uint64_t value);
    void putSigned(int32_t value);
    // Writes a number in decimal, padded on the left to at least `width` characters.
    void putPadded(uint64_t value, int width, char padding = ' ');
    // Writes "0x" and two lower-case hexadecimal digits.
    void putHexByte(uint8_t value);
    // Writes "0x" and the lower-case hexadecimal digits of the value, at least minDigits.
    void putHex(uint16_t value, int minDigits);
    // Writes a number as printf's "%.*f" does, with 1 to 6 decimals.
    void putFixed(float value, int decimals);
    // Writes a number as printf's "%g" does.
    void putGeneral(double value);

  private:
    static constexpr size_t maxLength = 256;

    // Returns where to write the next characters; makes space for at least maxLength.
    char *reserve() {
        if (used > sizeof text - maxLength) {
            flush();
        }
        return text + used;
    }
    void putUnbuffered(std::string_view characters); // writes text that is longer than maxLength
    void flush();

    char text[4096];
    size_t used = 0;    // characters in `text`
    size_t flushed = 0; // characters passed on before them
};
