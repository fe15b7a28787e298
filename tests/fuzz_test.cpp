// Runs the programs in this process over a mock of the platform's library that checks every call.
// Arguments, typed lines, sections, captures, results and names all come from one input.
// scripts/fuzz has libFuzzer make the inputs; the test makes random ones, the same each time.
#undef NDEBUG // the checks are assertions
#include "cli/command_line.h"
#include "orbelstatctl/commands.h"
#include "orbelstatctl/paths.h"
#include "upm/policy_report.h"
#include "upm/policy_writes.h"
#include "upm/upm_block.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <span>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

// The order matters: nextWord() mostly takes the next word, so neighbours should form valid command
// lines.
// clang-format off
static constexpr const char *probeWords[] = {
    "-d", "-w", "-u", "-c", "-o", "-u", "-p", "-a", "-e", "-u", "-t", "-r", "-u", "-p", "-c",
    "-w", "-u", "-p", "3", "-s", "1", "-l", "7", "-i", "-u", "-p", "16", "-h", "-?", "--", "",
    "1e9", "nan", "-1", "100001", "4294967295", "4294967296", " 5", "3x", "y", "n", "0", "2"};
static const std::string captures = "/dev/shm/orbel-fuzz-" + std::to_string(getpid());
static const std::string oldPath = captures + "/old", newPath = captures + "/new";
static const char *const oldCapture = oldPath.c_str(), *const newCapture = newPath.c_str();
static constexpr size_t commandCount = 9; // that the words begin with
static const char *const ctlWords[] = {
    "get", "set", "list", "json", "table", "metrics", "diff", "undo", "wait",
    "set", "upm.policies[3].state=1", "get", "upm.policies[15]", "set", "-", "json", "psu[2..4]",
    "upm.policies[3].SFOffset=32768", "set", "--dry-run", "upm.cpuPwrThermal.dimmPwr[1]=nan",
    "list", "-a", "upm", "set", "upm.powerLimits.cpuPPL[*]=100000", "upm.powerLimits.sysPL2=7",
    "upm.cpuPwrThermal.dimmPwr[3]=-1e9", "get", "-w", "upm.policies[*]", "config", "json",
    "--from", oldCapture, "table", "upm.policies[1..3]", "name", "-t", "--csv", "--from", newCapture,
    "get", "-n", "diff", "-w", "-p", "upm", oldCapture, newCapture, "metrics", "psu", "undo", "-",
    "--force", "upm.policies[3].state: 1 -> 0", "upm.powerLimits.sysPL1: -1 -> 7", "wait",
    "upm.policies[*].state>=1", "psu[0].Pin!=1e3", "upm.policies[3].name=x", "#"};
// clang-format on

static std::span<const char *const> words; // of the program that runs
// The contents of every section; a shorter section has the beginning of them.
static uint8_t contents[std::ranges::max(allSections, {}, &Section::size).size];
static const uint8_t *input; // the rest of it, and a zero byte
static size_t remaining;
static size_t lastWord;
static FILE *typed;                       // read by the program like a terminal
static std::set<const Row *> rowsWritten; // in all runs

static size_t nextBelow(size_t limit) { // at most 256; 0 once the input has ended
    return remaining == 0 ? 0 : (--remaining, *input++ % limit);
}

static const std::vector<Field> &writableFields() {
    static const std::vector<Field> fields = expandPaths({Path()}, Kind::writable);
    return fields;
}

// Returns the word after the last one, another one or, less often, the text that comes next in the
// input.
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
    const bool isAllowed = std::ranges::any_of(allSections, [=](Section section) {
        return section.id == id && offset >= 0 && length > 0 && offset <= section.size - length;
    });
    assert(isAllowed);
    return copy(bytes, contents + offset, length);
}

extern "C" int Tolm_shm_memwrite(int32_t id, const uint8_t *bytes, int32_t offset, int32_t length) {
    const auto place = static_cast<size_t>(offset), size = static_cast<size_t>(length);
    uint64_t value = 0;
    memcpy(&value, bytes, std::min(size, sizeof value));
    const auto isAllowed = [&](const Field &field) {
        const Row *row = field.node().row;
        return field.node().section.id == id && field.offset == place && row->size == size &&
               (value <= *row->bound || row->type == Type::f64);
    };
    const auto field = std::ranges::find_if(writableFields(), isAllowed);
    if (field != writableFields().end()) {
        rowsWritten.insert(field->node().row);
    } else {
        assert(id == powerReportingSection.id);
        assert(place == upmBlockOffset + policyDataOffset && size == policyDataSize);
    }
    return copy(contents + offset, bytes, length);
}

extern "C" const char *policyTypeToString(int16_t policy) {
    assert(0 <= policy && policy < policyCount);
    return nextBelow(16) == 15 ? nullptr : nextWord();
}

extern "C" int isatty(int /*descriptor*/) noexcept {
    return 1;
}

