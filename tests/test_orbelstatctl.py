"""Runs orbelstatctl and checks output, status, library calls and written bytes."""
import calendar
import contextlib
import fcntl
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import signal
import stat
import struct
import subprocess
import termios
import time

import pytest
from harness import (compare_with_entry, entries_of, fail_if_different, golden,
                     settings_and_words, unsanitized)

TRANSCRIPT = "orbelstatctl.txt"
WHOLE = "read 6 0 30277"
STATE = "upm.policies[3].state"
DIMM = "upm.cpuPwrThermal.dimmPwr[0]"
LIMIT = "upm.powerLimits.sysPL1"


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
    ctl("save", f"{sandbox.directory}/capture", TZ="XXX-9")
    return pathlib.Path(sandbox.directory, "capture")


@pytest.mark.parametrize("command", entries_of(TRANSCRIPT))
def test_answers(sandbox, capture, command):
    """The exit status and the library's calls follow "->". DIRECTORY contains `capture`; `broken`, without names, with
    one section missing and one truncated; `unnamed`, with too few names and one field changed; `later`, of a later
    format; and `changes`, to be undone."""
    directory = pathlib.Path(sandbox.directory)
    for name in "broken", "unnamed", "later":
        for file in shutil.copytree(capture, directory / name).iterdir():
            file.chmod(0o644)
    (directory / "broken/policy-names").unlink()
    (directory / "broken/section-7").unlink()
    os.truncate(directory / "broken/section-8", 100)
    (directory / "unnamed/policy-names").write_text("one name\n")
    with open(directory / "unnamed/section-8", "r+b") as file:
        file.write(struct.pack("<f", 1))  # its first field
    (directory / "later/about").write_text("capture=2\n")
    (directory / "changes").write_text(f"{STATE}: 0 -> 1\n")
    sandbox.environment, words = settings_and_words(command.replace("DIRECTORY", sandbox.directory))
    outcome = sandbox.run(*shlex.split(words), program="orbelstatctl")
    calls = re.sub("(, fsync)+", ", fsync", "".join(f", {call}" for call in outcome.calls))
    text = (outcome.err + outcome.out).replace(sandbox.directory, "DIRECTORY")
    compare_with_entry(TRANSCRIPT, command, f"{outcome.status}{calls}", text)


def test_list_is_what_scripts_rely_on(ctl):
    """list.txt is written by hand. It has the path, type, section, offset and bounds of each member."""
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


def test_list_get_and_json_agree(sandbox, ctl):
    rng = random.Random(1)
    for section, size in sandbox.build.sizes.items():  # with NaNs, and text without a NUL
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
    assert str(float(json.loads(ctl("json", DIMM).out))) == str(float(text))


def test_very_long_arguments_are_rejected(ctl):
    for words, typed in (["get", "x" * 100000], ""), (["set", "-"], "psu[" + "9" * 200000 + "]=1\n"):
        assert re.search(": (no such field|invalid index)", ctl(*words, typed=typed, status=2).err)


@pytest.mark.skipif(not shutil.which("promtool"), reason="there is no promtool")
def test_promtool_accepts_metrics(sandbox, ctl):
    sandbox.set(DIMM, struct.pack("<4d", float("nan"), -float("nan"), float("inf"), -float("inf")))
    sandbox.set("psu[0].psuBus.deviceName", b'a"\\\n\xff\0')
    out = ctl("metrics").out
    check = subprocess.run(["promtool", "check", "metrics"], input=out, capture_output=True, text=True)
    assert check.returncode in (0, 3), check.stderr  # 3: it would spell names otherwise
    assert [line.split()[1] for line in out.splitlines() if "_dimmPwr{" in line] == ["NaN", "NaN", "+Inf", "-Inf"]
    assert r'_info{psu="0",deviceName="a\"\\\\\\n\\xff"} 1' in out
    fields = [field for field in sandbox.build.fields.values() if not field.is_bytes]
    assert len(re.findall("^orbelstat_", out, re.M)) == len(fields) + 16 + len(sandbox.build.sizes)


