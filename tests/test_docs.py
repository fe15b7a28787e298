"""Checks the documentation against the built programs: every option, command, path and file is in each list of its
kind, and README's examples work as printed."""
import itertools
import os
import re
import shutil
import string
import subprocess
from datetime import date, datetime
from email.utils import parsedate_to_datetime

import pytest
from harness import FORMS, ROOT, entries_of, golden, native
from test_reports import REPORTS

pytestmark = native
README = (ROOT / "README.md").read_text()
PROGRAMS = "orbelstatprobe", "orbelstatctl", "tolmfill"
MANUALS = {name: (ROOT / "man" / f"{name}.1").read_text() for name in PROGRAMS}
LETTERS = [form for form in FORMS if len(form) == 2]


def part_of(manual, heading):
    """The text of a section of a manual page, without the marks of arguments and options."""
    return re.search(rf"^\.Sh {heading}\n(.*?)(?=^\.Sh|\Z)", MANUALS[manual], re.M | re.S)[1]


def expect(file, pattern, text=None):
    """Fails, with the file's name, unless the pattern is in the file or in this text from it."""
    if not re.search(pattern, (ROOT / file).read_text() if text is None else text, re.M):
        pytest.fail(f"{file}: nothing matches {pattern}", pytrace=False)


def test_every_letter_is_in_the_usage_text(sandbox):
    known = {f"-{letter}" for letter in string.ascii_letters + string.digits
             if "invalid option" not in sandbox.run(f"-{letter}").err}
    assert known == {*LETTERS, "-w", "-h", "-i", "-l"}, "see src/cli/help.cpp and tests/golden/usage.txt"
    assert sandbox.run("-h").out == golden("usage.txt"), "see src/cli/help.cpp and tests/golden/usage.txt"


@pytest.mark.parametrize("form", FORMS)
def test_a_form_is_described(form):
    synopsis = re.sub(r"Ar \w+|Cm 0 \| 1", "1", part_of("orbelstatprobe", "SYNOPSIS").replace("Fl ", ""))
    words = re.sub("<.*?>", "1", form)
    expect("man/orbelstatprobe.1", rf"^\.(. \| )*{words.replace('-', '')}( \||$)", synopsis)
    expect("README.md", rf"^\| `{form}` \|")
    if not form.startswith("-w"):
        arguments = re.sub("<.*?>", "7", form)
        assert arguments in [report.arguments for report in REPORTS], "see tests/test_reports.py"
        for failure in ("FAIL_READ=1:7; ", r"FAIL_MALLOC=\d+; ") if form not in ("-o", "-u -h") else ():
            expect("tests/golden/command-lines.txt", rf"^\$ {failure}{arguments} ->")


@pytest.mark.parametrize("letter", LETTERS)
def test_a_letter_is_described(letter):
    expect("man/orbelstatprobe.1", rf"^\.It Fl {letter[1]}$")
    expect("tests/fuzz_test.cpp", f'"{letter}",')
    if letter != "-o":  # which reads none
        expect("README.md", rf"^\| .*\| `section.*`{letter}`")
        expect("man/orbelstatprobe.1", rf"Fl {letter[1]}\b", part_of("orbelstatprobe", "FILES"))


def test_the_order_of_reports_is_described(sandbox):
    """Each report takes precedence over the next one in the order that is in README and in the manual page."""
    orders = [re.search(r"in (?:the|this)\s+order(.*?)\.\n", text, re.S)[1]
              for text in (README, part_of("orbelstatprobe", "DESCRIPTION"))]
    letters = [re.findall(pattern, order) for pattern, order in zip([r"`-(.)`", r"Fl (\w)"], orders)]
    assert letters[0] == letters[1], "README.md and man/orbelstatprobe.1 differ"
    order = [f"-{letter}" for letter in letters[0] if f"-{letter}" in LETTERS]
    assert sorted(order) == sorted(LETTERS), "see README.md and man/orbelstatprobe.1"
    for first, second in itertools.pairwise(order):
        words = [first, second] if second == "-u" else [second, first]  # words after -u would be its own
        assert sandbox.run(*words) == sandbox.run(first), "see src/cli/command_line.cpp"


def usages_in_the_manual():
    """The lines of orbelstatctl's SYNOPSIS that have a command, in the form of the help texts."""
    for form in re.findall(r"^\.(?:Op Fl -from.*\n\.)?Cm .*", part_of("orbelstatctl", "SYNOPSIS"), re.M):
        for pattern, text in [(r"\.Op (.*)\n\.", r"[\1] "), (r"\bOp (.*)", r"[\1]"), ("Oo ", "["), (" Oc", "]"), ("Cm |^\\.", ""),
                              (r"Ar (\w+)", lambda match: match[1].upper()), (" Ns | Ns$", ""), (r"Fl ?([\w-]*)", r"-\1")]:
            form = re.sub(pattern, text, form)
        yield "Usage: orbelstatctl " + form


