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
#include <thread>
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
                                const Environment &settings, const std::string &redirections) {
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
    if (!redirections.empty()) {
        words.insert(words.begin(), {"sh", "-c", "exec \"$0\" \"$@\" " + redirections});
    }
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

// Reads what a program prints on a terminal. `slave`, its end of the terminal, stays open here, and
// a mark behind the program's last words tells that all is read: what a terminal holds when its
// last user goes can get lost. For the same reason it is nobody's controlling terminal.
static std::string readTerminal(int terminal, int slave, pid_t program, int &status) {
    const std::string endMark = "\1end of output\1";
    std::string text;
    std::thread waiter([&] {
        status = exitStatusOf(program);
        EXPECT_GT(write(slave, endMark.data(), endMark.size()), 0);
    });
    for (std::array<char, 4096> some; !text.ends_with(endMark);) {
        const ssize_t got = read(terminal, some.data(), some.size());
        if (got <= 0) {
            ADD_FAILURE() << "the terminal is gone";
            break;
        }
        text.append(some.data(), static_cast<size_t>(got));
    }
    waiter.join();
    return text.substr(0, text.rfind(endMark));
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
    int slave = -1;
    if (typed != nullptr) {
        termios raw{}; // no echo, no translation of line ends: what is read is what was printed
        raw.c_cflag = CS8 | CREAD;
        raw.c_lflag = ICANON;
        raw.c_cc[VEOF] = '\x04';
        openpty(&terminal, &slave, nullptr, &raw, nullptr);
        EXPECT_EQ(write(terminal, typed->data(), typed->size()),
                  static_cast<ssize_t>(typed->size()));
    }
    const pid_t child = fork();
    if (child == 0) {
        redirect(STDERR_FILENO, err, O_WRONLY | O_CREAT | O_TRUNC);
        if (typed == nullptr) {
            redirect(STDIN_FILENO, in, O_RDONLY);
        } else {
            dup2(slave, STDIN_FILENO);
            dup2(slave, STDOUT_FILENO);
        }
        if (typed == nullptr || printsToFile) {
            redirect(STDOUT_FILENO, out, O_WRONLY | O_CREAT | O_TRUNC);
        }
        become(arguments, settings, redirections);
    }
    if (typed != nullptr) {
        outcome.out = readTerminal(terminal, slave, child, outcome.status);
        close(terminal);
        close(slave);
    } else {
        outcome.status = exitStatusOf(child);
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