def test_set_writes_up_to_every_bound_and_refuses_what_is_beyond(sandbox, ctl):
    fields = sandbox.build.writable.values()
    reads = [f"read {section} 0 {sandbox.build.sizes[section]}"
             for section in dict.fromkeys(field.section for field in fields)]
    calls = [f"write {field.section} {field.offset} {field.size}: {field.pack(field.maximum).hex(' ')}"
             for field in fields if sandbox.bytes_of(field) != field.pack(field.maximum)]
    outcome = sandbox.run("set", "-", program="orbelstatctl",
                          typed="".join(f"{field.path}={field.maximum}\n" for field in fields))
    assert (outcome.status, outcome.err) == (0, ""), "see writeAll in orbelstatctl/write_fields.cpp"
    assert outcome.calls == [*reads, *calls, *reads]
    assert outcome.out.count(" -> ") == len(calls) > 30
    beyond = [f"{field.path}={value}" for field in fields
              for value in (field.maximum + 1, "-1e10" if field.is_real else -1)]
    outcome = ctl("set", "-", typed="\n".join(beyond) + "\n", status=2)
    assert outcome.calls == []
    for number, line in enumerate(beyond, 1):
        assert f"line {number}: {line}: not within " in outcome.err


@pytest.mark.parametrize("bad, reason", [
    ("upm.timestamp=1", "is read-only"), ("upm.policies[3].name=x", "is read-only"), (STATE + "=-1", "not within 0..1"),
    ("=1", "empty path"), *((word, "not PATH=VALUE") for word in (STATE, STATE + "=0\r", "-")),
    *((f"{STATE}={text}", "not an integer") for text in ("0 ", "", "-", "+1", "0x1")),
    ("upm.policies[3].policyPowerLimit=99999999999999999999", "not within 0..100000"),
    ("upm.policies[*].state=1", STATE + " is assigned two different values"),
    *((f"{DIMM}={text}", "not within -1000000000..1000000000") for text in ("inf", "-1000000001")),
    *((f"{DIMM}={text}", "not a number") for text in (" 1", "1x", "", "0x1", "+1", "1_0")),
    *((f"{DIMM}={text}", "out of range for a double") for text in ("-1e-400", "1e400"))])
def test_set_writes_nothing_if_anything_is_invalid(ctl, bad, reason):
    outcome = ctl("set", STATE + "=0", bad, status=2)
    assert (outcome.calls, outcome.out) == ([], "")
    assert outcome.err == f"orbelstatctl: {as_get_prints(bad.encode())}: {reason}\n"


@pytest.mark.parametrize("typed, redirections, status, reason", [
    ("# only\n\n \t\r\n", "", 2, "standard input: nothing to set"),
    ("", "exec <&-;", 2, "standard input: nothing to set"), ("", "exec </;", 1, "standard input: Is a directory"),
    (STATE + "=0", "", 2, "standard input: the last line does not end in a newline (truncated input?)"),
    (f"\n#\n{STATE}=0\0\n", "", 2, f"line 3: {STATE}=0\\x00: not PATH=VALUE")])
def test_set_writes_nothing_of_an_invalid_input(ctl, typed, redirections, status, reason):
    outcome = ctl("set", "-", typed=typed, redirections=redirections, status=status)
    assert (outcome.calls, outcome.err) == ([], f"orbelstatctl: {reason}\n")


CHANGES = f"{STATE}: 7 -> 0\r\n# note\n\n{LIMIT}: 1 -> 2\n{LIMIT}: 2 -> 3\n"


@pytest.mark.parametrize("memory, options, status, out", [
    ((0, 3), "", 0, f"{LIMIT}: 3 -> 1\n{STATE}: 0 -> 7\n"), ((0, 3), "--dry-run", 0, f"{LIMIT}: 3 -> 1\n{STATE}: 0 -> 7\n"),
    ((7, 2), "", 0, f"{LIMIT}: 2 -> 1\n"), ((7, 1), "", 1, f"orbelstatctl: {LIMIT}: is 1, expected 3 (use --force to overwrite it)\n"), ((9, 5), "--force", 0, f"{LIMIT}: 5 -> 1\n{STATE}: 9 -> 7\n"),
    ((0, 5), "", 1, f"orbelstatctl: {LIMIT}: is 5, expected 3 (use --force to overwrite it)\n"),
    ((9, 5), "", 1, f"orbelstatctl: {STATE}: is 9, expected 0 (use --force to overwrite it)\n"
                    f"orbelstatctl: {LIMIT}: is 5, expected 3 (use --force to overwrite it)\n")])
