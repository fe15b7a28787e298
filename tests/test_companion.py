"""orbelstatctl from outside: what it prints, writes and refuses, and that it shows what the reports
show."""
import json
import os
import pathlib
import random
import re
import struct

import pytest
from harness import compare_with_golden, golden, unsanitized

WHOLE = "read 6 0 30277"
STATE = "upm.policies[3].state"
# The reports that show the fields of each root.
REPORTS = {"global": ["-d", "-o"], "psu": ["-e"], "reporting": ["-r"], "config": ["-c"],
           "upm": ["-u", "-u -p -c", "-u -p -a"]}


@pytest.fixture(autouse=True)
def demo_data(machine):
    machine.run("--force", program="tolmfill")


@pytest.fixture
def ctl(machine):
    def run(*words, status=0, typed="", redirections="", **environment):
        """A run that must end with the status, and explain itself only if that is not 0."""
        machine.environment = environment
        outcome = machine.run(*words, program="orbelstatctl", typed=typed, redirections=redirections)
        assert outcome.status == status, outcome.err
        assert (outcome.err == "") == (status == 0)
        assert all(line.startswith("orbelstatctl: ") for line in outcome.err.splitlines())
        return outcome
    return run


def one_of_each(fields):
    """The last element of every field that may be written."""
    return {field.name: field for field in fields.values() if field.maximum}.values()


def test_fields_are_those_that_the_reports_show(machine, ctl):
    def shown(root):
        return "".join(machine.run(*words.split()).out for words in REPORTS[root]), ctl("json", root).out
    before = {root: shown(root) for root in REPORTS}
    fields = list(machine.build.fields.values())
    sections = {section: bytearray(machine.contents(section)) for section in machine.build.sizes}
    covered = {(field.section, field.offset + i) for field in fields for i in range(field.size)}
    for section, data in sections.items():  # all bytes change that are of no field
        hidden = [byte if (section, i) in covered else byte ^ 0xFF for i, byte in enumerate(data)]
        machine.poke(section, 0, bytes(hidden))
    assert {root: shown(root) for root in REPORTS} == before
    # Shown elsewhere only: an offset, and one of two voltages, the one that the unit's type has.
    fields = [field for field in fields if not re.search("PowerOnReqPSyS|Vin(DC)?Max", field.path)]
    for field in random.Random(1).sample(fields, 20):
        old = bytes(sections[field.section][field.offset:field.offset + field.size])
        machine.set(field.path, field.pack(field.unpack(old) + 2) if field.is_real else
                    bytes([old[0] ^ 1 or 2, *old[1:]]))
        assert [a != b for a, b in zip(shown(field.root), before[field.root])] == [True, True], field.path
        machine.set(field.path, old)


def leaves(value, path=""):
    """The numbers and texts in a JSON document, by their paths."""
    if isinstance(value, dict):
        steps = [(f"{path}.{key}".lstrip("."), inner) for key, inner in value.items()]
    elif isinstance(value, list):
        steps = [(f"{path}[{index}]", inner) for index, inner in enumerate(value)]
    else:
        return {path: value}
    return {leaf: number for below, inner in steps for leaf, number in leaves(inner, below).items()}


def test_list_get_and_json_tell_the_same(machine, ctl):
    chance = random.Random(1)
    for section, size in machine.build.sizes.items():  # numbers that are none, texts without end
        machine.poke(section, 0, chance.randbytes(size))
    machine.set("psu[0].psuBus.deviceName", b'"\\\x01\x7f\xff\n\t\0after')
    machine.set("upm.cpuPwrThermal.dimmPwr[0]", struct.pack("<4d", 0.1, 1e-7, float("nan"), float("-inf")))
    values = leaves(json.loads(ctl("json").out, parse_constant=pytest.fail))
    fields = machine.build.fields
    assert list(values) == list(fields)
    assert values["psu[0].psuBus.deviceName"] == '"\\\x01\x7f\xff\n\t'
    lines = ctl("get", *machine.build.roots).out
    sections = {section: machine.contents(section) for section in machine.build.sizes}
    for path, field in fields.items():
        data = sections[field.section][field.offset:field.offset + field.size]
        start = lines.index(path + "=") + len(path) + 1
        text = lines[start:lines.index("\n", start)]
        number = field.unpack(data)
        if field.is_text:
            assert values[path] == data.split(b"\0")[0].decode("latin-1")
            assert lines[start:].startswith(values[path] + "\n")
        elif not field.is_real:
            assert (text, values[path]) == (str(number), number), path
        elif values[path] is None:
            assert text.lstrip("-") == str(abs(number)) in ("nan", "inf"), path
        else:
            assert (field.pack(float(text)), values[path]) == (data, float(text)), path


@pytest.mark.parametrize("number, text", [(0.1, "0.1"), (5e-324, "5e-324"), (1e9, "1e+09"),
                                          (123456.789, "123456.789")])
