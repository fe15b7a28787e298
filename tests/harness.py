"""Runs the built programs as a user does, with the test's own sections in the shared memory and the recorder
between a program and the platform's libraries."""
import difflib
import functools
import pathlib
import re
import struct
import subprocess
import tempfile
from dataclasses import dataclass

import pexpect
import pytest

ROOT = pathlib.Path(__file__).resolve().parent.parent
GOLDEN = ROOT / "tests/golden"
SOURCES = [file for pattern in ("*.txt", "tests/*.c*", "cmake/*", "demo/*", "standin/*", "orbelstatctl/*", "src/*/*")
           for file in ROOT.glob(pattern)]
# Builds for tests that load a library into Python (native) or make malloc fail (unsanitized).
unsanitized = pytest.mark.builds(lambda build: "-fsanitize" not in build.flags)
native = pytest.mark.builds(lambda build: "-fsanitize" not in build.flags and not build.emulator)
CODES = {"u8": "B", "u16": "H", "u32": "I", "u64": "Q", "i16": "h", "i32": "i", "time32": "I", "float": "f",
         "double": "d"}


class Field:
    """One line of `orbelstatctl list -a`. `name` is the path without indices."""

    def __init__(self, path, kind, section, offset, bounds=""):
        self.path, self.section, self.offset = path, int(section), int(offset)
        self.name = re.sub(r"\[\d+\]", "", path)
        self.root = re.match(r"\w+", path)[0]
        self.is_text, self.is_bytes = kind.startswith("char"), kind.startswith("byte")
        self.is_real = kind in ("float", "double")
        self.form = "<" + (kind[5:-1] + "s" if self.is_text or self.is_bytes else CODES[kind])
        self.size = struct.calcsize(self.form)
        maximum = bounds.partition("..")[2]  # "" if it may not be written
        self.maximum = maximum and (float(maximum) if self.is_real else int(maximum))

    def pack(self, value):
        return struct.pack(self.form, value)

    def unpack(self, data):
        return struct.unpack(self.form, data)[0]


@dataclass
class Outcome:
    out: str
    err: str
    status: int
    calls: list  # of the platform's libraries, as the recorder writes them
    pieces: list  # of a dialogue

    def only(self, kind):
        """The calls that begin with "read", "write" or "name"."""
        return [call for call in self.calls if call.startswith(kind)]


class Build:
    """A directory of programs: build/NAME or, if the name contains a slash, one that was configured by hand."""

    def __init__(self, name):
        self.directory = pathlib.Path(name).resolve() if "/" in name else ROOT / "build" / name
        self.program = str(self.directory / "orbelstatprobe")
        stamp, newest = self.directory / "built", max(SOURCES, key=lambda file: file.stat().st_mtime)
        if not stamp.exists() or stamp.stat().st_mtime < newest.stat().st_mtime:
            raise pytest.UsageError(f"{self.directory} is not built, or older than {newest}: run scripts/test {name}")
        self.flags = "".join(re.findall("^CMAKE_.*FLAGS.*", (self.directory / "CMakeCache.txt").read_text(), re.M))
        is_arm = pathlib.Path(self.program).read_bytes()[18] == 0xB7
        self.emulator = ["qemu-aarch64", "-L", "/usr/aarch64-linux-gnu"] if is_arm else []

    def command(self, program, *arguments, **settings):
        """The command line that runs a program with these environment variables; those that are None are unset."""
        # The emulator interprets some variables of its environment itself.
        unset, assign = ("-U", ["-E"]) if self.emulator else ("-u", [])
        words = self.emulator.copy() or ["env"]
        for name, value in sorted(settings.items(), key=lambda item: item[1] is not None):
            words += [unset, name] if value is None else [*assign, f"{name}={value}"]
        return [*words, str(self.directory / program), *arguments]

    @functools.cached_property
    def fields(self):
        """All fields of the sections, by their paths."""
        lines = subprocess.check_output(self.command("orbelstatctl", "list", "-a"), text=True).splitlines()
        return {line.partition("\t")[0]: Field(*line.split("\t")) for line in lines if "\t-\t" not in line}

    @functools.cached_property
    def help(self):
        """The help texts of orbelstatctl by command; "" for the program's own."""
        def text(*words):
            return subprocess.check_output(self.command("orbelstatctl", *words, "--help"), text=True)
        commands = re.findall(r"^  (\w+) +[A-Z]", text(), re.M)
        return {"": text(), **{command: text(command) for command in commands}}

    @functools.cached_property
    def writable(self):
        """The last element of each field that may be written, by name."""
        return {field.name: field for field in self.fields.values() if field.maximum}

    @functools.cached_property
    def roots(self):
        return list(dict.fromkeys(field.root for field in self.fields.values()))

    @functools.cached_property
    def sizes(self):
        """The sizes of the sections, by their numbers."""
        with tempfile.TemporaryDirectory() as directory:
            subprocess.check_output(self.command("tolmfill", TOLM_SHM_DIR=directory))
            return {int(file.name[8:]): file.stat().st_size for file in pathlib.Path(directory).iterdir()}

    @functools.cached_property
    def pattern(self):
        """Sections that reach every bit and in which no two neighbours and hardly any two words are alike. They have no
        newlines, and their floating point numbers and UPM timestamp are plausible."""
        sections = {}
        for section, size in self.sizes.items():
            state, data = section, bytearray()
            while len(data) < size:
                state = (state * 1664525 + 1013904223) % 2**32
                byte = state >> 24
                if byte != ord("\n") and data[-1:] != bytes([byte]):
                    data.append(byte)
            sections[section] = data
        for field in self.fields.values():
            if field.is_real:
                bits, = struct.unpack_from("<i", sections[field.section], field.offset)
                struct.pack_into(field.form, sections[field.section], field.offset, (bits >> 8) / 4096)
        struct.pack_into("<Q", sections[6], self.fields["upm.timestamp"].offset, 1700000000007)
        return sections


