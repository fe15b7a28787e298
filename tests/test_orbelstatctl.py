"""orbelstatctl from outside: what it prints, writes and refuses."""
import itertools
import json
import os
import pathlib
import random
import re
import select
import shlex
import shutil
import signal
import struct
import subprocess
import time

import pytest
from harness import (compare_with_entry, compare_with_golden, entries_of, fail_if_different, golden,
                     settings_and_words, unsanitized)

TRANSCRIPT = "orbelstatctl.txt"
WHOLE = "read 6 0 30277"
STATE = "upm.policies[3].state"
DIMM = "upm.cpuPwrThermal.dimmPwr[0]"


@pytest.fixture(autouse=True)
def demo_data(sandbox):
    sandbox.run("--force", program="tolmfill")


@pytest.fixture
def ctl(sandbox):
    def run(*words, status=0, typed="", redirections="", **environment):
        """A run that must end with the status, and explain itself if that is not 0."""
        sandbox.environment = environment
        outcome = sandbox.run(*words, program="orbelstatctl", typed=typed, redirections=redirections)
        assert outcome.status == status, outcome.err
        assert status == 0 or outcome.err or words[0] == "diff"
        assert all(line.startswith("orbelstatctl: ") for line in outcome.err.splitlines())
        return outcome
    return run


@pytest.fixture
def capture(sandbox, ctl):
    """A capture of the demo data."""
    ctl("save", f"{sandbox.directory}/capture")
    return pathlib.Path(sandbox.directory, "capture")


@pytest.mark.parametrize("command", entries_of(TRANSCRIPT))
def test_answers(sandbox, capture, command):
    """The exit status and the library's calls follow "->". DIRECTORY holds `capture`; `broken`, without names, a
    section missing and one short; and `unnamed`, with one name only and another config.peakHeadroom."""
    for name in "broken", "unnamed":
        shutil.copytree(capture, f"{sandbox.directory}/{name}")
    os.remove(f"{sandbox.directory}/broken/policy-names")
    os.remove(f"{sandbox.directory}/broken/section-7")
    os.truncate(f"{sandbox.directory}/broken/section-8", 100)
    pathlib.Path(sandbox.directory, "unnamed/policy-names").write_text("one name\n")
    with open(f"{sandbox.directory}/unnamed/section-8", "r+b") as file:
        file.write(struct.pack("<f", 1))  # its first field
    sandbox.environment, words = settings_and_words(command.replace("DIRECTORY", sandbox.directory))
    outcome = sandbox.run(*shlex.split(words), program="orbelstatctl")
    calls = "".join(f", {call}" for call, _ in itertools.groupby(outcome.calls))
    text = (outcome.err + outcome.out).replace(sandbox.directory, "DIRECTORY")
    compare_with_entry(TRANSCRIPT, command, f"{outcome.status}{calls}", text)


def test_list_is_what_scripts_rely_on(ctl):
    """Written by hand: of every member its path, type, section, offset and bounds."""
    fail_if_different(golden("list.txt"), ctl("list").out, "list.txt")


def leaves(value, path=""):
    """The numbers and texts in a JSON document, by their paths."""
    if isinstance(value, dict):
        steps = [(f"{path}.{key}".lstrip("."), inner) for key, inner in value.items()]
    elif isinstance(value, list):
        steps = [(f"{path}[{index}]", inner) for index, inner in enumerate(value)]
    else:
        return {path: value}
    return {leaf: number for below, inner in steps for leaf, number in leaves(inner, below).items()}


def as_get_prints(data):
    """A text's bytes as get prints them."""
    special = {10: r"\n", 9: r"\t", 92: r"\\"}
    return "".join(special.get(byte) or (chr(byte) if 32 <= byte <= 126 else rf"\x{byte:02x}") for byte in data)


