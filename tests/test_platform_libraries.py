"""Builds with a vendor's headers and libraries: which are accepted, and the messages about the others."""
import os
import re
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
LACKS = "this library lacks a function that src/shm calls"
CANNOT_COMPILE, CANNOT_USE = "src/shm cannot be compiled with this header", "the linker cannot use"


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
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def library(self, name, code, *flags, has_soname=True):
        source = self.write(name + ".c", code)
        made = self.directory / name
        if made.suffix == ".a":
            subprocess.run(["gcc", "-c", "-fPIC", source, "-o", str(made) + ".o"], check=True)
            subprocess.run(["ar", "rc", made, str(made) + ".o"], check=True)
        else:
            options = [f"-Wl,-soname,{made.name}"] * has_soname + ["-o", made, *flags]
            subprocess.run(["gcc", "-shared", "-fPIC", source, *options], check=True)
        return made

    def configure(self, **settings):
        """Returns what configuring prints on standard error, on one line, and its status."""
        given = [f"-D{key}={value}" for key, value in {**self.settings, **settings}.items()]
        result = subprocess.run(["cmake", "-S", ROOT, "-B", self.directory / "build", *given], capture_output=True,
                                text=True, env={**os.environ, "LIBRARY_PATH": str(self.directory)})
        return " ".join(result.stderr.split()), result.returncode

    def make(self, *targets):
        """Builds without the LIBRARY_PATH that configuring had."""
        run = subprocess.run(["cmake", "--build", self.directory / "build", "-j2", "--target", *targets],
                             capture_output=True, text=True)
        assert run.returncode == 0, run.stdout + run.stderr


@pytest.fixture(name="vendor")
def make_vendor(tmp_path):
    return Vendor(tmp_path / "with blank")


@pytest.mark.parametrize("name", HEADERS)
def test_headers_that_are_accepted(vendor, name):
    shm, data = HEADERS[name]
    vendor.write("shm.h", shm)
    vendor.write("data.h", data)
    errors, status = vendor.configure(CMAKE_COMPILE_WARNING_AS_ERROR="ON", CMAKE_C_FLAGS="-Wall -Wextra")
    assert (status, errors) == (0, "")
    vendor.make("src/shm/platform_shm.o", "src/shm/platform_data.o")


@pytest.mark.parametrize("settings, sentence, output", [
    (dict(INCLUDE_DIR="/nowhere"), "there is no directory /nowhere", ""),
    (dict(SHM_HEADER="no.h"), f"{CANNOT_COMPILE}, which is not in PLATFORM_INCLUDE_DIR=", "error: no.h: No such"),
    (dict(SHM_HEADER="int\n"), CANNOT_COMPILE, "error: "),
    (dict(SHM_HEADER=SHM.replace("memwrite", "memcopy")), CANNOT_COMPILE, "error: implicit declaration of function"),
    (dict(SHM_HEADER=SHM.replace(", int32_t length", "")), CANNOT_COMPILE, "error: too many arguments to function"),
    (dict(DATA_HEADER=SHM), CANNOT_COMPILE, "error: implicit declaration"),
    (dict(SHM_LIBRARY="/no/lib.so"), "there is no file /no/lib.so", ""),
    (dict(SHM_LIBRARY="relative/lib.so"), "there is no file /", ""),
    (dict(SHM_LIBRARY=""), "set both PLATFORM_SHM_LIBRARY and PLATFORM_DATA_LIBRARY", ""),
    (dict(SHM_LIBRARY="", DATA_LIBRARY="", INCLUDE_DIR=""), "set both", ""),
    (dict(SHM_LIBRARY="libtext.so"), CANNOT_USE, "libtext.so"),
    (dict(DATA_LIBRARY="libother.so"), CANNOT_USE, "file in wrong format"),
    (dict(DATA_LIBRARY="nowhere"), CANNOT_USE, "cannot find -lnowhere"),
    (dict(DATA_LIBRARY="m"), f"{LACKS}, or PLATFORM_EXTRA_LIBRARIES= lacks one", "undefined reference to `policyType"),
    (dict(SHM_LIBRARY="libhalf.so"), f"{LACKS} Change Dir:", "undefined reference to `Tolm_shm_memwrite'"),
    (dict(SHM_LIBRARY="libvendordata.so", DATA_LIBRARY="libvendorshm.so"), LACKS, "`Tolm_shm_memread'"),
    (dict(EXTRA_LIBRARIES="m;nowhere"), CANNOT_USE, "cannot find -lnowhere"),
    (dict(EXTRA_LIBRARIES="m;relative/lib.so"), "relative/lib.so is not an absolute path", ""),
])
def test_configure_names_the_wrong_setting(vendor, settings, sentence, output):
    """The first setting is wrong. A value with a newline is the text of a header, "lib..." the vendor's file."""
    vendor.write("libtext.so", "not a library\n")
    other = bytearray((vendor.directory / "libvendordata.so").read_bytes())
    other[18] ^= 0xFF  # the architecture
    (vendor.directory / "libother.so").write_bytes(other)
    vendor.library("libhalf.so", "int Tolm_shm_memread(void) { return 0; }\n")
    for variable, value in settings.items():
        if "\n" in value:
            settings = {variable: vendor.write("bad.h", value).name}
        elif value.startswith("lib"):
            settings = {**settings, variable: vendor.directory / value}
    errors, status = vendor.configure(**{f"PLATFORM_{variable}": value for variable, value in settings.items()})
    assert status == 1
    assert re.search(rf"\(message\): PLATFORM_{list(settings)[0]}=[^:]*: {sentence}.*{output}", errors), errors


def test_libraries_with_dependencies(vendor):
    """A shared library that needs one in another directory, and a static one, given by name, that needs another."""
    elsewhere = vendor.library("elsewhere/libopen.so", OPEN, has_soname=False)
    shared = vendor.library("libvendorshm.so", LIBRARY_SHM, f"-L{elsewhere.parent}", "-lopen")
    vendor.library("libstaticdata.a", LIBRARY_DATA)
    scale = vendor.library("libscale.a", "double tolm_scale(double x) { return 2 * x; }\n")
    named = {"PLATFORM_SHM_LIBRARY": shared, "PLATFORM_DATA_LIBRARY": "staticdata"}
    for extra, sentence in (elsewhere, "DATA_LIBRARY=staticdata: this library lacks "), (f"{scale};m", "EXTRA_LIBRARIES="):
        errors, status = vendor.configure(PLATFORM_EXTRA_LIBRARIES=extra, **named)
        assert status == 1
        assert f"(message): PLATFORM_{sentence}" in errors
    vendor.write("libopen.so", "in LIBRARY_PATH, but not the library that is named\n")
    errors, status = vendor.configure(PLATFORM_EXTRA_LIBRARIES=f"{scale};{elsewhere};m", **named)
    assert (status, errors) == (0, "")
    vendor.make("orbelstatprobe")
    program = vendor.directory / "build" / "orbelstatprobe"
    plain = {key: value for key, value in os.environ.items() if not key.startswith("LD_")}
    out = subprocess.run([program, "-u", "-p", "3"], env=plain, capture_output=True, text=True, check=True)
    assert "\n VENDOR(3).state ----- 0\n" in out.stdout
