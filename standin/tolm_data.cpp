// Stand-in for the controller's shared-data library.
#include "standin/tolm_data.h"

#include "standin/section_file.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

namespace {

constexpr const char *demoNames[] = {
    "USER_POWER_CAP",    "RACK_POWER_CAP",     "GROUP_POWER_CAP", "BOOT_POWER_CAP",
    "PSU_REDUNDANCY",    "PSU_HOT_SPARE",      "PSU_OVERLOAD",    "INPUT_UNDERVOLTAGE",
    "INLET_TEMPERATURE", "OUTLET_TEMPERATURE", "CPU_THERMAL",     "MEMORY_THERMAL",
    "GPU_THERMAL",       "FAN_FAILURE",        "BATTERY_BACKUP",  "SAFE_FALLBACK",
};
constexpr int policyCount = sizeof demoNames / sizeof *demoNames;

const char *const *names = demoNames;

// Returns the value of a hexadecimal digit; -1 for any other character.
int parseDigit(char character) {
    static constexpr char digits[] = "0123456789abcdef";
    const char *found = character != '\0' ? strchr(digits, character) : nullptr;
    return found != nullptr ? static_cast<int>(found - digits) : -1;
}

// Parses one character of a name, which may be an escape, and stores it. Returns the position after
// it; null if the escape is invalid.
const char *parseCharacter(const char *text, char &character) {
    character = *text++;
    if (character != '\\') {
        return text;
    }
    switch (*text++) {
    case '\\':
        return text;
    case 'n':
        character = '\n';
        return text;
    case 't':
        character = '\t';
        return text;
    case 'x': {
        const int high = parseDigit(text[0]);
        const int low = high >= 0 ? parseDigit(text[1]) : -1;
        character = static_cast<char>(16 * high + low);
        return low >= 0 ? text + 2 : nullptr;
    }
    default:
        return nullptr;
    }
}

// Splits a text into names and replaces their escapes, in place. A NUL must follow the text.
// Returns whether the text is valid: one line per policy, each ending in a newline.
bool parseNames(char *text, size_t size, const char *(&parsed)[policyCount]) {
    const char *next = text;
    const char *end = text + size;
    for (const char *&name : parsed) {
        name = text;
        while (*next != '\n') {
            next = next < end ? parseCharacter(next, *text++) : nullptr;
            if (next == nullptr) {
                return false;
            }
        }
        ++next;
        *text++ = '\0';
    }
    return next == end;
}

// Replaces the demo names by those of the file policy-names, if that is valid.
void loadNames() {
    static char text[65537];
    static const char *parsed[policyCount];
    const SectionFile file(pathInDirectory("policy-names"), O_RDONLY);
    if (file.error != 0 || file.size >= static_cast<off_t>(sizeof text)) {
        return;
    }
    const ssize_t size = TEMP_FAILURE_RETRY(pread(file.descriptor, text, sizeof text - 1, 0));
    if (size >= 0 && parseNames(text, static_cast<size_t>(size), parsed)) {
        names = parsed;
    }
}

} // namespace

const char *policyTypeToString(int16_t policy) {
    static pthread_once_t isLoaded = PTHREAD_ONCE_INIT;
    pthread_once(&isLoaded, loadNames);
    return policy >= 0 && policy < policyCount ? names[policy] : "UNKNOWN_POLICY";
}
