// The bounds of the stand-in's shared-memory library.
#include "harness.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>

TEST(StandIn, CopiesExactlyTheBytesAskedForOrNone) {
    // Of the driver's own build, since it is called from here.
    void *library = dlopen(DEFAULT_BUILD "/libtolmshm.so", RTLD_NOW);
    ASSERT_NE(library, nullptr) << dlerror();
    using Copy = int (*)(int32_t, uint8_t *, int32_t, int32_t);
    const auto read = reinterpret_cast<Copy>(dlsym(library, "Tolm_shm_memread"));
    const auto write = reinterpret_cast<Copy>(dlsym(library, "Tolm_shm_memwrite"));

    Machine machine;
    setenv("TOLM_SHM_DIR", machine.folder.c_str(), 1);
    const struct {
        int section, offset, length, result;
    } cases[] = {
        {8, 0, 224, 0},       {8, 223, 1, 0},       {8, 224, 0, 0},
        {8, 224, 1, -ERANGE}, {8, 1, 224, -ERANGE}, {8, 2147483647, 2147483647, -ERANGE},
        {8, -1, 1, -EINVAL},  {8, 0, -1, -EINVAL},  {9, 0, 1, -ENOENT},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.section << " " << c.offset << " " << c.length);
        const size_t copied = c.result == 0 ? static_cast<size_t>(c.length) : 0;
        machine.fill(0x11);
        Bytes buffer(300, 0x22);
        EXPECT_EQ(read(c.section, buffer.data(), c.offset, c.length), c.result);
        Bytes expected(300, 0x22);
        std::fill_n(expected.begin(), copied, uint8_t{0x11});
        EXPECT_EQ(buffer, expected);

        std::fill(buffer.begin(), buffer.end(), uint8_t{0x33});
        EXPECT_EQ(write(c.section, buffer.data(), c.offset, c.length), c.result);
        expected.assign(224, 0x11);
        std::fill_n(expected.begin() + (copied != 0 ? c.offset : 0), copied, uint8_t{0x33});
        EXPECT_EQ(machine.contents(8), expected);
    }
    dlclose(library);
}

TEST(StandIn, FillsSectionsButLeavesExistingOnesAlone) {
    Machine machine;
    const auto fill = [&](const std::string &option) {
        const std::string command =
            "TOLM_SHM_DIR=" + machine.folder + " " DEFAULT_BUILD "/tolmfill";
        return WEXITSTATUS(system((command + option + " >/dev/null").c_str()));
    };
    EXPECT_EQ(fill(""), 2);
    EXPECT_EQ(machine.contents(8), Bytes(224, 0));
    EXPECT_EQ(fill(" --force"), 0);
    for (const auto &[section, size] : {std::pair{6, 30277U}, {7, 10212U}, {8, 224U}, {39, 803U}}) {
        EXPECT_EQ(machine.contents(section).size(), size);
    }
    for (const char *option : {"-d", "-r", "-c", "-u"}) {
        EXPECT_EQ(machine.run({option}).out.find(" 0\n"), std::string::npos) << option;
    }
    EXPECT_NE(machine.run({"-e"}).out.find("u16VinDCMax"), std::string::npos);
}
