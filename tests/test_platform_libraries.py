"""Builds with a vendor's headers and libraries: what is accepted, and what configuring says of the rest."""
import os
import subprocess

import pytest
from harness import ROOT

SHM = """#include <stdint.h>
int Tolm_shm_memread(int32_t section, uint8_t *buffer, int32_t offset, int32_t length);
int Tolm_shm_memwrite(int32_t section, const uint8_t *buffer, int32_t offset, int32_t length);
"""
DATA = "#include <stdint.h>\nconst char *policyTypeToString(int16_t policy);\n"
MACROS = "offset size id length name result section buffer newline source byte bytes min line policy"
HEADERS = {
    "plain": (SHM, DATA),
    "C alone": (SHM + """#include <stdlib.h>
struct tolm { int class; int new; };
static inline _Bool tolm_is(const char *restrict text) { return text[0] != 0; }
static inline int tolm_first(const int values[static 1]) { return values[0]; }
static inline uint8_t *tolm_copy(size_t n) { uint8_t *p = malloc(n); return p; }
""", DATA),
    "macros": (SHM + "".join(f"#define {name} {name} is no expression\n" for name in MACROS.split()),
               DATA + "#define policy 1 +\n"),
    "data includes shm": ("struct tolm { int number; };\n" + SHM, '#include "shm.h"\n' + DATA),
    "enum": ("enum tolm { TOLM_GLOBAL = 39 };\n" + SHM.replace("int32_t section", "enum tolm section"), DATA),
    "unsigned": (SHM.replace("int32_t", "unsigned"), DATA.replace("int16_t", "unsigned")),
    "size_t": ("#include <stddef.h>\n" + SHM.replace("int32_t offset, int32_t", "size_t offset, size_t"), DATA),
    "char *": (SHM.replace("uint8_t", "char"), DATA.replace("const char", "char")),
    "void *": (SHM.replace("uint8_t", "void"), DATA.replace("const char", "const unsigned char")),
}
LIBRARY_SHM = """#include <string.h>
extern int tolm_open(void);
int Tolm_shm_memread(int section, char *buffer, int offset, int length) {
    memset(buffer, 0, length);
    return section + offset < 0 ? -1 : tolm_open();
}
int Tolm_shm_memwrite(void) { return 0; }
"""
LIBRARY_DATA = """#include <math.h>
extern double tolm_scale(double);
const char *policyTypeToString(int policy) { return cos(tolm_scale(policy)) > 2 ? "" : "VENDOR"; }
"""
OPEN = "int tolm_open(void) { return 0; }\n"


class Vendor:
    """A vendor's headers and libraries in a directory, and builds with them."""

    def __init__(self, directory):
        self.directory = directory
        self.settings = {"PLATFORM_INCLUDE_DIR": directory, "PLATFORM_SHM_HEADER": "shm.h",
                         "PLATFORM_DATA_HEADER": "data.h", "PLATFORM_SHM_LIBRARY": directory / "libvendorshm.so",
                         "PLATFORM_DATA_LIBRARY": directory / "libvendordata.so"}
        self.write("shm.h", SHM)
        self.write("data.h", DATA)
        self.library("libvendorshm.so", LIBRARY_SHM + OPEN)
        self.library("libvendordata.so", 'const char *policyTypeToString(int policy) { return "V" + policy * 0; }\n')

    def write(self, name, text):
        path = self.directory / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)
        return path

    def library(self, name, code, *flags):
        source = self.write(name + ".c", code)
        made = self.directory / name
        if made.suffix == ".a":
            subprocess.run(["gcc", "-c", "-fPIC", source, "-o", str(made) + ".o"], check=True)
            subprocess.run(["ar", "rc", made, str(made) + ".o"], check=True)
        else:
            options = [f"-Wl,-soname,{made.name}", "-o", made, *flags]
            subprocess.run(["gcc", "-shared", "-fPIC", source, *options], check=True)
        return made

    def configure(self, **settings):
        """What configuring says, on one line, and its status."""
        given = [f"-D{key}={value}" for key, value in {**self.settings, **settings}.items()]
        run = subprocess.run(["cmake", "-S", ROOT, "-B", self.directory / "build", *given], capture_output=True,
                             text=True)
        return " ".join(run.stderr.split()), run.returncode

    def make(self, *targets):
        run = subprocess.run(["cmake", "--build", self.directory / "build", "-j2", "--target", *targets],
                             capture_output=True, text=True)
        assert run.returncode == 0, run.stdout + run.stderr