def test_undo(sandbox, ctl, memory, options, status, out):
    """`memory` is the pair of values that the fields STATE and LIMIT hold."""
    sandbox.set(STATE, memory[0])
    sandbox.set(LIMIT, memory[1])
    outcome = ctl("undo", *options.split(), "-", typed=CHANGES, status=status)
    assert outcome.out + outcome.err == out
    assert len(outcome.only("write")) == (0 if status or options == "--dry-run" else out.count(" -> "))
    if outcome.only("write"):  # the undo can be undone
        ctl("undo", "-", typed=outcome.out)
        assert ctl("get", "-n", STATE, LIMIT).out == "{}\n{}\n".format(*memory)


@pytest.mark.parametrize("line", [
    STATE, STATE + ": 1", STATE + ": 1 -> ", STATE + ": x -> 1", STATE + ": 65536 -> 1", STATE + ": 1 -> -1",
    "upm.policies[3..3].state: 0 -> 1", "upm.policies.state: 0 -> 1", "upm.timestamp: 0 -> 1", "psu: 0 -> 1", ": 0 -> 1"])
def test_undo_rejects_other_lines(ctl, line):
    outcome = ctl("undo", "-", typed=f"{line}\n{STATE}: 1 -> 0\n{STATE}: 1 -> 0", status=2)
    assert (outcome.calls, outcome.out) == ([], "")
    assert outcome.err == "".join(f"orbelstatctl: line {number}: {text}: not PATH: OLD -> NEW\n"
                                  for number, text in ((1, line), (3, STATE + ": 1 -> 0")))
    assert ctl("undo", "-", typed="# nothing\n\n").calls == []


def test_set_and_undo_restore_every_byte(sandbox, ctl):
    """From any state that set can reach."""
    rng = random.Random(1)
    fields = [field for field in sandbox.build.fields.values() if field.maximum]
    for numbers in (5e-324, -1e9, 0.1, -0.0), (float("nan"), -float("nan"), 1e-300, 2**0.5):
        for field in fields:
            sandbox.set(field.path, 0 if field.is_real else rng.randint(0, field.maximum))
        sandbox.set(DIMM, struct.pack("<4d", *numbers))
        before, saved = [sandbox.bytes_of(field) for field in fields], ctl("get", "-w").out
        changes = ctl("set", "-", typed="".join(f"{field.path}={rng.randint(0, 1)}\n" for field in fields)).out
        assert ctl("undo", "-", typed=changes).out.count(" -> ") == changes.count("\n") > 400
        assert [sandbox.bytes_of(field) for field in fields] == before
        sandbox.fill(0)
        ctl("set", "-", typed=saved)
        assert [sandbox.bytes_of(field) for field in fields] == before


def test_get_reports_what_set_cannot_restore(sandbox, ctl):
    sandbox.set("upm.policies[0].policyPowerLimit", -1)
    sandbox.set("upm.cpuPwrThermal.dimmPwr[1]", b"\1\0\0\0\0\0\xf8\x7f")
    outcome = ctl("get", "-w", status=1)
    assert outcome.err == (
        "orbelstatctl: upm.cpuPwrThermal.dimmPwr[1]=nan: skipped, this NaN cannot be restored bit for bit\n"
        "orbelstatctl: upm.policies[0].policyPowerLimit=-1: skipped, set would reject it: not within 0..100000\n")
    assert outcome.out.count("\n") == sum(bool(field.maximum) for field in sandbox.build.fields.values()) - 2


def test_set_writes_nothing_if_stdout_fails(ctl):
    outcome = ctl("set", STATE + "=0", redirections="exec >/dev/full;", status=1)
    assert (outcome.calls, outcome.err) == ([WHOLE], "orbelstatctl: standard output: No space left on device\n")