def test_get_prints_the_shortest_number_that_reads_back(machine, ctl, number, text):
    machine.set("upm.cpuPwrThermal.dimmPwr[0]", number)
    assert ctl("get", "upm.cpuPwrThermal.dimmPwr[0]").out == text + "\n"


def test_one_value_is_bare_and_more_are_assignments(ctl):
    assert ctl("get", "upm.cpuPwrThermal.dimmPwr[1]").out == "12.75\n"
    assert ctl("get", "upm.policyState").out.startswith("upm.policyState.policyUpdInx=8\n")
    assert ctl("get", "psu[3].psuBus.deviceName", "config.instHeadroom").out == \
        "psu[3].psuBus.deviceName=/dev/psu-3\nconfig.instHeadroom=287\n"
    assert json.loads(ctl("json", "psu[3].inputOCW").out) == [6.5, 6.75]
    assert ctl("json", "upm.policies[8].state").out == "1\n"
    assert len(json.loads(ctl("json", "upm.policies").out)) == 16


def test_what_the_wizard_may_write_may_be_set(machine):
    """One more bound in the wizard's golden than here, or one less, is a field forgotten."""
    by_wizard = re.findall(r"write 6 (\d+) (\d+): ", golden("wizard-bounds.txt"))
    fields = [field for field in machine.build.fields.values() if field.maximum]
    assert set(by_wizard) <= {(str(field.offset), str(field.size)) for field in fields}
    assert len(one_of_each(machine.build.fields)) == len(by_wizard)


def test_set_writes_up_to_every_bound_and_refuses_what_is_beyond(machine, ctl):
    fields = one_of_each(machine.build.fields)
    calls = [f"write 6 {field.offset} {field.size}: {field.pack(field.maximum).hex(' ')}" for field in fields]
    outcome = ctl("set", "-", typed="".join(f"{field.path}={field.maximum}\n" for field in fields))
    assert outcome.calls == [WHOLE, *calls, WHOLE]
    assert outcome.out.count(" -> ") == len(calls)
    assert "upm.cpuPwrThermal.dimmPwr[3]: 13.25 -> 1e+09\n" in outcome.out
    assert "upm.policies[15].SFOffset: 10 -> 32767\n" in outcome.out
    beyond = [f"{field.path}={value}" for field in fields for value in (field.maximum + 1, "-1e10")]
    outcome = ctl("set", "-", typed="\n".join(beyond) + "\n", status=2)
    assert outcome.calls == []
    for number, line in enumerate(beyond, 1):
        assert f"line {number}: {line}: " in outcome.err


@pytest.mark.parametrize("bad", [
    "upm.policies[16].state=0", "upm.policies[3]=0", "upm.policies[3].stat=0", "upm.timestamp=1",
    "upm.powerLimits.memPL1[0]=1", "reporting.peakHeadroom=1", "=1", STATE, STATE + "=0 ",
    STATE + "=0\r", "--dry-run", STATE + "=", STATE + "=+1", STATE + "= 1", STATE + "=0x1",
    STATE + "=-1", "upm.policies[3].policyPowerLimit=99999999999999999999", STATE + ".=1",
    *(f"upm.cpuPwrThermal.dimmPwr[0]={text}" for text in ("inf", " 1", "1e400", "1x", ""))])
def test_set_writes_nothing_if_anything_is_refused(ctl, bad):
    outcome = ctl("set", STATE + "=0", bad, status=2)
    assert outcome.calls == []
    assert bad.rstrip("\r") + ": " in outcome.err


@pytest.mark.parametrize("typed, redirections, status", [
    ("", "", 2), ("\n", "", 2), (STATE + "=0\0\n", "", 2), (f"{STATE}=0\n\n{STATE}=0", "", 2),
    ("", "exec <&-;", 2), ("", "exec </;", 1)])
def test_set_writes_nothing_of_an_input_that_is_wrong(ctl, typed, redirections, status):
    assert ctl("set", "-", typed=typed, redirections=redirections, status=status).calls == []


def test_set_takes_back_what_get_printed(machine, ctl):
    machine.set("upm.cpuPwrThermal.dimmPwr[0]", 5e-324)  # the smallest number that there is
    before = machine.contents(6)
    # The demo data, all of which the wizard would take.
    saved = ctl("get", *[field.path for field in machine.build.fields.values() if field.maximum]).out
    outcome = ctl("set", "--dry-run", STATE + "=0")
    assert (outcome.out, outcome.calls) == (STATE + ": 1 -> 0\n", [WHOLE])
    ctl("set", STATE + "=0", STATE + "=1", STATE + "=0", "upm.cpuPwrThermal.dimmPwr[0]=-0.5")
    assert machine.contents(6) != before
    ctl("set", "-", typed=saved)
    assert machine.contents(6) == before


