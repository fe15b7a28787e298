"""What holds for every report: its golden, its repetitions, its failures; and the edges that those cannot show."""
import difflib
import math
import operator
import random
import re
import struct
import typing

import pytest
from harness import compare_with_golden, lines_of, unsanitized


class Repetition(typing.NamedTuple):
    """Records that a report shows one after the other in the same way."""
    opening: str  # a pattern for the beginning of the first one's text
    name: str  # of each, in its text: a format of its number
    count: int
    arrays: list  # that hold the records or parts of them: section, start and size of the first
    first: int = 0  # the number of the first


class Report(typing.NamedTuple):
    arguments: str
    golden: str  # "" if another test says what the report is made of
    section: int = None
    read_size: int = 0  # of its first read, in bytes
    failure_end: str = "\n"  # after a failure message
    repetitions: list = []  # in the order of the report

    def run(self, sandbox):
        return sandbox.run(*self.arguments.split())


GLOBAL, PSU, REPORTING, CONFIG = (39, 803), (7, 816), (6, 30277), (8, 224)
REPORTS = [
    Report("-o", ""),
    Report("-d", "global-dump.txt", *GLOBAL, repetitions=[
        Repetition("   CpuPowerStat", "CpuPowerStat[{}].", 4, [(39, 486, 17)]),
        Repetition("   MemPowerStat", "MemPowerStat[{}].", 8, [(39, 571, 17)])]),
    Report("-e", "psu-info.txt", *PSU, repetitions=[
        Repetition("sTolmAbsPSUInfo DATA", "INFO FOR PSU {} ::", 12, [(7, 0, 816), (7, 9792, 35)], 1),
        Repetition("       (0x.. ){16}\n", "row {}", 16, [(7, 26, 16)])]),
    Report("-r", "power-reporting.txt", *REPORTING, repetitions=[
        Repetition("   Last minute", "Last minute-{:2}\t", 60, [(6, 383, 8)]),
        Repetition("   Last hour", "Last hour-{:2}\t", 24, [(6, 863, 8)]),
        Repetition("   Last day", "Last day-{:2}\t", 14, [(6, 1055, 8)]),
        Repetition("   sPowerReportSection.CpuPwrCons", "CpuPwrCons[{}].", 5, [(6, 1183, 17)]),
        Repetition("   sPowerReportSection.MemPwrCons", "MemPwrCons[{}].", 9, [(6, 1268, 17)]),
        Repetition("   sPowerReportSection.vcoreVRData", "vcoreVRData[{}].", 20, [(6, 1525, 132)]),
        Repetition("   cpuSample", "cpuSample", 25, [(6, 28635, 1)])]),
    Report("-c", "power-config.txt", *CONFIG),
    Report("-u", "upm-dump.txt", *REPORTING, repetitions=[
        Repetition("          >>>", "-{0}({0}).", 16, [(6, 29029, 72)])]),
    Report("-u -t", "", *REPORTING),
    Report("-u -p -c", "", *REPORTING),
    Report("-u -p -a", "", *REPORTING, failure_end=""),
    Report("-u -p 7", "", *REPORTING, failure_end=""),
]
CLEAR = Report("-w -u -c", "", *REPORTING, failure_end="")
name_of = operator.itemgetter(0)  # of a report or of what repeats


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
    _, records, _ = split(report.run(sandbox).out, repetition)
    return ["".join(record).replace(repetition.name.format(number), "#")
            for number, record in enumerate(records, repetition.first)]


@pytest.mark.parametrize("report", [report for report in REPORTS if report.golden], ids=name_of)
def test_golden(patterned, report):
    outcome = report.run(patterned)
    compare_with_golden(report.golden, abridged_report(outcome.out, report))
    assert outcome.status == 0


def test_signs(sandbox):
    """If all bits are set, the signed numbers are those that show as -1."""
    sandbox.fill(0xFF)
    text = "".join(abridged_report(report.run(sandbox).out, report) for report in REPORTS
                   if report.arguments != "-u -p -a")
    compare_with_golden("signed-numbers.txt", "".join(dict.fromkeys(re.findall(".* -1\n", text))))


