"""Tables that compile or do not, and properties of the built programs."""
import os
import re
import shutil
import subprocess

import pytest
from harness import ROOT

RECORD = """#include "rows/row.h"
struct __attribute__((packed)) Inner { uint16_t number; };
struct __attribute__((packed)) Outer { Inner inner; };
struct __attribute__((packed)) Record {
    uint8_t byte; uint16_t words[4]; int16_t small; uint32_t large; char text[8]; std::byte raw[8]; bool flag;
    Inner inner; Outer outer; uint64_t huge; float real; double twice;
};
struct __attribute__((packed)) Wide { uint32_t first; uint16_t beyond; };
inline constexpr Row innerRows[] = {ROW(Inner, number)};
inline constexpr Row outerRows[] = {GROUP(Outer, inner, innerRows)};
inline constexpr Row wideRows[] = {ROW(Wide, beyond)};
"""
RIGHT = """ROW(Record, byte).as(Format::hex).asFlag(), ROW(Record, words).as(Format::hexList4),
    ROW(Record, small).truncatingUpTo(100000).as(Format::signExtended), ROW(Record, large).upTo(UINT32_MAX), ROW(Record, twice).upTo(9),
    ROW(Record, text).verbatim("text "), ROW(Record, raw), GROUP(Record, inner, innerRows), line("--")"""
FORMAT = "the row already has a format, or the format does not suit the member"
BOUND = "the row already has a bound, or its member cannot have one"
STRUCT = "the nested rows belong to another struct, or nest rows themselves"
GROUPS = "a struct needs GROUP and the rows of its members, any other member needs ROW"


def compiled(declaration):
    command = ["g++", "-std=c++20", "-fsyntax-only", "-I", "src", "-x", "c++", "-"]
    return subprocess.run(command, cwd=ROOT, input=RECORD + declaration, text=True, capture_output=True,
                          env={**os.environ, "LC_ALL": "C"})


def test_a_right_table_compiles():
    assert compiled(f"constexpr Row rows[] = {{{RIGHT}}}; "
                    'constexpr const Row *row = findRow(rows, "large");').stderr == ""


@pytest.mark.parametrize("row, reason", [
    ("ROW(Record, small).as(Format::signedDecimal)", FORMAT),
    ("ROW(Record, large).as(Format::signExtended)", FORMAT),
    ("ROW(Record, words).as(Format::hexListAndText)", FORMAT),
    ("ROW(Record, byte).as(Format::hexList)", FORMAT),
    ("ROW(Record, byte).as(Format::hex).as(Format::threePlaces)", FORMAT),
    ("ROW(Record, byte).upTo(256)", "the member cannot hold the bound"),
    ("ROW(Record, small).upTo(32768)", "the member cannot hold the bound"),
    ("ROW(Record, byte).upTo(1).upTo(2)", BOUND),
    ("ROW(Record, text).upTo(1)", BOUND),
    ("ROW(Record, raw).upTo(1)", BOUND),
    ("ROW(Record, huge).upTo(1)", BOUND),
    ("ROW(Record, real).upTo(1)", BOUND),
    ("ROW(Record, raw).as(Format::decimalList)", FORMAT),
    ("GROUP(Record, inner, innerRows).truncatingUpTo(1)", BOUND),
    ('line("--").upTo(1)', BOUND),
    ("ROW(Record, inner)", GROUPS),
    ("GROUP(Record, large, innerRows)", GROUPS),
    ("GROUP(Record, outer, outerRows)", STRUCT),
    ("GROUP(Record, inner, wideRows)", STRUCT),
    ("ROW(Record, flag)", "unsupported member type"),
    ('*findRow(innerRows, "missing")', "no row has this path"),
])
def test_a_wrong_row_does_not_compile(row, reason):
    result = compiled(f"constexpr Row row = {row};")
    assert result.returncode != 0
    assert reason in result.stderr


@pytest.mark.builds(lambda build: "-D_FORTIFY_SOURCE=3" in build.flags)
@pytest.mark.parametrize("program", ["orbelstatprobe", "orbelstatctl"])
def test_programs_are_hardened(build, program):
    tool = f"{'aarch64' if build.emulator else 'x86_64'}-linux-gnu-objdump"
    text = subprocess.check_output([tool, "-pTd", build.directory / program], text=True)
    # The linker leaves out the control-flow note because the C library's start-up files lack it. Only
    # orbelstatprobe on amd64 has a frame that is large enough to be probed in steps.
    for pattern in ("RELRO", r"STACK.*\n.* rw-\n", r"FLAGS_1 +0x0*8000001\n", r"RUNPATH +[$]ORIGIN\n", "__stack_chk_fail",
                    r"__\w*printf_chk", *([r"\spaciasp", r"\sbti\s"] if build.emulator else [r"<main>:\n.*endbr64"])):
        assert re.search(pattern, text), pattern
    assert build.emulator or program != "orbelstatprobe" or re.search(r"orq +\$0x0,\S*\(%rsp", text)
    if program == "orbelstatprobe":  # start-up time depends mostly on the libraries that are loaded
        needed = re.findall(r"NEEDED +(?!ld-)(\S+)", text)
        assert needed == ["libtolmshm.so.1", "libtolmdata.so.1", "libc.so.6"]


@pytest.mark.parametrize("setting, status", [("", 0), ("ON", 1)])
def test_the_probe_is_built_alone_without_nlohmann_json(tmp_path, setting, status):
    """And by a later C++ standard, if one is set."""
    command = ["cmake", "-S", ROOT, "-B", tmp_path, "-DBUILD_TESTING=OFF", f"-DORBELSTATCTL={setting}",
               "-DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON", "-DCMAKE_CXX_STANDARD=23",
               "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON"]
    result = subprocess.run(command, capture_output=True, text=True)
    assert result.returncode == status
    assert ("orbelstatctl is not built: it needs nlohmann/json 3.9 or later (nlohmann-json3-dev)"
            in " ".join(result.stderr.split()))
    if status == 0:
        targets = subprocess.check_output(["cmake", "--build", tmp_path, "--target", "help"], text=True)
        assert "orbelstatprobe" in targets and "orbelstatctl" not in targets
        assert set(re.findall("-std=.*?(..) ", (tmp_path / "compile_commands.json").read_text())) == {"23"}


def test_no_build_in_the_source_directory(tmp_path):
    shutil.copy(ROOT / "CMakeLists.txt", tmp_path)
    result = subprocess.run(["cmake", "."], cwd=tmp_path, capture_output=True, text=True)
    assert "The programs cannot be built in the source directory" in result.stderr


def test_installed_programs_start_anywhere(build, tmp_path):
    prefix = tmp_path / "elsewhere"
    subprocess.run(["cmake", "--install", build.directory, "--prefix", prefix], check=True)
    moved = prefix.rename(tmp_path / "moved")
    for program in ("orbelstatprobe", "orbelstatctl"):
        assert subprocess.check_output(build.command(moved / "bin" / program, "-h"))


def test_random_inputs_find_no_fault(build):
    """The fuzzer's own program, with inputs that are the same each time."""
    result = subprocess.run(build.command("tests/fuzz"), capture_output=True, encoding="latin-1")
    assert result.returncode == 0, result.stderr[-3000:]