def test_a_capture_is_complete(sandbox, ctl, capture):
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
    assert abs(calendar.timegm(time.strptime(about["time"], "%Y-%m-%dT%H:%M:%SZ")) - time.time()) < 3600
    live = {command: ctl(*command.split()).out for command in ("get", "json", "table psu", "metrics")}
    sandbox.fill(0)
    for command, out in live.items():
        assert ctl("--from", str(capture), *command.split()).out == out


@pytest.mark.parametrize("name, replace, reason", [
    ("section-8", lambda path: path.write_bytes(bytes(225)), "size is more than 224 bytes, expected 224"),
    *((name, os.mkfifo, "not a regular file") for name in ("section-8", "policy-names", "about")),
    ("policy-names", os.mkdir, "not a regular file"),
    ("policy-names", lambda path: path.write_text("x\n" * 17), "has 17 line(s), expected 16"),
    ("policy-names", lambda path: path.write_text("x\n" * 15 + "x"), "the last line does not end in a newline")])
def test_a_damaged_capture_is_an_error(ctl, capture, name, replace, reason):
    (capture / name).unlink()
    replace(capture / name)
    for words, status in (["--from", str(capture), "get"], 1), (["diff", str(capture)], 2):
        assert ctl(*words, status=status).err == f"orbelstatctl: {capture}/{name}: {reason}\n"


def test_a_capture_keeps_names_as_they_are(sandbox, ctl):
    name = "a\\b\n\tc\x7f;\"d\" \xe9"
    ctl("save", sandbox.directory + "/named", POLICY_NAME=os.fsdecode(name.encode("latin-1")))
    read = ctl("--from", sandbox.directory + "/named", "json", "upm.policies[3].name").out
    got = ctl("--from", sandbox.directory + "/named", "get", "-n", "upm.policies[3].name").out
    assert (json.loads(read), got) == (name + "-3", as_get_prints(name.encode("latin-1")) + "-3\n")


def test_save_makes_a_new_directory(sandbox, ctl):
    new = pathlib.Path(sandbox.directory, "new")
    new.mkdir()
    sandbox_mode = os.stat(sandbox.directory).st_mode
    os.chmod(sandbox.directory, sandbox_mode | stat.S_ISGID)
    calls = ctl("save", f"{new}/", redirections="umask 027;").calls
    assert calls.count("fsync") == len(list(new.iterdir())) + 2  # the directory and its parent
    assert new.stat().st_mode & 0o7777 == 0o2750
    assert {file.stat().st_mode & 0o777 for file in new.iterdir()} == {0o440}
    ctl("save", str(new), status=1)
    partial = pathlib.Path(sandbox.directory, "partial")
    assert "(psu): library error -7" in ctl("save", str(partial), FAIL_READ="2:-7", status=1).err
    assert "section-7=library error -7 (as errno: Argument list too long)\n" in (partial / "about").read_text()
    assert not (partial / "section-7").exists() and (partial / "section-8").exists()


def test_a_signal_during_save_leaves_a_capture_or_nothing(sandbox, ctl):
    sections = [f"section-{section}" for section in sandbox.build.sizes]
    for call, files in (2, []), (25, ["about", "policy-names", *sorted(sections)]):
        sandbox.environment = {"RAISE": f"{call}:{signal.SIGTERM}"}
        outcome = sandbox.run("save", f"{sandbox.directory}/new", program="orbelstatctl")
        assert outcome.status in (143, -15)
        assert sorted(str(path.relative_to(sandbox.directory)) for path in pathlib.Path(sandbox.directory).glob("new*/*")) \
            == [f"new/{name}" for name in files]


@pytest.mark.builds(lambda build: "-fprofile" not in build.flags)  # which writes files that are too large, too
def test_a_capture_that_is_too_large_is_not_there(sandbox, ctl):
    outcome = ctl("save", f"{sandbox.directory}/new", status=1, redirections="ulimit -f 20;")
    assert outcome.err.endswith("/new/section-6: File too large\n")
    assert "new" not in "".join(os.listdir(sandbox.directory))


@pytest.mark.parametrize("name, reason", [
    (".", ".: Device or resource busy"), ("new" * 2000, "File name too long")])
def test_save_leaves_nothing_of_a_capture_that_fails(sandbox, ctl, name, reason):
    empty = pathlib.Path(sandbox.directory, "empty")
    empty.mkdir()
    assert reason in ctl("save", name, status=1, redirections=f"cd '{empty}';").err
    assert os.listdir(empty) == []


