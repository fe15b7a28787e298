#include "harness.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <pty.h>
#include <sstream>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace fs = std::filesystem;

static const std::map<int, size_t> sectionSizes{{6, 30277}, {7, 10212}, {8, 224}, {39, 803}};

static std::string readFile(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

static std::vector<std::string> split(const std::string &text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

static std::string variable(const char *name, const std::string &otherwise) {
    const char *value = getenv(name);
    return value != nullptr ? value : otherwise;
}

std::string buildFolder() {
    return variable("ORBEL_TEST_BUILD", DEFAULT_BUILD);
}

bool isSanitized() {
    static const bool result =
        readFile(buildFolder() + "/orbelstatprobe").find("__asan_init") != std::string::npos;
    return result;
}

std::vector<std::string> Outcome::only(const std::string &kind) const {
    std::vector<std::string> chosen;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(chosen),
                 [&](const std::string &call) { return call.starts_with(kind); });
    return chosen;
}

Machine::Machine() {
    std::string path = fs::temp_directory_path() / "orbel-XXXXXX";
    folder = mkdtemp(path.data());
    fill(0);
}

Machine::~Machine() {
    fs::remove_all(folder);
}

void Machine::fill(uint8_t byte) {
    for (const auto &[section, size] : sectionSizes) {
        poke(section, 0, Bytes(size, byte));
    }
}

void Machine::fillWithPattern() {
    for (const auto &[section, size] : sectionSizes) {
        uint32_t state = static_cast<uint32_t>(section);
        Bytes bytes(size);
        for (size_t i = 0; i < size; ++i) {
            do {
                state = state * 1664525 + 1013904223;
                bytes[i] = static_cast<uint8_t>('?' + (state >> 26));
            } while (i > 0 && bytes[i] == bytes[i - 1]);
        }
        poke(section, 0, bytes);
    }
}

void Machine::poke(int section, size_t offset, const Bytes &bytes) {
    const std::string path = folder + "/section-" + std::to_string(section);
    std::ofstream(path, std::ios::app); // exists from now on
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(offset));
    file.write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

Bytes Machine::contents(int section) const {
    const std::string text = readFile(folder + "/section-" + std::to_string(section));
    return {text.begin(), text.end()};
}

Outcome Machine::run(const std::vector<std::string> &arguments) {
    return start(arguments, nullptr);
}

Outcome Machine::runOnTerminal(const std::vector<std::string> &arguments,
                               const std::string &typed) {
    const std::string end = "\x04\x04"; // of input, even in mid-line: no dialogue waits for ever
    const std::string all = typed + end;
    return start(arguments, &all);
}

// Becomes the program, or the emulator that runs it; never returns.
[[noreturn]] static void become(const std::vector<std::string> &arguments,
                                const Environment &settings) {
    std::vector<std::string> words = split(variable("ORBEL_TEST_EMULATOR", ""), ' ');
    for (const auto &[name, value] : settings) {
        if (words.empty()) {
            setenv(name.c_str(), value.c_str(), 1);
        } else { // for the program, not for the emulator
            words.insert(words.end(), {"-E", name + "=" + value});
        }
    }
    words.push_back(buildFolder() + "/orbelstatprobe");
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char *> argv;
    for (std::string &word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
}

static void redirect(int descriptor, const std::string &path, int flags) {
    const int file = open(path.c_str(), flags, 0600);
    dup2(file, descriptor);
    close(file);
}

static int exitStatusOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// In the process that a terminal was made for: waits for the program, in a process of its own, and
// marks the end of its output. What a terminal holds when its last user goes can get lost.
static const std::string endMark = "\1end of output\1";
static void becomeOnTerminal(const std::vector<std::string> &arguments,
                             const Environment &settings) {
    const pid_t program = fork();
    if (program == 0) {
        become(arguments, settings);
    }
    const int status = exitStatusOf(program);
    const ssize_t written = write(STDIN_FILENO, endMark.data(), endMark.size());
    _exit(written > 0 ? status : 126);
}

Outcome Machine::start(const std::vector<std::string> &arguments, const std::string *typed) {
    const std::string in = folder + "/in";
    const std::string out = folder + "/out";
    const std::string err = folder + "/err";
    const std::string calls = folder + "/calls";
    fs::remove(calls);
    std::ofstream(in) << "1\n2\ny\n5\n"; // which no run may read: it is not a terminal
    Environment settings{{"TZ", "UTC"},
                         {"TOLM_SHM_DIR", folder},
                         {"LD_PRELOAD", buildFolder() + "/librecorder.so"},
                         {"RECORD", calls},
                         {"ASAN_OPTIONS", "verify_asan_link_order=0:exitcode=99"},
                         {"UBSAN_OPTIONS", "exitcode=99"}};
    for (const auto &[name, value] : environment) {
        settings[name] = value;
    }

    Outcome outcome;
    int terminal = -1;
    termios raw{}; // no echo, no translation of line ends: what is read is what was printed
    raw.c_cflag = CS8 | CREAD;
    raw.c_lflag = ICANON;
    raw.c_cc[VEOF] = '\x04';
    const pid_t child = typed != nullptr ? forkpty(&terminal, nullptr, &raw, nullptr) : fork();
    if (child == 0) {
        redirect(STDERR_FILENO, err, O_WRONLY | O_CREAT | O_TRUNC);
        if (typed == nullptr) {
            redirect(STDIN_FILENO, in, O_RDONLY);
        }
        if (typed == nullptr || printsToFile) {
            redirect(STDOUT_FILENO, out, O_WRONLY | O_CREAT | O_TRUNC);
        }
        if (typed != nullptr) {
            becomeOnTerminal(arguments, settings);
        }
        become(arguments, settings);
    }
    if (typed != nullptr) {
        EXPECT_EQ(write(terminal, typed->data(), typed->size()),
                  static_cast<ssize_t>(typed->size()));
        std::array<char, 4096> some;
        for (ssize_t got = 1; got > 0 && !outcome.out.ends_with(endMark);) {
            got = read(terminal, some.data(), some.size());
            outcome.out.append(some.data(), got > 0 ? static_cast<size_t>(got) : 0);
        }
        EXPECT_TRUE(outcome.out.ends_with(endMark));
        outcome.out = outcome.out.substr(0, outcome.out.rfind(endMark));
    }
    outcome.status = exitStatusOf(child);
    if (typed != nullptr) {
        close(terminal);
    }
    if (typed == nullptr || printsToFile) {
        outcome.out = readFile(out);
    }
    outcome.err = readFile(err);
    outcome.calls = split(readFile(calls), '\n');
    return outcome;
}

Bytes word(uint64_t value, size_t size) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (8 * i));
    }
    return bytes;
}

std::string golden(const std::string &name) {
    return readFile(std::string(GOLDEN_DIR) + "/" + name);
}

void expectGolden(const std::string &name, const std::string &text) {
    if (getenv("ORBEL_RECORD_GOLDEN") != nullptr) {
        std::ofstream(std::string(GOLDEN_DIR) + "/" + name, std::ios::binary) << text;
    }
    EXPECT_EQ(text, golden(name)) << "differs from golden/" << name;
}
