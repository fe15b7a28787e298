"""Types command lines and Tab into a real bash and a real zsh and compares the words that they offer."""
import os
import re
import shlex
import shutil

import pexpect
import pytest
from harness import FORMS, ROOT, native

pytestmark = native
COMPLETION = shlex.quote(str(ROOT / "completion"))
POLICIES = " ".join(map(str, range(16)))

# For each shell: its arguments, its start-up file and that file's text. Tab inserts
# everything that is offered, Control-T completes, Control-O shows the line between two marks.
SHELLS = {
    "bash": (["--noprofile", "-i"], ".bashrc", f"""PS1='ready$ '; for file in {COMPLETION}/*.bash; do . "$file"; done
show() {{ printf '\\1%s\\2' "$READLINE_LINE"; }}; bind -x '"\\C-o": show'
bind '"\\t": insert-completions'; bind '"\\C-t": complete'
"""),
    "zsh": (["-d", "-i"], ".zshrc", f"""PS1='ready$ '; fpath=({COMPLETION} $fpath); autoload -Uz compinit
compinit -u -D; show() {{ printf '\\1%s\\2' "$BUFFER" >/dev/tty; }}; zle -N show; bindkey '^O' show
zle -C plain complete-word _generic; bindkey '^T' plain
zstyle ':completion:plain:*' completer _complete
zstyle ':completion:*' insert true; zstyle ':completion:*' completer _all_matches _complete
""")}

# The words that are offered after a program's name and these words. OPTIONS, ROOTS and COMMANDS are filled in below.
OFFERS = {
    "orbelstatprobe": {
        "": "OPTIONS", "-": "OPTIONS", "-d ": "OPTIONS", "-l ": "", "-l 5 ": "OPTIONS", "-l5 ": "OPTIONS",
        "-i -u ": "OPTIONS", "-- ": "", "-u ": "-h -p -t", "-du ": "-h -p -t", "-u -h ": "", "-u -t ": "",
        "-u -p ": "-a -c " + POLICIES, "-u -p 1": "1 10 11 12 13 14 15", "-u -p 3 ": "", "-w ": "-u",
        "-w -u ": "-c -m -p", "-w -u -c ": "OPTIONS", "-w -u -m ": "", "-w -u -p ": POLICIES,
        "-w -u -p 3 ": "-s", "-w -u -p 3 -s ": "0 1", "-w -u -p 3 -s 1 ": "OPTIONS",
        "-w -u -p 3 -s 1 -u -p 3 ": "", "-d > fi": "file-1", "-d >": "file-1", "-u -p 3 2>": "file-1",
        "-u -p 3 > x ": "", "> x -u ": "-h -p -t", "-u 2>x ": "-h -p -t"},
    "tolmfill": {"": "--check --force", "--force ": "", "> ": "file-1"},
    "orbelstatctl": {
        "": "COMMANDS", "--from /et": "/etc", "--from=/et": "--from=/etc",
        "--from x ": "COMMANDS", "--from=x get ": "ROOTS", "json --from x ": "ROOTS", "json upm u": "",
        "get -n upm --h": "--help", "undo fi": "file-1", "undo x fi": "", "diff -w -p config.in": "config.instHeadroom",
        "diff -p x x /et": "/etc",
        "save /et": "/etc", "save x /et": "", "diff x /et": "/etc",
        "get psu": " ".join(f"psu[{i}]" for i in [*range(12), "*"]), r"json psu\[1": "psu[1] psu[10] psu[11]",
        "get psu[0..3].psuB": "psu[0..3].psuBus", "metrics psu psu[*].Vi": "psu[*].Vin", "watch config.u": "",
        "list config.peakA": "config.peakAmpsTime config.peakAmpsStartTime", "table upm.po": "upm.policyState upm.powerLimits upm.policies",
        "table upm.powerLimits sysPL": "sysPL1 sysPL2",
        "table upm.policies sta": "state", "table psu[*] Pin psuBus.b": "psuBus.bus", "set - ": "",
        "set upm.timestamp=": "", "set a=1 upm.p": "upm.powerLimits upm.policies", "set upm.policies[3].n": "",
        "set upm.powerLimits.sys": "upm.powerLimits.sysPL1= upm.powerLimits.sysPL2=",
        "set - < fi": "file-1", "get upm > fi": "file-1"},
}
LINES = [(f"{program} {words}", offer) for program, of in OFFERS.items() for words, offer in of.items()]
COMPLETED = {  # with completion requested at each ^, each of these lines ends up as these words
    "get upm.timestamp psu": ["get up^.timest^psu", "get 'up^.timest^psu"], "get psu[": ["get 'psu^'"],
    "get upm.policies[3].state psu": ["get upm.polici^^3^^st^psu", "get 'upm.policies[3^^st^psu",
                                      r"get upm.policies\[3^^st^psu", 'get "upm.policies[3^^st^psu'],
    "set upm.policies[*].state=1": [r"set upm.policies\[\*^^st^1"],
    "table psu[0..3] psuBus.bus Pin": ["table 'psu[0..3]' psuB^.b^Pi^"]}