@pytest.fixture(name="vendor")
def make_vendor(tmp_path):
    return Vendor(tmp_path)


@pytest.mark.parametrize("name", HEADERS)
def test_headers_that_are_accepted(vendor, name):
    shm, data = HEADERS[name]
    vendor.write("shm.h", shm)
    vendor.write("data.h", data)
    errors, status = vendor.configure(CMAKE_COMPILE_WARNING_AS_ERROR="ON", CMAKE_C_FLAGS="-Wall -Wextra")
    assert (status, errors) == (0, "")
    vendor.make("src/shm/platform_shm.o", "src/shm/platform_data.o")


@pytest.mark.parametrize("variable, value, sentence", [
    ("INCLUDE_DIR", "/nowhere", "there is no directory /nowhere"),
    ("SHM_HEADER", "no.h", "no.h cannot be used: error: no.h: No such"),
    ("SHM_HEADER", "int\n", "bad.h cannot be used: error: "),
    ("SHM_HEADER", SHM.replace("memwrite", "memcopy"), "bad.h cannot be used: error: implicit declaration of function"),
    ("SHM_HEADER", SHM.replace(", int32_t length", ""), "bad.h cannot be used: error: too many arguments to function"),
    ("DATA_HEADER", SHM, "bad.h cannot be used: error: implicit declaration"),
    ("SHM_LIBRARY", "/no/lib.so", "there is no file /no/lib.so"),
    ("SHM_LIBRARY", "", "name both of the platform's libraries"),
    ("DATA_LIBRARY", "nowhere", "nowhere cannot be linked with: cannot find -lnowhere"),
    ("DATA_LIBRARY", "m", "m lacks a function: undefined reference to `policyTypeToString'"),
    ("SHM_LIBRARY", "m", "m lacks a function: undefined reference to `Tolm_shm_memread'"),
    ("EXTRA_LIBRARIES", "m;nowhere", "nowhere cannot be linked with: cannot find -lnowhere"),
])
def test_mistakes_end_in_a_sentence(vendor, variable, value, sentence):
    """A value that has a line end is a header's text."""
    vendor.write("bad.h", value)
    errors, status = vendor.configure(**{f"PLATFORM_{variable}": "bad.h" if "\n" in value else value})
    assert status == 1
    assert f"PLATFORM_{variable}: {sentence}" in errors


def test_libraries_with_needs_of_their_own(vendor):
    """A shared library that needs one elsewhere, and a static one that needs another."""
    elsewhere = vendor.library("elsewhere/libopen.so", OPEN)
    shared = vendor.library("libvendorshm.so", LIBRARY_SHM, f"-L{elsewhere.parent}", "-lopen")
    static = vendor.library("libvendordata.a", LIBRARY_DATA)
    scale = vendor.library("libscale.a", "double tolm_scale(double x) { return 2 * x; }\n")
    named = {"PLATFORM_SHM_LIBRARY": shared, "PLATFORM_DATA_LIBRARY": static}
    errors, status = vendor.configure(**named)
    assert status == 1
    assert "PLATFORM_EXTRA_LIBRARIES: a library is missing: " in errors
    errors, status = vendor.configure(PLATFORM_EXTRA_LIBRARIES=f"{scale};{elsewhere};m", **named)
    assert (status, errors) == (0, "")
    vendor.make("orbelstatprobe")
    program = vendor.directory / "build" / "orbelstatprobe"
    plain = {key: value for key, value in os.environ.items() if not key.startswith("LD_")}
    out = subprocess.run([program, "-u", "-p", "3"], env=plain, capture_output=True, text=True, check=True)
    assert "\n VENDOR(3).state ----- 0\n" in out.stdout
