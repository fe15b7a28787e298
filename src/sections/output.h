// Text on its way to standard output. The reports print up to four thousand values; a call of
// printf or even of fwrite for each would cost more than all the rest of the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// Collects text and hands it to standard output when it is full and when it goes out of scope.
// Nothing else may print in between, so an Output lives within one function and what that calls
// with it.
class Output {
  public:
    // cppcheck-suppress uninitMemberVar ; text beyond `used` is never read
    Output() = default;
    ~Output() {
        flush();
    }
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    void put(const char *characters, size_t count) {
        if (count <= maxPiece) {
            memcpy(room(), characters, count);
            used += count;
        } else {
            putLong(characters, count);
        }
    }
    void put(const char *string) {
        put(string, strlen(string));
    }
    void put(char character) {
        *room() = character;
        ++used;
    }
    void putLine(const char *string);
    // A character up to 256 times; not at all if the count is negative.
    void putRun(char character, int count);
    // Decimal, padded on the left up to the width.
    void putUnsigned(uint64_t value, int width = 0, char padding = ' ');
    void putSigned(int64_t value);
    // "0x" and at least so many lower-case hexadecimal digits, 1 to 16.
    void putHex(uint64_t value, int digits);
    // As printf's %.*f prints it, for 0 to 6 places.
    void putFixed(float value, int places);
    // As printf's %g prints it.
    void putGeneral(double value);

    // Characters put so far.
    [[nodiscard]] size_t length() const {
        return flushed + used;
    }

  private:
    static constexpr size_t maxPiece = 256;

    // Where at least maxPiece characters have room.
    char *room() {
        if (used > sizeof text - maxPiece) {
            flush();
        }
        return text + used;
    }
    void putLong(const char *characters, size_t count);
    void flush();

    char text[4096];
    size_t used = 0;
    size_t flushed = 0;
};