def test_commands_are_described(build):
    """The usage of a command is that of the manual page; every option in it is known, explained and tested."""
    for usage, (command, text) in zip(usages_in_the_manual(), list(build.help.items())[1:], strict=True):
        files = f"see orbelstatctl/{command}.cpp and man/orbelstatctl.1"
        assert usage == text.partition("\n")[0], files
        letters = [f"-{letter}" for word in re.findall(r"\[-(\w+)", usage) for letter in word]
        options = letters + re.findall(r"\[(--(?!from)[\w-]+)", usage)
        assert re.findall("^  (-[^ ]+)", text, re.M) == options, files
        item = re.search(rf"^\.It Cm {command}\n(.*?)\n\.(It|El)", part_of("orbelstatctl", "COMMANDS"), re.M | re.S)[1]
        for option in options:
            outcome = subprocess.run(build.command("orbelstatctl", command, option, "-h"), capture_output=True, text=True)
            assert "unknown option" not in outcome.stderr, "see orbelstatctl/command_line.cpp"
            expect("man/orbelstatctl.1", rf"^\.Fl {option[1:]}\b", item + part_of("orbelstatctl", "ASSIGNMENTS"))
            word = rf"-\w*{option[1:]}\w*" if len(option) == 2 else option
            assert any(re.search(rf"\b{command} (.* )?{word} ", entry + " ") for entry in entries_of("orbelstatctl.txt")), \
                f"tests/golden/orbelstatctl.txt: no entry has {command} {option}"


def test_messages_in_the_manual_are_those_of_the_transcript():
    for form in re.findall('^.It "(.*)"', part_of("orbelstatctl", "DIAGNOSTICS"), re.M):
        pattern = re.escape(form).replace("%d", "-?[0-9]+").replace("%s", ".+")
        assert re.search(r"(^|\| )orbelstatctl: " + pattern, golden("orbelstatctl.txt"), re.M), form


def test_roots_are_described(build):
    """In the list of paths, in README's table of sections and among the files."""
    for root, section in {(field.root, field.section) for field in build.fields.values()}:
        assert re.search(rf"^\.It Sy {root}\b", MANUALS["orbelstatctl"], re.M), root
        assert re.search(rf"^\|.*`section-{section}` \| {build.sizes[section]} .*`{root}`", README, re.M), root
        assert re.search(rf"^(and )?{section}$", part_of("orbelstatprobe", "FILES"), re.M), root


def test_versions_and_dates_agree(build):
    """The latest version in CHANGELOG.md is released if its heading has a date."""
    version, day = re.search("^## (.*)", (ROOT / "CHANGELOG.md").read_text(), re.M)[1].split(", ")
    is_released = day != "unreleased"
    packaged, distribution, time = re.match(r"\S+ \((.*?)\) (.*?);.*?\n -- .*?>  (.*?)\n",
                                            (ROOT / "debian/changelog").read_text(), re.S).groups()
    assert (packaged, distribution) == ((version, "unstable") if is_released else (version + "~dev", "UNRELEASED"))
    assert f"project(orbelstatprobe VERSION {version} " in (ROOT / "CMakeLists.txt").read_text()
    assert subprocess.check_output(build.command("orbelstatctl", "--version"), text=True) == f"orbelstatctl {version}\n"
    dates = {parsedate_to_datetime(time).date()}
    for manual in MANUALS.values():
        dates.add(datetime.strptime(manual.partition("\n")[0], ".Dd %B %d, %Y").date())
    assert not is_released or dates == {date.fromisoformat(day)}


@pytest.fixture
def shell(build, tmp_path):
    """Runs commands in bash, with demo data, in a directory that looks like the project's."""
    programs = tmp_path / "build/release"
    programs.mkdir(parents=True)
    for name in PROGRAMS:
        (programs / name).symlink_to(build.directory / name)
    environment = {**os.environ, "TOLM_SHM_DIR": str(tmp_path / "sections"),
                   "PATH": f"{programs}:{os.environ['PATH']}"}
    subprocess.run([programs / "tolmfill"], check=True, env=environment)
    return lambda commands: subprocess.run(["bash", "-e", "-o", "pipefail", "-c", commands], cwd=tmp_path,
                                           env=environment, capture_output=True, text=True)


def test_the_excerpt_shows_real_output(shell):
    excerpt = re.search("^```console\n(.*?)^```", README, re.M | re.S)[1]
    assert excerpt == "".join(f"$ {command}\n{shell(command).stdout}"
                              for command in re.findall(r"^\$ (.*)", excerpt, re.M))


def test_labels_lead_to_paths(shell):
    """The label and the path in each row of README's table have the same value."""
    rows = re.findall(r"^\| `(\S+)`(?: of (PSU \d+))? \(`(-.)`\) \| `(\S+)`", README, re.M)
    assert rows
    for label, start, option, path in rows:
        report = shell(f"orbelstatprobe {option}").stdout
        printed = re.search(re.escape(label) + " -+ (.*)", report[report.index(start):])[1]
        assert float(printed) == float(shell(f"orbelstatctl get -n {path}").stdout), label


def test_the_examples_work(shell):
    """Runs those with orbelstatctl in the order of README."""
    examples = [block for block in re.findall("(?:^    .*\n)+", README, re.M) if "orbelstatctl" in block]
    examples = [block for block in examples if "gnuplot" not in block or shutil.which("gnuplot")]
    assert examples
    for block in examples:
        result = shell(block)
        assert result.returncode == 0, block + result.stderr