def test_list_get_and_json_tell_the_same(sandbox, ctl):
    rng = random.Random(1)
    for section, size in sandbox.build.sizes.items():  # numbers that are none, texts without end
        sandbox.poke(section, 0, rng.randbytes(size))
    sandbox.set("psu[0].psuBus.deviceName", b'"\\\x01\x7f\xff\n\t\0after')
    sandbox.set(DIMM, struct.pack("<4d", 0.1, 1e-7, float("nan"), float("-inf")))
    values = leaves(json.loads(ctl("json").out, parse_constant=pytest.fail))
    lines = dict(line.split("=", 1) for line in ctl("get").out.splitlines())
    fields = sandbox.build.fields
    assert list(values) == list(lines) == re.findall(r"^[^\t]+", ctl("list", "-a").out, re.M)
    for path, field in fields.items():
        data = sandbox.bytes_of(field)
        number = field.unpack(data)
        if field.is_text:
            text = data.split(b"\0")[0]
            assert (values[path], lines[path]) == (text.decode("latin-1"), as_get_prints(text))
        elif field.is_bytes:
            assert values[path] == lines[path] == data.hex()
        elif not field.is_real:
            assert (lines[path], values[path]) == (str(number), number), path
        elif values[path] is None:
            assert lines[path].lstrip("-") == str(abs(number)) in ("nan", "inf"), path
        else:
            assert (field.pack(float(lines[path])), values[path]) == (data, float(lines[path])), path


@pytest.mark.parametrize("number, text", [
    (0, "0"), (-0.0, "-0"), (0.1, "0.1"), (5e-324, "5e-324"), (1e-5, "0.00001"), (9.99e-6, "9.99e-06"),
    (1e9, "1000000000"), (123456.789, "123456.789"), (9999999999999998, "9999999999999998"), (1e16, "1e+16"),
    (-1.5e300, "-1.5e+300")])
def test_numbers_have_the_fewest_digits_that_read_back(sandbox, ctl, number, text):
    sandbox.set(DIMM, number)
    assert ctl("get", "-n", DIMM).out == text + "\n"


def test_very_long_arguments_are_rejected(ctl):
    for words, typed in (["get", "x" * 100000], ""), (["set", "-"], "psu[" + "9" * 200000 + "]=1\n"):
        assert ctl(*words, typed=typed, status=2).err.endswith(": no such field\n")


def test_a_table_is_aligned_on_a_terminal(sandbox):
    outcome = sandbox.run_on_terminal("table", "upm.policies[9..10]", "name", "state", "policyPowerLimit", "SFOffset",
                                      program="orbelstatctl")
    assert outcome.out == ("policies  name       state  policyPowerLimit  SFOffset\n"
                           "       9  POLICY-9       1               925        10\n"
                           "      10  POLICY-10      1               950        10\n")


@pytest.mark.skipif(not shutil.which("promtool"), reason="there is no promtool")
def test_promtool_accepts_metrics(sandbox, ctl):
    sandbox.set(DIMM, struct.pack("<4d", float("nan"), -float("nan"), float("inf"), -float("inf")))
    out = ctl("metrics").out
    check = subprocess.run(["promtool", "check", "metrics"], input=out, capture_output=True, text=True)
    assert check.returncode in (0, 3), check.stderr  # 3: it would spell names otherwise
    assert [line.split()[1] for line in out.splitlines() if "_dimmPwr{" in line] == ["NaN", "NaN", "+Inf", "-Inf"]
    numbers = [field for field in sandbox.build.fields.values() if not field.is_text and not field.is_bytes]
    assert len(re.findall("^orbelstat_", out, re.M)) == len(numbers)


def test_set_writes_up_to_every_bound_and_refuses_what_is_beyond(sandbox, ctl):
    fields = sandbox.build.writable.values()
    calls = [f"write 6 {field.offset} {field.size}: {field.pack(field.maximum).hex(' ')}" for field in fields
             if sandbox.bytes_of(field) != field.pack(field.maximum)]
    outcome = ctl("set", "-", typed="".join(f"{field.path}={field.maximum}\n" for field in fields))
    assert outcome.calls == [WHOLE, *calls, WHOLE]
    assert outcome.out.count(" -> ") == len(calls) > 30
    beyond = [f"{field.path}={value}" for field in fields for value in (field.maximum + 1, "-1e10")]
    outcome = ctl("set", "-", typed="\n".join(beyond) + "\n", status=2)
    assert outcome.calls == []
    for number, line in enumerate(beyond, 1):
        assert f"line {number}: {line}: " in outcome.err