class Sandbox:
    """Sections in a directory, "section-<n>", zeros at first, and the programs of a build."""
    is_recording = False

    def __init__(self, build, directory):
        self.build, self.directory = build, directory
        self.environment = {}  # added to the program's
        self.calls = pathlib.Path(directory, "calls")
        self.fill(0)

    def path(self, section):
        return pathlib.Path(self.directory, f"section-{section}")

    def contents(self, section):
        return self.path(section).read_bytes()

    def bytes_of(self, field):
        return self.contents(field.section)[field.offset:field.offset + field.size]

    def fill(self, byte):
        for section, size in self.build.sizes.items():
            self.path(section).write_bytes(bytes([byte]) * size)

    def fill_with_pattern(self):
        for section, data in self.build.pattern.items():
            self.path(section).write_bytes(data)

    def poke(self, section, offset, data):
        with open(self.path(section), "r+b") as file:
            file.seek(offset)
            file.write(data)

    def set(self, path, value):
        """Pokes a number, or bytes, into a field."""
        field = self.build.fields[path]
        self.poke(field.section, field.offset, value if isinstance(value, bytes) else field.pack(value))

    def command(self, program, arguments, redirections):
        if "FAIL_MALLOC" in self.environment and "-fsanitize" in self.build.flags:
            pytest.skip("sanitizers have a malloc of their own")
        self.calls.write_text("")
        settings = {"TZ": "UTC", "TOLM_SHM_DIR": self.directory, "RECORD": self.calls,
                    "LD_PRELOAD": "$ORIGIN/librecorder.so",  # a path with blanks would be taken apart
                    "ASAN_OPTIONS": "verify_asan_link_order=0:exitcode=99", "UBSAN_OPTIONS": "exitcode=99",
                    **self.environment}
        shell = ["sh", "-c", redirections + ' exec "$@"', "sh"] if redirections else []
        limit = ["timeout", "--foreground", "-s", "KILL", "100"]  # a program that hangs is killed
        return [*limit, *shell, *self.build.command(program, *arguments, **settings)]

    def outcome(self, out, err, status, pieces=()):
        return Outcome(out, err, status, self.calls.read_text("latin-1").splitlines(), pieces)

    def run(self, *arguments, program="orbelstatprobe", typed="1\n2\ny\n5\n", redirections=""):
        """Standard input is not a terminal: the wizard may not read it. `redirections` are shell commands that come
        before the program."""
        result = subprocess.run(self.command(program, arguments, redirections), input=typed.encode("latin-1"),
                                capture_output=True)
        return self.outcome(result.stdout.decode("latin-1"), result.stderr.decode("latin-1"), result.returncode)

    def run_on_terminal(self, *arguments, program="orbelstatprobe", typed="", redirections=""):
        """Types each line at a prompt, on a terminal with echo, as a person sees it. "\\4\\4" is the end of input, even
        in mid-line, and follows the last line. `pieces` of the outcome end at the prompts: each but the first begins
        with a line that was typed."""
        # The shell stays until everything is read: text may get lost when a terminal's last user exits.
        shell = ["sh", "-c", '"$@"; printf "\\1%d\\1" $?; read -r end', "sh"]
        child = pexpect.spawn(shell[0], [*shell[1:], *self.command(program, arguments, redirections)], timeout=100,
                              encoding="latin-1")
        child.delaybeforesend = None
        lines, pieces = iter(re.findall("[^\n\4]*(?:\n|\4\4)", typed + "\4\4")), []
        while child.expect([r"(?:\.\.\S+|y/n)\]: ", "\1(\\d+)\1"]) == 0:
            pieces.append((child.before + child.after).replace("\r\n", "\n"))
            child.send(next(lines, ""))
        pieces.append(child.before.replace("\r\n", "\n"))
        child.close(force=True)
        return self.outcome("".join(pieces), "", int(child.match[1]), pieces)