def test_set_tells_when_shared_memory_does_not_take_it(ctl):
    words = ["set", STATE + "=0", "upm.policies[4].state=0"]
    outcome = ctl(*words, status=1, FAIL_WRITES="-5")
    assert outcome.out == ""
    assert STATE + ": cannot be written, error -5" in outcome.err
    assert [call[:12] for call in outcome.calls] == ["read 6 0 302", "write 6 2924", "read 6 0 302"]
    outcome = ctl(*words, status=1, FAIL_WRITES="0")  # taken, and forgotten
    assert outcome.err.count("does not read back") == 2
    assert ctl(*words, status=1, FAIL_READ="1:-7").calls == [WHOLE]
    assert "error -7" in ctl(*words, status=1, FAIL_READ="2:-7").err


def test_save_makes_files_that_the_stand_in_reads(machine, ctl):
    def saved():
        return {name: (directory / name).read_bytes() for name in os.listdir(directory)}
    directory = pathlib.Path(machine.directory, "saved")
    sections = {f"section-{section}": machine.contents(section) for section in machine.build.sizes}
    out = ctl("save", str(directory)).out
    assert saved() == sections
    assert all(f"{directory}/{name}: {len(data)} bytes\n" in out for name, data in sections.items())
    machine.poke(8, 0, b"changed!")
    err = ctl("save", str(directory), status=1, FAIL_READ="1:-7").err
    assert re.search(r"section \d+: cannot be read, error -7 ", err)
    assert saved() == {**sections, "section-8": machine.contents(8)}
    (directory / "new/section-8").mkdir(parents=True)
    assert "section-8: Is a directory" in ctl("save", f"{directory}/new", status=1).err
    assert sorted(os.listdir(directory / "new")) == sorted(sections)


@pytest.mark.builds("release", "debug", "controller")  # counts of coverage are too large themselves
def test_save_tells_that_a_file_is_too_large(machine, ctl):
    outcome = ctl("save", machine.directory, status=1, redirections="trap '' XFSZ; ulimit -f 40;")
    assert "section-6: File too large\n" in outcome.err


@pytest.mark.parametrize("directory", ["./" * 2044, "/dev/null", "no/directory"])
def test_save_needs_a_directory(ctl, directory):
    ctl("save", directory, status=1)


@pytest.mark.parametrize("words", [
    "", "frobnicate", "get", "get psu[12]", "get ''", "get glob", "get upm.timestamp.",
    "get upm.timestamp[0]", "get upm.", "get psu[3].psuBus.deviceName[0]", "json config.peakHeadroom.x",
    "list upm.timestamp.x", "get config.instHeadroom x", "list x", "list psu psu", "json psu[0].x",
    "save", "set", "set --dry-run", "--help x"])
def test_wrong_usage_is_refused(ctl, words):
    outcome = ctl(*(word.strip("'") for word in words.split()), status=2)
    assert (outcome.out, outcome.calls) == ("", [])


@pytest.mark.parametrize("words, stream, reason", [
    ("json", "/dev/full", "No space left"), ("get psu", "/dev/full", "No space left"),
    ("get upm", "/dev/full", "No space left"), ("list", "&-", "Bad file")])
def test_lost_output_is_told(ctl, words, stream, reason):
    assert reason in ctl(*words.split(), redirections=f"exec >{stream};", status=1).err


def test_the_version(ctl):
    assert re.fullmatch(r"orbelstatctl \d+\.\d+\S*\n", ctl("--version").out)


def test_what_can_be_read_is_printed(ctl):
    words = "get", "config.instHeadroom", "upm.policyState.policyId"
    assert ctl(*words, status=1, FAIL_READ="1:3").out == "upm.policyState.policyId=8\n"
    assert ctl("json", status=1, FAIL_READ="2:3").out == ""


@unsanitized
@pytest.mark.parametrize("path, size", [("global", "803"), ("config", "224")])  # section, list of fields
def test_refused_memory_is_told(ctl, path, size):
    assert "no memory" in ctl("get", path, status=1, REFUSE=size).err


def test_demo_data_are_plausible(machine, ctl):
    """Every field has a value but for those of a system without faults or tests, and every value
    is within its bounds."""
    values = leaves(json.loads(ctl("json").out))
    fields = machine.build.fields.values()
    zero = dict.fromkeys(field.name for field in fields if not values[field.path])
    other = {field.name for field in fields if values[field.path]}
    text = ""
    for root in machine.build.roots:
        for end, names in ("", [n for n in zero if n not in other]), (" in some", [n for n in zero if n in other]):
            names = [name.partition(".")[2] for name in names if name.startswith(root + ".")]
            text += f"{root}, zero{end}: {' '.join(names)}\n" if names else ""
    compare_with_golden("demo-zeros.txt", text)
    assert [field.path for field in fields if field.maximum and values[field.path] > field.maximum] == []
