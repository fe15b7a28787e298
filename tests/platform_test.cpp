// The bounds of the stand-in's shared-memory library.
#include "harness.h"

#include <cerrno>
#include <dlfcn.h>
#include <gtest/gtest.h>

TEST(StandIn, CopiesExactlyTheBytesAskedForOrNone) {
    if (getenv("ORBEL_TEST_BUILD") != nullptr) {
        GTEST_SKIP() << "only a library of the driver's own build can be called from it";
    }
    void *library = dlopen((buildFolder() + "/libtolmshm.so").c_str(), RTLD_NOW);
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
