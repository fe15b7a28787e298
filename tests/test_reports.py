"""All reports: golden files, repetitions and failures, and the edges that those cannot show."""
import difflib
import math
import operator
import random
import re
import struct
import typing

import pytest
from harness import compare_with_entry, compare_with_golden, entries_of, lines_of, settings_and_words

EDGES = "edges.txt"


class Repetition(typing.NamedTuple):
    """Records that a report shows one after the other in the same way."""
    opening: str  # a pattern for the beginning of the first one's text
    name: str  # of each, in its text: a format of its number
    count: int
    arrays: list  # that hold the records or parts of them: section, start and size of the first
    first: int = 0  # the number of the first


class Report(typing.NamedTuple):
    arguments: str
    golden: str = ""  # empty if another test compares the report
    repetitions: list = []  # in the order of the report

REPORTS = [
    Report("-o"),
    Report("-d", "global-dump.txt", [
        Repetition("   CpuPowerStat", "CpuPowerStat[{}].", 4, [(39, 486, 17)]),
        Repetition("   MemPowerStat", "MemPowerStat[{}].", 8, [(39, 571, 17)])]),
    Report("-e", "psu-info.txt", [
        Repetition("sTolmAbsPSUInfo DATA", "INFO FOR PSU {} ::", 12, [(7, 0, 816), (7, 9792, 35)], 1),
        Repetition("       (0x.. ){16}\n", "row {}", 16, [(7, 26, 16)])]),
    Report("-r", "power-reporting.txt", [
        Repetition("   Last minute", "Last minute-{:2}\t", 60, [(6, 383, 8)]),
        Repetition("   Last hour", "Last hour-{:2}\t", 24, [(6, 863, 8)]),
        Repetition("   Last day", "Last day-{:2}\t", 14, [(6, 1055, 8)]),
        Repetition("   sPowerReportSection.CpuPwrCons", "CpuPwrCons[{}].", 5, [(6, 1183, 17)]),
        Repetition("   sPowerReportSection.MemPwrCons", "MemPwrCons[{}].", 9, [(6, 1268, 17)]),
        Repetition("   sPowerReportSection.vcoreVRData", "vcoreVRData[{}].", 20, [(6, 1525, 132)]),
        Repetition("   cpuSample", "cpuSample", 25, [(6, 28635, 1)])]),
    Report("-c", "power-config.txt"),
    Report("-u", "upm-dump.txt", [
        Repetition("          >>>", "-{0}({0}).", 16, [(6, 29029, 72)])]),
    Report("-u -t"), Report("-u -p -c"), Report("-u -p -a"), Report("-u -p 7"),
]
name_of = operator.itemgetter(0)  # of a report or a repetition


@pytest.fixture
def patterned(sandbox):
    """A sandbox in which every byte of a report comes from the right place, or it shows."""
    sandbox.fill_with_pattern()
    sandbox.environment |= {"TZ": "IST-5:30", "POLICY_NAME": "%s%n"}  # a name is text, not a format
    values = {
        "psu[0].psuType": 2,  # so u16VinMax is shown
        # Texts that end before their fields do.
        "psu[0].psuFwVersion": b"1\0\7\t", "psu[0].psuBus.deviceName": b"hL\xe6\xe2\xeb\0",
        "reporting.activePolicyName": b"nJ\x0fQ\xbdl\xf1\xe3r\xf9\0",
        "reporting.vcoreVRData[0].DisplayName": b"O1\x9d\xca\xe0\0",
        # Numbers with fewer digits than are shown: an average reading, two samples, words in a list.
        "reporting.hour_oob_data[0].cups_cpu_usage": 7, "reporting.cpuSample[0]": 7,
        "global.sTolmPwrBudgetTypePWR.au16VRAmp[0]": 7, "global.sPSStateInfoPWR.u8Status[0]": 7}
    for path, value in values.items():
        sandbox.set(path, value)
    return sandbox