@pytest.mark.parametrize("bad, reason", [
    ("upm.policies[16].state=0", "upm.policies has the elements 0 to 15"), ("upm.timestamp=1", "may not be written"),
    ("=1", "no such field"), ("upm.policies[3].name=x", "may not be written"), (STATE + "=-1", "not within 0..1"),
    *((word, "not PATH=VALUE") for word in (STATE, STATE + "=0\r", "-")),
    *((f"{STATE}={text}", "not a whole number") for text in ("0 ", "", "-", "+1", "0x1")),
    ("upm.policies[3].policyPowerLimit=99999999999999999999", "not within 0..100000"),
    ("upm.policies[*].state=1", STATE + " is given two values"),
    *((f"{DIMM}={text}", "not within -1000000000..1000000000") for text in ("inf", "1e400", "-1000000001")),
    *((f"{DIMM}={text}", "not a number") for text in (" 1", "1x", "")), (DIMM + "=-1e-400", "too small for a double")])
def test_set_writes_nothing_if_anything_is_refused(ctl, bad, reason):
    outcome = ctl("set", STATE + "=0", bad, status=2)
    assert (outcome.calls, outcome.out) == ([], "")
    assert outcome.err == f"orbelstatctl: {as_get_prints(bad.encode())}: {reason}\n"


@pytest.mark.parametrize("typed, redirections, status, reason", [
    ("", "", 2, "standard input: nothing to set"), ("", "exec <&-;", 2, "standard input: nothing to set"),
    ("", "exec </;", 1, "standard input: Is a directory"), ("\n", "", 2, "line 1: : not PATH=VALUE"),
    (STATE + "=0", "", 2, "standard input: the last line has no line end"),
    (STATE + "=0\0\n", "", 2, f"line 1: {STATE}=0\\x00: not PATH=VALUE"),
    (STATE + "=0\n\n", "", 2, "line 2: : not PATH=VALUE")])
def test_set_writes_nothing_of_an_input_that_is_wrong(ctl, typed, redirections, status, reason):
    outcome = ctl("set", "-", typed=typed, redirections=redirections, status=status)
    assert (outcome.calls, outcome.err) == ([], f"orbelstatctl: {reason}\n")


def test_set_takes_back_what_get_printed(sandbox, ctl):
    """From any state that set can reach, byte for byte."""
    rng = random.Random(1)
    fields = [field for field in sandbox.build.fields.values() if field.maximum]
    for numbers in (5e-324, -1e9, 0.1, -0.0), (float("nan"), -float("nan"), 1e-300, 2**0.5):
        for field in fields:
            sandbox.set(field.path, 0 if field.is_real else rng.randint(0, field.maximum))
        sandbox.set(DIMM, struct.pack("<4d", *numbers))
        before, saved = [sandbox.bytes_of(field) for field in fields], ctl("get", "-w", "upm").out
        sandbox.fill(0)
        assert ctl("set", "-", typed=saved).out.count(" -> ") > 400
        assert [sandbox.bytes_of(field) for field in fields] == before


def test_get_tells_what_cannot_be_set_back(sandbox, ctl):
    sandbox.set("upm.policies[0].policyPowerLimit", -1)
    sandbox.set("upm.cpuPwrThermal.dimmPwr[1]", b"\1\0\0\0\0\0\xf8\x7f")
    outcome = ctl("get", "-w", "upm", status=1)
    lost = "cannot be set back, not"
    assert outcome.err == (f"orbelstatctl: upm.cpuPwrThermal.dimmPwr[1]=nan: {lost} with the same bytes\n"
                           f"orbelstatctl: upm.policies[0].policyPowerLimit=-1: {lost} within 0..100000\n")
    assert outcome.out.count("\n") == sum(bool(field.maximum) for field in sandbox.build.fields.values()) - 2


def test_set_writes_nothing_if_stdout_fails(ctl):
    outcome = ctl("set", STATE + "=0", redirections="exec >/dev/full;", status=1)
    assert (outcome.calls, outcome.err) == ([WHOLE], "orbelstatctl: standard output: No space left on device\n")