// Repeats the rest of the input until the sections are full.
static void fillSections() {
    for (size_t i = 0; i < sizeof contents; i += remaining + 1) {
        memcpy(contents + i, input, std::min(remaining + 1, sizeof contents - i));
    }
}

// Makes a capture of the sections, now and then with files that are too short, or with too few
// names.
static void makeCapture(const std::string &directory) {
    std::filesystem::create_directories(directory);
    for (const Section section : allSections) {
        std::ofstream(directory + "/section-" + std::to_string(section.id))
            .write(reinterpret_cast<const char *>(contents),
                   nextBelow(16) == 15 ? 100 : static_cast<std::streamsize>(section.size));
    }
    for (size_t names = nextBelow(4) == 0 ? nextBelow(32) : policyCount; names > 0; --names) {
        std::ofstream(directory + "/policy-names", std::ios::app) << nextWord() << '\n';
    }
}

// Types an answer for the wizard: yes, no or a number that its menus and fields may accept; less
// often another word.
static void typeAnswer() {
    const size_t choice = nextBelow(64);
    if (choice == 63) {
        fprintf(typed, "%s\n", nextWord());
    } else if (choice < 16) {
        fputs(choice < 8 ? "y\n" : "n\n", typed);
    } else {
        fprintf(typed, "%zd\n", static_cast<ssize_t>(nextBelow(std::size(policyRows) + 1)) - 1);
    }
}

// Types an assignment that is valid for every field.
static void typeAssignment() {
    const size_t number = (256 * nextBelow(256) + nextBelow(256)) % writableFields().size();
    fprintf(typed, "%s=1\n", writableFields()[number].path.c_str());
}

static void runProgram(bool isOrbelstatctl, bool isDialogue) {
    const char *arguments[12] = {"program", "-w", "-u", "-m"};
    int count = 4;
    if (isDialogue) {
        for (const size_t rest = remaining / 2; remaining > rest;) {
            typeAnswer();
        }
    } else {
        count = 1 + static_cast<int>(nextBelow(9));
        words = isOrbelstatctl ? std::span<const char *const>(ctlWords) : probeWords;
        std::generate(arguments + 1, arguments + count, nextWord);
        if (isOrbelstatctl && nextBelow(8) != 0) {
            arguments[1] = ctlWords[nextBelow(commandCount)];
        }
        if (isOrbelstatctl && count > 1 && strcmp(arguments[1], "wait") == 0) { // which must end
            const auto isOption = [](const char *word) { return word[0] == '-'; };
            std::replace_if(arguments + 2, arguments + count, isOption, "upm.policies[3].state=1");
            arguments[count++] = "-t";
            arguments[count++] = "0";
        }
        const bool areAssignments = isOrbelstatctl && nextBelow(2) == 1;
        if (areAssignments) {
            arguments[1] = "set";
            arguments[2] = "-";
            count = 3;
        }
        for (size_t lines = nextBelow(256); lines > 0; --lines) {
            areAssignments ? typeAssignment() : (void)fprintf(typed, "%s\n", nextWord());
        }
    }
    arguments[count] = nullptr;
    rewind(typed);
    fillSections();
    optind = opterr = 0; // resets getopt and silences it
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
    const auto [status, ifOutputIsLost] = runOrbelstatctl(count, argv);
    assert(status <= ExitStatus::usageError && ifOutputIsLost != ExitStatus::success);
    std::filesystem::remove_all(captures);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<uint8_t> terminated(data, data + size);
    terminated.push_back(0);
    input = terminated.data();
    remaining = size;
    lastWord = 0;
    words = probeWords;
    typed = stdin = fdopen(memfd_create("typed", 0), "w+");
    const size_t choice = nextBelow(8);
    runProgram(choice < 3, choice >= 5);
    fclose(typed);
    return 0;
}

#ifdef SEEDED
// Calls operations with numbers that no command line lets through; they must reject them.
static void callOperations() {
    showPolicy(policyCount);
    writePolicyState(policyCount, 1);
    assert(writeUpmBlock(sizeof(sUpmBlock), contents, 1) == -ERANGE);
    assert(writeUpmBlock(1, contents, sizeof(sUpmBlock)) == -ERANGE);
    assert(writeUpmBlock(SIZE_MAX, contents, 2) == -ERANGE);
    assert(writeUpmBlock(2, contents, SIZE_MAX) == -ERANGE);
}

int main() {
    stdout = fopen("/dev/null", "w");
    callOperations();
    for (int run = 0; run < 2500; ++run) {
        uint8_t bytes[1000];
        std::ranges::generate(bytes, [] { return static_cast<uint8_t>(rand() >> 8); });
        LLVMFuzzerTestOneInput(bytes, sizeof bytes);
    }
    for (const Field &field : writableFields()) {
        assert(rowsWritten.count(field.node().row) == 1);
    }
}
#endif
