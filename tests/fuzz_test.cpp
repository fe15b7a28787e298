// Runs the programs in this process with arguments, typed lines, sections, captures, results and
// names that all come from one input, over a library that checks every call; the wizard also with
// dialogues that go deep into it, and operations with numbers that no command line leads to.
// scripts/fuzz has libFuzzer make the inputs; the test makes random ones, the same each time.
#undef NDEBUG // the checks are assertions
#include "cli/command_line.h"
#include "orbelstatctl/commands.h"
#include "orbelstatctl/paths.h"
#include "sections/psu_info.h"
#include "upm/policy_report.h"
#include "upm/policy_writes.h"
#include "upm/upm_block.h"

#include <algorithm>
#include <bitset>
#include <cassert>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <span>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

// In an order in which they make sense.
// clang-format off
static constexpr const char *probeWords[] = {
    "-d", "-w", "-u", "-c", "-o", "-u", "-p", "-a", "-e", "-u", "-t", "-r", "-u", "-p", "-c",
    "-w", "-u", "-p", "3", "-s", "1", "-l", "7", "-i", "-u", "-p", "16", "-h", "-?", "--", "",
    "1e9", "nan", "-1", "100001", "4294967295", "4294967296", " 5", "3x", "y", "n", "0", "2"};
static const std::string captures = "/dev/shm/orbel-fuzz-" + std::to_string(getpid());
static const std::string oldPath = captures + "/old", newPath = captures + "/new";
static const char *const oldCapture = oldPath.c_str(), *const newCapture = newPath.c_str();
static constexpr size_t commandCount = 7; // that the words begin with
static const char *const ctlWords[] = {
    "get", "set", "list", "json", "table", "metrics", "diff",
    "set", "upm.policies[3].state=1", "get", "upm.policies[15]", "set", "-", "json", "psu[2..4]",
    "upm.policies[3].SFOffset=32768", "set", "--dry-run", "upm.cpuPwrThermal.dimmPwr[1]=nan",
    "list", "-a", "upm", "set", "upm.powerLimits.cpuPPL[*]=100000", "upm.powerLimits.sysPL2=7",
    "upm.cpuPwrThermal.dimmPwr[3]=-1e9", "get", "-w", "upm.policies[*]", "config", "json",
    "--from", oldCapture, "table", "upm.policies[1..3]", "name", "state", "--from", newCapture,
    "get", "-n", "diff", oldCapture, newCapture, "metrics", "psu", "json", "--from", oldCapture};
// Dialogues with the wizard: a digit is typed unchanged, and for each letter what suits its
// prompt: a CPU, a policy, a field, a value, yes or no with a value, back from the thermal editor.
static constexpr std::string_view dialogues[] = {
    "11cqqqqq1cqqqqq2qq01", "12qq1cqqqqq02", "2cqqqqqcqqqqqb1", "2cqqqqqcqqqqqcqqqqqb2",
    "3pfvfvfvfv01", "3pfvfvfvfvfvfvfv02", "3pfvfvfvfvfvfvfvfvfvfvfv02"};
// clang-format on

static std::span<const char *const> words;           // of the program that runs
static uint8_t contents[powerReportingSection.size]; // of each section, as far as it goes
static const uint8_t *input;                         // what is left of it, and a zero
static size_t remaining;
static size_t lastWord;
static FILE *typed;            // what the program reads as typed on a terminal
static bool isAnyPlaceWritten; // in the block, and not only fields with values in bounds
static size_t writes;          // calls of the library in this run
static std::bitset<sizeof contents> fieldsSeen; // at their offsets, those written in all runs

static size_t nextBelow(size_t limit) { // at most 256; 0 once the input has ended
    return remaining == 0 ? 0 : (--remaining, *input++ % limit);
}

// The word after the last one, another or, less often, the text that comes next in the input.
static const char *nextWord() {
    const size_t choice = nextBelow(16);
    if (choice < 15) {
        lastWord = (choice < 12 ? lastWord + 1 : nextBelow(256)) % words.size();
        return words[lastWord];
    }
    const auto *text = reinterpret_cast<const char *>(input);
    input += strlen(text);
    remaining -= strlen(text);
    return text;
}