@pytest.mark.parametrize("report, repetition", [(r, one) for r in REPORTS for one in r.repetitions],
                         ids=name_of)
def test_a_record_shows_the_same_in_every_place(patterned, report, repetition):
    """With every record moved to the next one's place, and the last to the first one's, each shows as it did
    before, but for its number."""
    before = records_of(patterned, report, repetition)
    assert len(set(before)) > 1
    for section, start, size in repetition.arrays:
        data = patterned.contents(section)[start:start + size * repetition.count]
        patterned.poke(section, start, data[-size:] + data[:-size])
    assert records_of(patterned, report, repetition) == before[-1:] + before[:-1]


failing = pytest.mark.parametrize("report", [r for r in [*REPORTS, CLEAR] if r.section], ids=name_of)


@failing
def test_a_refused_read_is_told(sandbox, report):
    sandbox.environment["FAIL_READ"] = "1:7"
    outcome = report.run(sandbox)
    assert outcome.out == "ERROR reading data from shm! ret=7" + report.failure_end
    assert (outcome.calls, outcome.status) == ([f"read {report.section} 0 {report.read_size}"], 0)


@unsanitized
@failing
def test_out_of_memory_is_reported(sandbox, report):
    sandbox.environment["FAIL_MALLOC"] = report.read_size
    outcome = report.run(sandbox)
    assert outcome.out == f"ERROR with malloc sizeof {report.read_size}!" + report.failure_end
    assert (outcome.calls, outcome.status) == ([], 0)


def test_a_bus_record_that_cannot_be_read_shows_as_zeros(sandbox):
    sandbox.fill_with_pattern()
    whole = sandbox.run("-e").out
    sandbox.environment["FAIL_READ"] = "4:3"
    out = sandbox.run("-e").out
    sandbox.environment.clear()
    sandbox.set("psu[1].psuBus.bus", bytes(35))
    assert out != whole
    assert sandbox.run("-e").out == out


def printed(form, number):
    """As printf prints it: unlike Python it shows the sign of what is no number."""
    return ("-" if math.isnan(number) and math.copysign(1, number) < 0 else "") + form % number


@pytest.mark.parametrize("root, option, form", [
    ("reporting", "-r", "%.2f"), ("psu", "-e", "%.6f"), ("upm", "-u", "%g")])
def test_floating_point_numbers_show_as_printf_prints_them(sandbox, root, option, form):
    """Numbers of any size, some of no finite size, many half way between two that can be shown."""
    odd = [0.375, -0.125, -0.0, math.inf, -math.inf, math.nan, -math.nan, 3.4e38, 1e15, 9.999999e8,
           5e-324, 0.999999999, 123456.5, 1e-5, 999999.5]
    rng = random.Random(1)
    fields = [field for field in sandbox.build.fields.values() if field.is_real and field.root == root]
    labels = {field.path.rpartition(".")[2] for field in fields}
    for _ in range(6):
        expected = []
        for field in fields:
            any_bits, = struct.unpack("<f", rng.randbytes(4))
            number = rng.choice([any_bits, rng.randrange(-2**17, 2**24) / 128, rng.randrange(2**16) / -8,
                                    rng.choice(odd)])
            sandbox.set(field.path, number)
            expected.append((field.path.rpartition(".")[2], printed(form, field.unpack(field.pack(number)))))
        shown = re.findall(r"\.([^ .]+) [- ]*-- ?(\S+)$", sandbox.run(option).out, re.M)
        assert sorted(expected) == sorted(pair for pair in shown if pair[0] in labels)


# What is peculiar to the UPM reports and the policy writes.