def test_a_capture_is_whole(sandbox, ctl, capture):
    sections = {f"section-{section}": sandbox.contents(section) for section in sandbox.build.sizes}
    saved = {file.name: file.read_bytes() for file in capture.iterdir()}
    sandbox.set(STATE, 0)
    assert ctl("diff", str(capture), status=1).out == STATE + ": 1 -> 0\n"
    sandbox.set(STATE, 1)
    about = dict(line.split("=", 1) for line in saved.pop("about").decode().splitlines())
    assert saved.pop("policy-names").decode() == "".join(f"POLICY-{policy}\n" for policy in range(16))
    assert saved == sections
    assert {name: about[name] for name in sections} == {name: str(len(data)) for name, data in sections.items()}
    assert list(about)[:5] == ["capture", "orbelstatctl", "time", "host", "kernel"]
    live = {command: ctl(*command.split()).out for command in ("get", "json", "table psu", "metrics")}
    sandbox.fill(0)
    for command, out in live.items():
        assert ctl("--from", str(capture), *command.split()).out == out


def test_a_capture_keeps_names_as_they_are(sandbox, ctl):
    name = "a\\b\n\tc\x7f;\"d\" \xe9"
    ctl("save", sandbox.directory + "/named", POLICY_NAME=os.fsdecode(name.encode("latin-1")))
    read = ctl("--from", sandbox.directory + "/named", "json", "upm.policies[3].name").out
    got = ctl("--from", sandbox.directory + "/named", "get", "-n", "upm.policies[3].name").out
    assert (json.loads(read), got) == (name + "-3", as_get_prints(name.encode("latin-1")) + "-3\n")


def test_save_makes_a_new_directory(sandbox, ctl):
    new = pathlib.Path(sandbox.directory, "new")
    new.mkdir()
    ctl("save", f"{new}/", redirections="umask 027;")
    assert new.stat().st_mode & 0o7777 == 0o750
    ctl("save", str(new), status=1)
    partial = pathlib.Path(sandbox.directory, "partial")
    assert "cannot be read, error -7" in ctl("save", str(partial), FAIL_READ="2:-7", status=1).err
    assert "section-7=error -7 of the library (Argument list too long)\n" in (partial / "about").read_text()
    assert not (partial / "section-7").exists() and (partial / "section-8").exists()


@pytest.mark.builds(lambda build: "-fprofile" not in build.flags)  # which writes files that are too large, too
def test_a_capture_that_is_too_large_is_not_there(sandbox, ctl):
    outcome = ctl("save", f"{sandbox.directory}/new", status=1, redirections="trap '' XFSZ; ulimit -f 20;")
    assert re.search(r"new\.\w+/section-6: File too large\n", outcome.err)
    assert "new" not in "".join(os.listdir(sandbox.directory))


@pytest.mark.parametrize("name, reason", [
    (".", ".: Device or resource busy"), ("./" * 2040 + "new", "section-6: File name too long"),
    ("new" * 2000, "File name too long")])
def test_save_leaves_nothing_of_a_capture_that_fails(sandbox, ctl, name, reason):
    empty = pathlib.Path(sandbox.directory, "empty")
    empty.mkdir()
    assert reason in ctl("save", name, status=1, redirections=f"cd '{empty}';").err
    assert os.listdir(empty) == []