def test_watch_ends_on_closed_pipe(sandbox, ctl):
    unread = f"cd '{sandbox.directory}'; [ -p pipe ] || mkfifo pipe; exec 3<>pipe >pipe 3<&-;"  # and the reader has gone
    for words in ["--csv", "psu"], [STATE]:
        assert ctl("watch", *words, redirections=unread).err == ""


def test_the_second_signal_ends_watch_although_its_output_is_blocked(sandbox):
    command = sandbox.command("orbelstatctl", ["watch", "--csv", "upm"], "")
    with subprocess.Popen(command, stdout=subprocess.PIPE, pipesize=4096) as process:
        while process.poll() is None and \
                fcntl.ioctl(process.stdout, termios.FIONREAD, bytes(4)) != struct.pack("I", 4096):
            time.sleep(0.01)
        signals = 0
        while process.poll() is None:
            process.send_signal(signal.SIGTERM)
            signals += 1
            with contextlib.suppress(subprocess.TimeoutExpired):
                process.wait(0.1)
        assert signals > 1 and process.returncode in (143, -15)


def test_ignored_signals_stay_ignored(ctl):
    for words in ["watch", "-n", "3"], ["wait", "-t", "2"]:
        calls = ctl(*words, STATE + "=0" * (words[0] == "wait"), redirections="trap '' INT;", CLOCK="0:0",
                    RAISE=f"1:{signal.SIGINT}", status=int(words[0] == "wait")).calls
        assert len(calls) > 4


def test_cells_are_quoted(sandbox, ctl):
    sandbox.set("psu[1].psuFwVersion", b'a,b\0')
    sandbox.set("psu[1].psuPartNum", b'"c"\0')
    row = '"""c""","a,b",2\n'
    paths = "psu[1].psuPartNum", "psu[1].psuFwVersion", "upm.policies[2].SFOffset"
    sandbox.set(paths[2], 2)
    assert ctl("watch", "-n", "1", "--csv", *paths).out.partition("\n")[2].partition(",")[2] == row
    assert ctl("table", "--csv", "psu[1]", "psuPartNum", "psuFwVersion").out == 'psu,psuPartNum,psuFwVersion\n1,' + row[:-3] + "\n"


@pytest.mark.parametrize("words, stream, reason", [
    *((words, "/dev/full", "No space left") for words in ("json", "get psu", "get upm", "watch -n 1 --csv psu")),
    ("list", "&-", "Bad file")])
def test_output_errors_are_reported(sandbox, ctl, capture, words, stream, reason):
    sandbox.set(STATE, 0)
    lost = f"exec >{stream};"
    assert reason in ctl(*words.split(), redirections=lost, status=1).err
    assert reason in ctl("diff", str(capture), redirections=lost, status=2).err
    if stream == "&-":
        for command, status in (words.split(), 1), (["diff", str(capture)], 2):
            assert "cannot take its place" in ctl(*command, redirections=lost, FAIL_OPEN_NULL="1", status=status).err


def test_the_version_and_help(sandbox, ctl):
    assert ctl("-V").out == ctl("--version").out
    assert re.fullmatch(r"orbelstatctl \d+\.\d+\S*\n", ctl("-V").out)
    for command, text in list(sandbox.build.help.items())[1:]:
        assert text == ctl(command, "-h").out
        assert re.search(rf"\n\nExamples:\n(  .*orbelstatctl .*{command} .*\n){{2,3}}$", text)


@unsanitized
@pytest.mark.parametrize("path, size", [("global", "804"), ("config", "225")])
def test_out_of_memory_is_reported(ctl, capture, path, size):
    assert "out of memory" in ctl("get", path, status=1, FAIL_MALLOC=size).err
    assert "out of memory" in ctl("diff", str(capture), status=2, FAIL_MALLOC=size).err


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
    text = "".join(" ".join([key, *zeros[key]]) + "\n" for key in zeros)
    fail_if_different(golden("demo-zeros.txt"), text, "demo-zeros.txt")
    assert [field.path for field in fields if field.maximum and values[field.path] > field.maximum] == []
