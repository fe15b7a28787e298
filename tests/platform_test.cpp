// The stand-in: its shared-memory library and tolmfill.
#include "harness.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

// The library, of the driver's own build since it is called from here, on a machine's sections.
struct StandInLibrary {
    explicit StandInLibrary(const Machine &machine) {
        setenv("TOLM_SHM_DIR", machine.directory.c_str(), 1);
        EXPECT_NE(handle, nullptr) << dlerror();
    }
    ~StandInLibrary() {
        dlclose(handle);
    }
    StandInLibrary(const StandInLibrary &) = delete;
    StandInLibrary &operator=(const StandInLibrary &) = delete;

    void *handle = dlopen(DEFAULT_BUILD "/libtolmshm.so", RTLD_NOW);
    using Copy = int (*)(int32_t, uint8_t *, int32_t, int32_t);
    Copy read = reinterpret_cast<Copy>(dlsym(handle, "Tolm_shm_memread"));
    Copy write = reinterpret_cast<Copy>(dlsym(handle, "Tolm_shm_memwrite"));
};

// Runs tolmfill with settings before it and options after it. Returns its exit status.
static int tolmfill(const std::string &settings, const std::string &options, std::string &out) {
    FILE *pipe = popen((settings + " " DEFAULT_BUILD "/tolmfill " + options).c_str(), "r");
    out.clear();
    for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe)) {
        out += static_cast<char>(c);
    }
    return WEXITSTATUS(pclose(pipe));
}

static int tolmfill(const Machine &machine, const std::string &options) {
    std::string out;
    return tolmfill("TOLM_SHM_DIR=" + machine.directory, options, out);
}

TEST(StandIn, CopiesExactlyTheBytesAskedForOrNone) {
    Machine machine;
    const StandInLibrary library(machine);
    const struct {
        int section, offset, length, result;
    } cases[] = {
        {8, 0, 224, 0},       {8, 223, 1, 0},       {8, 224, 0, 0},
        {8, 224, 1, -ERANGE}, {8, 1, 224, -ERANGE}, {8, 2147483647, 2147483647, -ERANGE},
        {8, -1, 1, -EINVAL},  {8, 0, -1, -EINVAL},  {1000, 0, 1, -ENOENT},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.section << " " << c.offset << " " << c.length);
        const size_t copied = c.result == 0 ? static_cast<size_t>(c.length) : 0;
        machine.fill(0x11);
        Bytes buffer(300, 0x22);
        EXPECT_EQ(library.read(c.section, buffer.data(), c.offset, c.length), c.result);
        Bytes expected(300, 0x22);
        std::fill_n(expected.begin(), copied, uint8_t{0x11});
        EXPECT_EQ(buffer, expected);

        std::fill(buffer.begin(), buffer.end(), uint8_t{0x33});
        EXPECT_EQ(library.write(c.section, buffer.data(), c.offset, c.length), c.result);
        expected.assign(224, 0x11);
        std::fill_n(expected.begin() + (copied != 0 ? c.offset : 0), copied, uint8_t{0x33});
        EXPECT_EQ(machine.contents(8), expected);
    }
}

// What is no regular file is refused, at once and untouched.
TEST(StandIn, UsesRegularFilesOnly) {
    Machine machine;
    const StandInLibrary library(machine);
    const std::string path = machine.directory + "/section-8";
    const std::string target = machine.directory + "/somebodys-file";
    fs::rename(path, target);
    fs::create_symlink(target, path);
    mkfifo((machine.directory + "/section-1").c_str(), 0666);
    fs::create_directory(machine.directory + "/section-2");
    const struct {
        int section, read, write;
    } cases[] = {{8, -ELOOP, -ELOOP}, {1, -ENXIO, -ENXIO}, {2, -EISDIR, -EISDIR}};
    for (const auto &c : cases) {
        uint8_t byte = 0x44;
        EXPECT_EQ(library.read(c.section, &byte, 0, 1), c.read) << c.section;
        EXPECT_EQ(library.write(c.section, &byte, 0, 1), c.write) << c.section;
    }
    EXPECT_EQ(tolmfill(machine, "--force"), 1);
    EXPECT_TRUE(fs::is_symlink(path));
    fs::remove(path);
    fs::rename(target, path);
    EXPECT_EQ(machine.contents(8), Bytes(224, 0));
}

// Another user of the lock reads and writes a section byte by byte: neither finds the other's bytes
// among its own.
TEST(StandIn, MakesEachCallWhole) {
    Machine machine;
    const StandInLibrary library(machine);
    const int file = open((machine.directory + "/section-8").c_str(), O_RDWR);
    std::atomic<bool> isDone = false;
    std::atomic<int> mixed = 0;
    std::thread caller([&] {
        for (Bytes bytes(224); !isDone;) {
            std::fill(bytes.begin(), bytes.end(), static_cast<uint8_t>(bytes[0] + 2));
            library.write(8, bytes.data(), 0, 224);
            library.read(8, bytes.data(), 0, 224);
            mixed += std::count(bytes.begin(), bytes.end(), bytes[0]) == 224 ? 0 : 1;
        }
    });
    for (int round = 0; round < 500; ++round) {
        Bytes bytes(224);
        flock(file, LOCK_SH);
        for (size_t i = 0; i < bytes.size(); ++i) {
            mixed += pread(file, &bytes[i], 1, static_cast<off_t>(i)) == 1 ? 0 : 1;
        }
        flock(file, LOCK_UN);
        mixed += std::count(bytes.begin(), bytes.end(), bytes[0]) == 224 ? 0 : 1;
        flock(file, LOCK_EX);
        for (size_t i = 0; i < bytes.size(); ++i) {
            const auto value = static_cast<uint8_t>(2 * round + 1);
            mixed += pwrite(file, &value, 1, static_cast<off_t>(i)) == 1 ? 0 : 1;
        }
        flock(file, LOCK_UN);
    }
    isDone = true;
    caller.join();
    close(file);
    EXPECT_EQ(mixed, 0);
}

TEST(StandIn, FillsSectionsButLeavesExistingOnesAlone) {
    Machine machine;
    fs::remove(machine.directory + "/section-7");
    EXPECT_EQ(tolmfill(machine, ""), 2);
    EXPECT_EQ(machine.contents(7).size(), 10212U);
    EXPECT_EQ(machine.contents(8), Bytes(224, 0));
    EXPECT_EQ(tolmfill(machine, "--force"), 0);
    EXPECT_NE(machine.contents(8), Bytes(224, 0));
    EXPECT_EQ(tolmfill(machine, "--check"), 0);
}

TEST(StandIn, ChecksThatSectionsAreThereAndOfTheirSize) {
    Machine machine;
    const std::string directory = "TOLM_SHM_DIR=" + machine.directory;
    std::string out;
    EXPECT_EQ(tolmfill(directory, "--check", out), 0);
    EXPECT_EQ(out, "");
    fs::remove(machine.directory + "/section-6");
    fs::resize_file(machine.directory + "/section-8", 223);
    EXPECT_EQ(tolmfill(directory, "--check", out), 1);
    EXPECT_EQ(out, machine.directory + "/section-6: No such file or directory\n" +
                       machine.directory + "/section-8: 223 bytes, not 224\n");
    std::string usual;
    EXPECT_EQ(tolmfill("TOLM_SHM_DIR=", "--check", out),
              tolmfill("env -u TOLM_SHM_DIR", "--check", usual));
    EXPECT_EQ(out, usual); // empty is unset
}