@pytest.fixture(scope="module", params=SHELLS)
def typed(build, request, tmp_path_factory):
    """Returns a function that types a line into a shell and returns the resulting line."""
    if not shutil.which(request.param):
        pytest.skip("there is no " + request.param)
    home, current = tmp_path_factory.mktemp("home"), tmp_path_factory.mktemp("current")
    arguments, start_file, start_text = SHELLS[request.param]
    (home / start_file).write_text(start_text)
    (current / "file-1").touch()
    environment = {**os.environ, "HOME": str(home), "ZDOTDIR": str(home), "TERM": "dumb",
                   "PATH": f"{build.directory}:{os.environ['PATH']}"}
    shell = pexpect.spawn(request.param, arguments, cwd=current, env=environment, timeout=60,
                          encoding="latin-1", dimensions=(24, 1000))
    shell.delaybeforesend = None
    shell.expect_exact("ready$ ")

    def result(line):
        shell.send(line + "\x0f\x15")  # Control-U empties the line
        shell.expect("\1([^\1\2]*)\2")
        return shell.match[1]
    yield result
    shell.close(force=True)


@pytest.mark.parametrize("line, offer", LINES, ids=[line for line, _ in LINES])
def test_offers(build, typed, line, offer):
    for name, words in ("OPTIONS", {form[:2] for form in [*FORMS, "-h", "-i", "-l"]}), ("ROOTS", build.roots), \
                       ("COMMANDS", list(build.help)[1:]):
        offer = offer.replace(name, " ".join(words))
    expected = re.sub("[^ >]*$", offer, line, count=1) if offer else line
    # zsh quotes brackets, and adds a slash to a directory.
    assert sorted(re.sub(r"\\(.)", r"\1", typed(line + "\t")).rstrip("/").split()) == sorted(expected.split()), \
        f"see completion/*{line.split()[0]}*"


def test_offers_every_option(build, typed):
    for command, text in build.help.items():
        options = set(re.findall(r"(?:^  |, )(--?[\w-]+)", text, re.M)) | ({"--help"} if command else set())
        options |= {"--from"} if "[--from" in text else set()
        offered = set(typed(f"orbelstatctl {command} -\t".replace("  ", " ")).replace("--from=", "--from").split()[1:])
        assert offered - {command, "-", "-h"} == options - {"-h"}, f"{command}: see completion/*orbelstatctl*"


def test_a_value_is_followed_by_operands(build, typed):
    for command, text in list(build.help.items())[1:]:
        for option in re.findall("^  (-[^ ]+) [A-Z]", text, re.M):
            operands, value, after = [typed(f"orbelstatctl {command} {words}\t").split()[2 + words.count(" "):]
                                      for words in ("", option + " ", option + " 1 ")]
            assert operands == after and (value != operands or not value), f"{option}: see completion/*orbelstatctl*"


@pytest.mark.parametrize("form", FORMS)
def test_offers_every_word_of_a_form(typed, form):
    words = re.sub("<.*?>", "1", "orbelstatprobe " + form).split()
    for number in range(1, len(words)):
        assert words[number] in typed(" ".join(words[:number]) + " \t").split()[number:]


@pytest.mark.parametrize("words, line", [(words, line) for words, of in COMPLETED.items() for line in of])
def test_completes(typed, words, line):
    assert shlex.split(typed("orbelstatctl " + line.replace("^", "\x14")))[1:] == words.split()