def split(text, repetition):
    """The lines before the records, those of each record, and those after them."""
    lines = lines_of(text)
    start = next(i for i, line in enumerate(lines) if re.match(repetition.opening, line))
    named = [next((i for i, line in enumerate(lines) if repetition.name.format(number) in line), start)
             for number in (repetition.first, repetition.first + 1)]
    size = max(1, named[1] - named[0])  # in lines; a name without a number is on every line
    ends = [start + i * size for i in range(repetition.count + 1)]
    return lines[:start], [lines[i:i + size] for i in ends[:-1]], lines[ends[-1]:]


def abridged_report(text, report):
    """The text with only the first of the records that repeat."""
    for repetition in report.repetitions:
        before, (first, *others), after = split(text, repetition)
        text = "".join([*before, *first, f"({sum(map(len, others))} lines)\n", *after])
    return text


def records_of(sandbox, report, repetition):
    """The text of each record, with "#" for the record's own name."""
    _, records, _ = split(sandbox.run(*report.arguments.split()).out, repetition)
    return ["".join(record).replace(repetition.name.format(number), "#")
            for number, record in enumerate(records, repetition.first)]


@pytest.mark.parametrize("report", [report for report in REPORTS if report.golden], ids=name_of)
def test_golden(patterned, report):
    outcome = patterned.run(*report.arguments.split())
    compare_with_golden(report.golden, abridged_report(outcome.out, report))
    assert outcome.status == 0


def test_signs(sandbox):
    """If all bits are set, the signed numbers are those that show as -1."""
    sandbox.fill(0xFF)
    text = "".join(abridged_report(sandbox.run(*report.arguments.split()).out, report) for report in REPORTS
                   if report.arguments != "-u -p -a")
    compare_with_golden("signed-numbers.txt", "".join(dict.fromkeys(re.findall(".* -1\n", text))))


@pytest.mark.parametrize("report, repetition", [(r, one) for r in REPORTS for one in r.repetitions], ids=name_of)
def test_a_record_shows_the_same_in_every_place(patterned, report, repetition):
    """If each record moves to the next place, and the last to the first, only their numbers change."""
    before = records_of(patterned, report, repetition)
    assert len(set(before)) > 1
    for section, start, size in repetition.arrays:
        data = patterned.contents(section)[start:start + size * repetition.count]
        patterned.poke(section, start, data[-size:] + data[:-size])
    assert records_of(patterned, report, repetition) == before[-1:] + before[:-1]


@pytest.mark.parametrize("root, option, form", [
    ("reporting", "-r", "%.2f"), ("psu", "-e", "%.6f"), ("upm", "-u", "%g")])
def test_floating_point_numbers_show_as_printf_prints_them(sandbox, root, option, form):
    """Random numbers of every magnitude, some infinite or NaN, many exactly half way between two printable values."""
    odd = [0.375, -0.125, -0.0, math.inf, -math.inf, math.nan, -math.nan, 3.4e38, 1e15, 9.999999e8,
           5e-324, 0.999999999, 123456.5, 1e-5, 999999.5]
    rng = random.Random(1)
    fields = [field for field in sandbox.build.fields.values() if field.is_real and field.root == root]
    for _ in range(6):
        expected = []
        for field in fields:
            number, = struct.unpack("<f", rng.randbytes(4))
            sandbox.set(field.path, rng.choice([number, rng.randrange(-2**17, 2**24) / 128, rng.randrange(2**16) / -8,
                                                rng.choice(odd)]))
            number = field.unpack(sandbox.bytes_of(field))
            sign = "-" if math.isnan(number) and math.copysign(1, number) < 0 else ""  # Python prints none
            expected.append((field.path.rpartition(".")[2], sign + form % number))
        shown = re.findall(r"\.([^ .]+) [- ]*-- ?(\S+)$", sandbox.run(option).out, re.M)
        assert sorted(expected) == sorted(pair for pair in shown if pair[0] in dict(expected))


