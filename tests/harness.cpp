#include "harness.h"

#include "orbelstatctl/fields.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iomanip>
#include <iterator>
#include <pty.h>
#include <regex>
#include <sstream>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

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

std::vector<std::string> linesOf(const std::string &text) {
    std::vector<std::string> lines;
    for (size_t at = 0; at < text.size(); at += lines.back().size()) {
        lines.push_back(text.substr(at, std::min(text.find('\n', at), text.size() - 1) + 1 - at));
    }
    return lines;
}

static std::string variable(const char *name, const std::string &otherwise) {
    const char *value = getenv(name);
    return value != nullptr ? value : otherwise;
}

std::string buildDirectory() {
    return variable("ORBEL_TEST_BUILD", DEFAULT_BUILD);
}

bool isSanitized() {
    static const bool result =
        readFile(buildDirectory() + "/orbelstatprobe").find("__asan_init") != std::string::npos;
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
    directory = mkdtemp(path.data());
    fill(0);
}

Machine::~Machine() {
    fs::remove_all(directory);
}

void Machine::fill(uint8_t byte) {
    for (const Section &section : allSections) {
        poke(section.id, 0, Bytes(static_cast<size_t>(section.size), byte));
    }
}

void Machine::fillWithPattern() {
    for (const Section &section : allSections) {
        uint32_t state = static_cast<uint32_t>(section.id);
        Bytes bytes;
        while (bytes.size() < static_cast<size_t>(section.size)) {
            state = state * 1664525 + 1013904223;
            const auto byte = static_cast<uint8_t>(state >> 24);
            if (byte != '\n' && (bytes.empty() || byte != bytes.back())) {
                bytes.push_back(byte);
            }
        }
        poke(section.id, 0, bytes);
    }
    for (const Field &field : fieldsIn("")) {
        const Type type = field.row->type;
        if (type == Type::f32 || type == Type::f64) {
            int32_t bits = 0;
            memcpy(&bits, contents(field.section.id).data() + field.offset, sizeof bits);
            const float number = static_cast<float>(bits >> 8) / 4096;
            poke(field.section.id, field.offset,
                 type == Type::f32 ? littleEndian(std::bit_cast<uint32_t>(number), 4)
                                   : littleEndian(std::bit_cast<uint64_t>(double{number}), 8));
        }
    }
    poke(6, 30269, littleEndian(1700000000007, 8)); // the UPM timestamp
}

void Machine::poke(int section, size_t offset, const Bytes &bytes) {
    const std::string path = directory + "/section-" + std::to_string(section);
    std::ofstream(path, std::ios::app); // exists from now on
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(offset));
    file.write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

Bytes Machine::contents(int section) const {
    const std::string text = readFile(directory + "/section-" + std::to_string(section));
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
    words.push_back(buildDirectory() + "/orbelstatprobe");
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
    const std::string in = directory + "/in";
    const std::string out = directory + "/out";
    const std::string err = directory + "/err";
    const std::string calls = directory + "/calls";
    fs::remove(calls);
    std::ofstream(in, std::ios::binary) << input;
    Environment settings{{"TZ", "UTC"},
                         {"TOLM_SHM_DIR", directory},
                         {"LD_PRELOAD", buildDirectory() + "/librecorder.so"},
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

Bytes littleEndian(uint64_t value, size_t size) {
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (8 * i));
    }
    return bytes;
}

bool isOfPolicyField(const std::string &line) {
    static const std::regex field(" +[^ ]*\\([0-9]+\\)\\..*\n");
    return std::regex_match(line, field);
}

int countOf(const std::string &text, const std::string &piece) {
    int count = 0;
    for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

std::string naming(const std::string &piece, const std::string &name, std::string text) {
    for (size_t at; (at = text.find(piece)) != std::string::npos;) {
        text.replace(at, piece.size(), name);
    }
    return text;
}

std::string golden(const std::string &name) {
    return readFile(std::string(GOLDEN_DIR) + "/" + name);
}

// With \xNN for each byte that is no printable character, and for a backslash.
static std::string escaped(const std::string &text) {
    std::ostringstream escaped;
    escaped << std::hex << std::setfill('0');
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if ((isprint(byte) != 0 && byte != '\\') || byte == '\n' || byte == '\t') {
            escaped << character;
        } else {
            escaped << "\\x" << std::setw(2) << unsigned{byte};
        }
    }
    return escaped.str();
}

static std::string unescaped(std::string text) {
    for (size_t at; (at = text.find("\\x")) != std::string::npos;) {
        text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
    }
    return text;
}

void expectGolden(const std::string &name, const std::string &text) {
    if (getenv("ORBEL_RECORD_GOLDEN") != nullptr) {
        std::ofstream(std::string(GOLDEN_DIR) + "/" + name, std::ios::binary) << escaped(text);
    }
    EXPECT_EQ(escaped(text), golden(name)) << "differs from golden/" << name;
}

void expectTranscript(const std::string &name, const RunCommand &run) {
    std::string text;
    for (const std::string &line : split(golden(name), '\n')) {
        if (line.starts_with("$ ")) {
            const std::string words = unescaped(line.substr(2, line.find(" ->") - 2));
            const size_t equals = words.find('=');
            const size_t end = words.find("; ");
            Machine machine;
            if (end != std::string::npos) {
                machine.environment[words.substr(0, equals)] =
                    words.substr(equals + 1, end - equals - 1);
            }
            const std::string command = end != std::string::npos ? words.substr(end + 2) : words;
            text += "$ " + words + " -> " + run(machine, command);
            text += text.ends_with('\n') ? "" : "(no line end)\n";
        }
    }
    expectGolden(name, text);
}
