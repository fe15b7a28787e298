// Runs the programs in this process with arguments, typed lines, sections, results and names that
// all come from one input, over a library that checks every call. scripts/fuzz has libFuzzer make
// the inputs; the test makes random ones, the same each time.
#undef NDEBUG // the checks are assertions
#include "cli/command_line.h"
#include "orbelstatctl/commands.h"
#include "orbelstatctl/fields.h"
#include "sections/psu_info.h"
#include "upm/upm_block.h"

#include <cassert>
#include <cstring>
#include <span>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

// In an order in which they make sense.
static constexpr const char *probeWords[] = {
    "-d", "-w", "-u", "-c", "-o", "-u", "-p", "-a", "-e", "-u", "-t",  "-r", "-u",  "-p", "-c",
    "-w", "-u", "-p", "3",  "-s", "1",  "-l", "7",  "-i", "-u", "-p",  "16", "-h",  "-?", "--",
    "",   "-w", "-u", "-m", "1",  "1",  "4",  "3",  "y",  "1",  "y",   "2",  "n",   "y",  "2",
    "y",  "7",  "4",  "y",  "2",  "2",  "0",  "y",  "5",  "y",  "1e9", "y",  "nan", "y",  "-1",
    "2",  "3",  "16", "15", "1",  "0",  "26", "3",  "31", "3x", "1",   "2",  " 5",  "2",  "100001"};

// clang-format off
static constexpr const char *companionWords[] = {
    "set", "upm.policies[3].state=1", "get", "upm.policies[15]", "set", "-", "json", "psu[2]",
    "upm.policies[3].SFOffset=32768", "set", "--dry-run", "upm.cpuPwrThermal.dimmPwr[1]=nan",
    "list", "upm", "set", "upm.powerLimits.cpuPPL[3]=100000", "upm.powerLimits.sysPL2=7",
    "upm.cpuPwrThermal.dimmPwr[3]=-1e9", "get", "reporting.vcoreVRData[1]", "config", "json",
};
// clang-format on

static std::span<const char *const> words;           // of the program that runs
static uint8_t contents[powerReportingSection.size]; // of each section, as far as it goes
static const uint8_t *input;                         // what is left of it, and a zero
static size_t left;
static size_t lastWord;

static size_t below(size_t limit) { // at most 256; 0 once the input has ended
    return left == 0 ? 0 : (--left, *input++ % limit);
}

// The word after the last one, another or, less often, the text that comes next in the input.
static const char *nextWord() {
    const size_t choice = below(16);
    if (choice < 15) {
        lastWord = (choice < 12 ? lastWord + 1 : below(256)) % words.size();
        return words[lastWord];
    }
    const auto *text = reinterpret_cast<const char *>(input);
    input += strlen(text);
    left -= strlen(text);
    return text;
}

static int copy(uint8_t *to, const uint8_t *from, int32_t length) {
    if (below(16) == 15) {
        return static_cast<int>(below(256)) - 256;
    }
    memcpy(to, from, static_cast<size_t>(length));
    return 0;
}

extern "C" int Tolm_shm_memread(int32_t id, uint8_t *bytes, int32_t offset, int32_t length) {
    constexpr int32_t buses = offsetof(sPSUInfoSection, buses);
    const bool isOfBus = offset >= buses;
    const int32_t record = isOfBus ? sizeof(sPSUBusInfo) : sizeof(sTolmAbsPSUInfo);
    const bool isRecord = length == record && (offset - isOfBus * buses) % record == 0;
    const bool isAllowed = std::ranges::any_of(allSections, [=](Section section) {
        return section.id == id && 0 <= offset && offset <= section.size - length &&
               (length == section.size || (id == psuInfoSection.id && isRecord));
    });
    assert(isAllowed);
    return copy(bytes, contents + offset, length);
}

extern "C" int Tolm_shm_memwrite(int32_t id, const uint8_t *bytes, int32_t offset, int32_t length) {
    const size_t start = static_cast<size_t>(offset) - upmBlockOffset;
    uint64_t value = 0;
    memcpy(&value, bytes, std::min<size_t>(static_cast<size_t>(length), sizeof value));
    const auto isAllowed = [&](const Field &field) {
        const Row &row = *field.row;
        return row.bound && field.offset == static_cast<size_t>(offset) &&
               row.size == static_cast<size_t>(length) &&
               (value <= *row.bound || row.type == Type::f64);
    };
    static const std::vector<Field> fields = fieldsIn("upm");
    assert(id == powerReportingSection.id);
    assert((start == policyDataOffset && length == policyDataSize) ||
           std::ranges::any_of(fields, isAllowed));
    return copy(contents + offset, bytes, length);
}

extern "C" const char *policyTypeToString(int16_t policy) {
    assert(0 <= policy && policy < policyCount);
    return below(16) == 15 ? nullptr : nextWord();
}

extern "C" int isatty(int /*descriptor*/) noexcept {
    return 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<uint8_t> terminated(data, data + size);
    terminated.push_back(0);
    input = terminated.data();
    left = size;
    lastWord = 0;
    const bool isCompanion = below(3) == 2;
    words = isCompanion ? std::span<const char *const>(companionWords) : probeWords;
    const char *arguments[10] = {"program"};
    const int count = 1 + static_cast<int>(below(9));
    std::generate(arguments + 1, arguments + count, nextWord);
    if (isCompanion && count > 1 && below(8) != 0) {
        static constexpr const char *commands[] = {"get", "set", "list", "json"};
        arguments[1] = commands[below(std::size(commands))];
    }
    stdin = fdopen(memfd_create("typed", 0), "w+");
    for (size_t lines = below(256); lines > 0; --lines) {
        fprintf(stdin, "%s\n", nextWord());
    }
    rewind(stdin);
    for (size_t i = 0; i < sizeof contents; i += left + 1) {
        memcpy(contents + i, input, std::min(left + 1, sizeof contents - i));
    }
    optind = opterr = 0; // getopt starts anew and is quiet
    auto *argv = const_cast<char **>(arguments);
    if (!isCompanion) {
        const int status = runCommandLine(count, argv);
        assert(-1 <= status && status <= 1);
    } else if (count < 2 || strcmp(argv[1], "save") != 0) { // which would write files
        const int status = runCompanion(count, argv);
        assert(0 <= status && status <= 2);
    }
    fclose(stdin);
    return 0;
}

#ifdef SEEDED
int main() {
    stdout = fopen("/dev/null", "w");
    stderr = stdout;
    for (int run = 0; run < 5000; ++run) {
        uint8_t bytes[1000];
        std::ranges::generate(bytes, [] { return static_cast<uint8_t>(rand() >> 8); });
        LLVMFuzzerTestOneInput(bytes, sizeof bytes);
    }
}
#endif