static int copy(uint8_t *to, const uint8_t *from, int32_t length) {
    if (nextBelow(16) == 15) {
        return static_cast<int>(nextBelow(256)) - 256;
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
    const auto place = static_cast<size_t>(offset), size = static_cast<size_t>(length);
    const size_t start = place - upmBlockOffset;
    uint64_t value = 0;
    memcpy(&value, bytes, std::min(size, sizeof value));
    const auto isAllowed = [&](const Field &field) {
        const Row *row = field.node->row;
        return field.node->isWritable() && field.offset == place && row->size == size &&
               (value <= *row->bound || row->type == Type::f64);
    };
    static const std::vector<Field> fields = fieldsOf({parsePath("upm", "")});
    const bool isField = std::ranges::any_of(fields, isAllowed);
    assert(id == powerReportingSection.id);
    assert(isField || (start == policyDataOffset && size == policyDataSize) ||
           (isAnyPlaceWritten && start + size <= sizeof(sUpmBlock)));
    if (isField) {
        fieldsSeen.set(place);
    }
    ++writes;
    return copy(contents + offset, bytes, length);
}

extern "C" const char *policyTypeToString(int16_t policy) {
    assert(0 <= policy && policy < policyCount);
    return nextBelow(16) == 15 ? nullptr : nextWord();
}

extern "C" int isatty(int /*descriptor*/) noexcept {
    return 1;
}

// With what is left of the input, over and over.
static void fillSections() {
    for (size_t i = 0; i < sizeof contents; i += remaining + 1) {
        memcpy(contents + i, input, std::min(remaining + 1, sizeof contents - i));
    }
}

// Makes a capture of the sections, now and then without one, with less of one, or without names.
static void makeCapture(const std::string &directory) {
    std::filesystem::create_directories(directory);
    for (const Section section : allSections) {
        const size_t choice = nextBelow(16);
        if (choice != 15) {
            std::ofstream(directory + "/section-" + std::to_string(section.id))
                .write(reinterpret_cast<const char *>(contents),
                       choice == 14 ? 100 : static_cast<std::streamsize>(section.size));
        }
    }
    for (size_t names = nextBelow(4) == 0 ? nextBelow(32) : policyCount; names > 0; --names) {
        std::ofstream(directory + "/policy-names", std::ios::app) << nextWord() << '\n';
    }
}

// Types the answer for a letter of a dialogue; less often whatever word comes next before it.
static void typeAnswer(char letter) {
    if (nextBelow(64) == 63) {
        fprintf(typed, "%s\n", nextWord());
    }
    if (letter == 'q') {
        fputs(nextBelow(2) == 1 ? "y\n1\n" : "n\n", typed);
    } else if (letter == 'b') {
        fputs("-1\n", typed);
    } else if (letter >= 'a') {
        const int limit = letter == 'c' ? cpuCount : letter == 'p' ? policyCount : 30;
        const size_t first = letter == 'f' ? 1 : 0;
        fprintf(typed, "%zu\n", first + nextBelow(letter == 'v' ? 2 : static_cast<size_t>(limit)));
    } else {
        fprintf(typed, "%c\n", letter);
    }
}

// One that lies at an edge, or a small one.
static size_t sizeAround(size_t edge) {
    const size_t choice = nextBelow(4);
    return choice == 0 ? nextBelow(256) : (choice == 1 ? SIZE_MAX : edge) + nextBelow(3) - 1;
}

// The operations guard themselves.
static void callOperations() {
    static const uint8_t bytes[sizeof(sUpmBlock)] = {};
    const auto policy = static_cast<uint32_t>(sizeAround(policyCount));
    fillSections();
    showPolicy(policy); // whose names are asked for with numbers of policies only
    writePolicyState(policy, static_cast<int32_t>(nextBelow(2)));
    assert(writes == (policy < policyCount ? 1U : 0U));

    const size_t offset = sizeAround(sizeof bytes);
    const size_t length = sizeAround(offset <= sizeof bytes ? sizeof bytes - offset : 1);
    const bool isInside = offset <= sizeof bytes && length <= sizeof bytes - offset;
    writes = 0;
    const int result = writeUpmBlock(offset, bytes, length);
    assert(writes == (isInside ? 1U : 0U));
    assert(isInside || result == -ERANGE);
}

static void runProgram(bool isOrbelstatctl, bool isDialogue) {
    const char *arguments[10] = {"program", "-w", "-u", "-m"};
    int count = 4;
    if (isDialogue) {
        for (const size_t rest = remaining / 2; remaining > rest;) {
            std::ranges::for_each(dialogues[nextBelow(std::size(dialogues))], typeAnswer);
        }
    } else {
        count = 1 + static_cast<int>(nextBelow(9));
        words = isOrbelstatctl ? std::span<const char *const>(ctlWords) : probeWords;
        std::generate(arguments + 1, arguments + count, nextWord);
        if (isOrbelstatctl && nextBelow(8) != 0) {
            arguments[1] = ctlWords[nextBelow(commandCount)];
        }
        for (size_t lines = nextBelow(256); lines > 0; --lines) {
            fprintf(typed, "%s\n", nextWord());
        }
    }
    arguments[count] = nullptr;
    rewind(typed);
    fillSections();
    optind = opterr = 0; // getopt starts anew and is quiet
    auto *argv = const_cast<char **>(arguments);
    if (!isOrbelstatctl) {
        const int status = runCommandLine(count, argv);
        assert(-1 <= status && status <= 1);
        return;
    }
    if (nextBelow(4) == 0) {
        makeCapture(oldCapture);
        makeCapture(newCapture);
    }
    try {
        const int status = runCompanion(count, argv);
        assert(0 <= status && status <= 2);
    } catch (const Stop &stop) {
        assert(stop.status == failed || stop.status == refused);
    } catch (const std::filesystem::filesystem_error & /*a name that is too long*/) {
    }
    std::filesystem::remove_all(captures);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<uint8_t> terminated(data, data + size);
    terminated.push_back(0);
    input = terminated.data();
    remaining = size;
    lastWord = writes = 0;
    words = probeWords;
    typed = stdin = fdopen(memfd_create("typed", 0), "w+");
    const size_t choice = nextBelow(8);
    isAnyPlaceWritten = choice == 7;
    choice == 7 ? callOperations() : runProgram(choice < 3, choice >= 5);
    fclose(typed);
    return 0;
}

#ifdef SEEDED
int main() {
    stdout = fopen("/dev/null", "w");
    for (int run = 0; run < 2500; ++run) {
        uint8_t bytes[1000];
        std::ranges::generate(bytes, [] { return static_cast<uint8_t>(rand() >> 8); });
        LLVMFuzzerTestOneInput(bytes, sizeof bytes);
    }
    assert(fieldsSeen.count() > 500); // of 522 that may be written
}
#endif