def test_policies_show_as_one_by_one(sandbox):
    """The dump has two blanks more before each line, and an unsigned power limit. On every line the library is
    asked for the name."""
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
    """-o prints the dump's labels with offsets for values; in the golden "-" is such a line, "+" what -o has."""
    offsets = {field.path.removesuffix("[0]"): field.offset for field in sandbox.build.fields.values()}
    labels = re.findall(r"^(   ([\w.]+)(?:\[\])? *-+|$)(?: .*)?\n", sandbox.run("-d").out, re.M)
    lines = [label and f"{label} {offsets['global.' + name]}" for label, name in labels]
    different = difflib.ndiff([line + "\n" for line in lines], lines_of(sandbox.run("-o").out))
    compare_with_golden("global-offsets.txt", "".join(line for line in different if line[0] in "+-"))


def test_parts_of_the_dump_have_reports_of_their_own(sandbox):
    """With the same lines but for the first word of each; one line of the limits is in their report alone."""
    sandbox.fill_with_pattern()
    dump = sandbox.run("-u").out
    heading, limits, thermal, _ = re.split("(?<=\n)(?=   sPowerReport.CpuPwrCons.0|\n   CPU|\n   Policy)", dump)
    status = int.from_bytes(sandbox.bytes_of(sandbox.build.fields["upm.powerLimits.plStatus"]), "little", signed=True)
    line = f"   sPowerReport.powerLimits.plStatus ----- {status}\n"
    limits = re.sub("(?=   sPowerReport.powerLimits.cpuPLAvail)", line, limits)
    for arguments, word, part in ("-u -t", "sThermalSection", thermal), ("-u -p -c", "sCpuPwrLimits", limits):
        assert sandbox.run(*arguments.split()).out == heading + part.replace("sPowerReport", word)


EDGES = [
    *(("-u -p 0", f"PolicyDomain ----- {domain} ({name})\n", {"upm.policies[0].PolicyDomain": domain}, {})
      for domain, name in enumerate(["cpu", "mem", "system", "gpu", "unknown"])),
    ("-u -p 0", "65535 (unknown)\n", {"upm.policies[0].PolicyDomain": 65535}, {}),
    ("-u -p 4", 300 * "N" + "-4(4).state -", {}, {"POLICY_NAME": 300 * "N"}),
    ("-u -p 4", "\n (null)(4).state -", {}, {"POLICY_NAME": ""}),  # which is none
    ("-e", "PinMax ------------- 0\n   sPSUPwrSection.u16VinDCMax ------------- -3\n   sPSUPwrSection.u16IinMax",
     {"psu[0].psuType": 1, "psu[0].u16VinDCMax": 2**32 - 3}, {}),
    *(("-u -t", f"Timestamp: {text}\n", {"upm.timestamp": milliseconds}, {"FAIL_CALL": failing})
      for milliseconds, text, failing in [
          (0, "Thu Jan 01 00:00:00.000 1970", ""), (0, "<invalid time>", "localtime_r"),
          (253402300800000, "Sat Jan 01 00:00:00.000 10000", ""), (0, "<formatting error>", "strftime"),
          (315507352780799999, "Fri Dec 31 23:59:59.999 9999999", ""),
          (315507352780800000, "<formatting error>", ""), (2**64 - 1, "<formatting error>", "")]),
]


@pytest.mark.parametrize("arguments, text, fields, environment", EDGES)
def test_edge_values(sandbox, arguments, text, fields, environment):
    sandbox.environment = environment
    for path, value in fields.items():
        sandbox.set(path, value)
    assert text in sandbox.run(*arguments.split()).out


def test_policy_writes_touch_nothing_else(sandbox):
    sandbox.fill_with_pattern()
    states = [sandbox.build.fields[f"upm.policies[{policy}].state"].offset for policy in range(16)]
    expected = bytearray(sandbox.contents(6))
    sandbox.run("-w", "-u", "-p", "2", "-s", "1")
    expected[states[2]:states[2] + 2] = b"\1\0"
    assert sandbox.contents(6) == expected
    outcome = sandbox.run("-w", "-u", "-c")
    for state in states:
        expected[state:state + 6] = bytes(6)  # and the power limit after it
    assert sandbox.contents(6) == expected
    assert [call[:20] for call in outcome.only("write")] == ["write 6 29013 1176: "]