@pytest.mark.parametrize("end", [signal.SIGINT, signal.SIGTERM, None])
def test_watch_prints_changes_until_it_is_ended(sandbox, end):
    command = sandbox.command("orbelstatctl", ["watch", "-i", "0.01", "upm.policies[0..3].SFOffset", "psu.psuSlot"], "")
    with subprocess.Popen(command, text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
        lines = ""
        for value in range(1000, 1200):  # the first look may be yet to come
            sandbox.set("upm.policies[2].SFOffset", value)
            if lines.count("\n") < 2 and select.select([process.stdout], [], [], 0.2)[0]:
                lines += process.stdout.readline()
        change = r"20\d\d-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z upm\.policies\[2\]\.SFOffset: (\d+) -> (\d+)\n"
        process.send_signal(end) if end else process.stdout.close()
        assert (process.wait(), process.stderr.read()) == (0, "")
    oldest, old, same, new = map(int, re.fullmatch(2 * change, lines).groups())
    assert oldest < old == same < new


def test_watch_ends_although_its_reader_does_not_read(sandbox):
    command = sandbox.command("orbelstatctl", ["watch", "-i", "0.001", "--csv", "upm"], "")
    with subprocess.Popen(command, stdout=subprocess.PIPE) as process:
        while not select.select([process.stdout], [], [], 0.3)[0]:
            pass
        time.sleep(0.5)  # until the pipe is full
        process.send_signal(signal.SIGTERM)
        assert process.wait(timeout=60) == 0


def test_watch_ends_on_closed_pipe(sandbox, ctl):
    unread = f"cd '{sandbox.directory}'; mkfifo pipe; exec 3<>pipe >pipe 3<&-;"  # and the reader has gone
    assert ctl("watch", "--csv", "psu", redirections=unread).err == ""


def test_watch_prints_rows(sandbox, ctl):
    sandbox.set("psu[1].psuFwVersion", b'a,b\0')
    sandbox.set("psu[1].psuPartNum", b'"c"\0')
    words = "psu[1].psuPartNum", "psu[1].psuFwVersion", "upm.policies[3].name", STATE
    rows = ctl("watch", "-i", "0.05", "-n", "4", "--csv", *words).out.splitlines()
    assert rows[0] == ",".join(["time", *words])
    times, values = zip(*(row.split(",", 1) for row in rows[1:]))
    assert set(values) == {'"""c""","a,b",POLICY-3,1'}
    assert len(times) <= 4 and all(re.fullmatch(r"\d{10}\.\d{3}", time) for time in times)
    assert sorted(set(times)) == list(times)


def test_watch_goes_on_after_a_failed_read(ctl):
    """The third read is the second look's first."""
    outcome = ctl("watch", "-i", "0.1", "-n", "9", "--csv", STATE, "config.instHeadroom", FAIL_READ="3:-5", status=1)
    assert outcome.err == ("orbelstatctl: section 6 (reporting, upm): cannot be read, error -5 of the library "
                           "(Input/output error)\n")
    rows = [row.partition(",")[2] for row in outcome.out.splitlines()[1:]]
    assert rows[:2] == ["1,287", ",287"] and set(rows[2:]) <= {"1,287"}


@pytest.mark.parametrize("words, stream, reason", [
    *((words, "/dev/full", "No space left") for words in ("json", "get psu", "get upm", "watch -n 1 --csv psu")),
    ("list", "&-", "Bad file")])
def test_output_errors_are_reported(sandbox, ctl, capture, words, stream, reason):
    sandbox.set(STATE, 0)
    lost = f"exec >{stream};"
    assert reason in ctl(*words.split(), redirections=lost, status=1).err
    assert reason in ctl("diff", str(capture), redirections=lost, status=2).err
    if stream == "&-":
        assert "cannot take its place" in ctl(*words.split(), redirections=lost, FAIL_OPEN_NULL="1", status=1).err


def test_the_version_and_help(sandbox, ctl):
    assert re.fullmatch(r"orbelstatctl \d+\.\d+\S*\n", ctl("--version").out)
    for command in sandbox.build.commands:
        if "-" not in command:
            assert f"\nUsage: orbelstatctl {command} " in ctl(command, "-h").out == ctl(command, "--help").out


@unsanitized
@pytest.mark.parametrize("path, size", [("global", "803"), ("config", "224")])
def test_out_of_memory_is_reported(ctl, capture, path, size):
    assert "no memory" in ctl("get", path, status=1, FAIL_MALLOC=size).err
    assert "no memory" in ctl("diff", str(capture), status=2, FAIL_MALLOC=size).err


def test_demo_data_are_plausible(sandbox, ctl):
    """Every field has a value but for those of a system without faults or tests, and every value is within its
    bounds."""
    values = leaves(json.loads(ctl("json").out))
    fields = sandbox.build.fields.values()
    zeros = {}
    for name in dict.fromkeys(field.name for field in fields):
        elements = [values[field.path] for field in fields if field.name == name]
        if not all(elements):
            root, _, rest = name.partition(".")
            zeros.setdefault(f"{root}, zero{' in some' if any(elements) else ''}:", []).append(rest)
    compare_with_golden("demo-zeros.txt", "".join(" ".join([key, *zeros[key]]) + "\n" for key in zeros))
    assert [field.path for field in fields if field.maximum and values[field.path] > field.maximum] == []