def test_policies_show_as_one_by_one(sandbox):
    """The dump has two more blanks before each line, and an unsigned power limit. The library is asked for the
    name on every line."""
    sandbox.fill_with_pattern()
    ones = [sandbox.run("-u", "-p", str(policy)) for policy in range(16)]
    together, dump = sandbox.run("-u", "-p", "-a"), sandbox.run("-u")
    names = [f"name {policy}" for policy in range(16) for _ in range(ones[0].out.count("(0)."))]
    assert sum((one.only("name") for one in ones), []) == together.only("name") == dump.only("name") == names

    heading = ones[0].out[:ones[0].out.rindex("---\n") + 4]
    fields = [one.out.removeprefix(heading) for one in ones]
    separator = 42 * ">" + 41 * "<" + "\n"
    assert together.out == heading + "".join(separator + lines + separator for lines in fields)
    separator = 10 * " " + 46 * ">" + 42 * "<" + 9 * " " + "\n"
    signed = "".join(separator + re.sub("^ ", "   ", lines, flags=re.M) + separator for lines in fields)
    unsigned = re.sub(r"(?<=policyPowerLimit ----- )-\d+", lambda match: str(2**32 + int(match[0])), signed)
    assert signed != unsigned == dump.out[-len(unsigned):]


def test_offsets_have_the_labels_of_the_dump(sandbox):
    """-o prints the dump's labels with offsets for values. In the golden file, "-" is such a line and "+" a line of
    -o that differs."""
    offsets = {field.path.removesuffix("[0]"): field.offset for field in sandbox.build.fields.values()}
    labels = re.findall(r"^(   ([\w.]+)(?:\[\])? *-+|$)(?: .*)?\n", sandbox.run("-d").out, re.M)
    lines = [label and f"{label} {offsets['global.' + name]}" for label, name in labels]
    different = difflib.ndiff([line + "\n" for line in lines], lines_of(sandbox.run("-o").out))
    compare_with_golden("global-offsets.txt", "".join(line for line in different if line[0] in "+-"))


def test_parts_of_the_dump_have_reports_of_their_own(sandbox):
    """Their lines differ in the first word. One line of the limits is only in the report of these."""
    sandbox.fill_with_pattern()
    dump = sandbox.run("-u").out
    heading, limits, thermal, _ = re.split("(?<=\n)(?=   sPowerReport.CpuPwrCons.0|\n   CPU|\n   Policy)", dump)
    status = int.from_bytes(sandbox.bytes_of(sandbox.build.fields["upm.powerLimits.plStatus"]), "little", signed=True)
    line = f"   sPowerReport.powerLimits.plStatus ----- {status}\n"
    limits = re.sub("(?=   sPowerReport.powerLimits.cpuPLAvail)", line, limits)
    for arguments, word, part in ("-u -t", "sThermalSection", thermal), ("-u -p -c", "sCpuPwrLimits", limits):
        assert sandbox.run(*arguments.split()).out == heading + part.replace("sPowerReport", word)


@pytest.mark.parametrize("command", entries_of(EDGES))
def test_edge_values(sandbox, command):
    """The lines that match the last word. A setting whose name is a path is the value of that field."""
    sandbox.environment, words = settings_and_words(command)
    for path in sandbox.build.fields.keys() & sandbox.environment.keys():
        sandbox.set(path, int(sandbox.environment.pop(path)))
    *arguments, pattern = words.split()
    outcome = sandbox.run(*arguments)
    lines = [line for line in lines_of(outcome.out) if re.search(pattern, line)]
    compare_with_entry(EDGES, command, str(outcome.status), "".join(lines))


def test_the_clear_writes_states_and_power_limits_only(sandbox):
    sandbox.fill_with_pattern()
    expected = bytearray(sandbox.contents(6))
    for policy in range(16):
        state = sandbox.build.fields[f"upm.policies[{policy}].state"].offset
        expected[state:state + 6] = bytes(6)  # and the power limit after it
    sandbox.run("-w", "-u", "-c")
    assert sandbox.contents(6) == expected