def lines_of(text):
    """Splits a text into lines, with their newlines. Unlike splitlines, does not split at other characters."""
    return re.findall(".*\n|.+", text)


def as_printable(text):
    r"""Replaces each byte that is not printable, and each backslash, by \xNN."""
    return re.sub(r"[^\n\t -\[\]-~]", lambda match: rf"\x{ord(match[0]):02x}", text)


def folded(text):
    r"""Puts the elements of an array on one line, and "\n" at the end of a line for the empty line after it."""
    def elements(match):
        indices, values = zip(*re.findall(r"\[(\d+)\]" + re.escape(match[3]) + "(.*)\n", match[0]))
        return f"{match[1]}[{', '.join(indices)}]{match[3]}{', '.join(values)}\n"
    text = re.sub(r"^(.*)\[(\d+)\](.*-+ )(.*)\n(?:\1\[\d+\]\3.*\n)+", elements, text, flags=re.M)
    return re.sub("(?<=.)\n\n", r"\\n\n", text)


def golden(name):
    return (GOLDEN / name).read_text()


# The forms of options, such as "-u -p <index>", without "-w", the heading of the writes.
FORMS = re.findall("^ +orbelstatprobe (-(?!w$).+?)(?:  .*)?$", golden("usage.txt"), re.M)


# What to do if a golden file differs that is not recorded.
HINTS = {"list.txt": "tests/golden/list.txt is written by hand: one line per member. A member that only this file has "
                     "lacks its ROW in src, or its table in orbelstatctl/tree.cpp.",
         "demo-zeros.txt": "Give each new field a value in demo/demo_*.cpp. Only if that has to be 0, add the field to "
                           "tests/golden/demo-zeros.txt by hand."}


def fail_if_different(expected, text, name):
    if expected != text:
        lines = difflib.unified_diff(expected.split("\n"), text.split("\n"), name, "the program", lineterm="")
        hint = HINTS.get(name, "If the new output is right, record it: scripts/test release -- --record")
        pytest.fail("\n".join([*lines, hint]), pytrace=False)


def compare_with_golden(name, text):
    text = folded(as_printable(text))
    if Sandbox.is_recording:
        (GOLDEN / name).write_text(text)
    fail_if_different(golden(name), text, name)


def entries_of(name):
    """Maps the command of each line "$ COMMAND ->" in a transcript to the text that follows."""
    _, *parts = re.split(r"^\$ (.*?) ->(?: |$)", golden(name), flags=re.M)
    entries = dict(zip(parts[::2], parts[1::2]))
    if len(entries) < len(re.findall(r"^\$ ", golden(name), re.M)):
        raise pytest.UsageError(f"tests/golden/{name}: two entries are alike, or one has no ->; no test reads them")
    return entries


def compare_with_entry(name, command, happened, text):
    """`happened` follows the arrow. Output of one line follows "|"."""
    text = as_printable(text) + ("" if not text or text.endswith("\n") else "(no newline)\n")
    text = happened + (" | " if text.count("\n") == 1 else "\n") + text
    entries = entries_of(name)
    if Sandbox.is_recording:
        entries[command] = text
        (GOLDEN / name).write_text("".join(f"$ {key} -> {text}" for key, text in entries.items()))
    fail_if_different(entries[command], text, f"{name}: {command}")


def settings_and_words(command):
    """Splits "NAME=VALUE...; WORDS", of which the first part may be missing, and undoes escapes."""
    settings, _, words = command.rpartition("; ")
    words = re.sub(r"\\x(..)", lambda match: chr(int(match[1], 16)), words)
    return dict(setting.split("=", 1) for setting in settings.split()), words
