"""Types command lines and Tab into a real bash and a real zsh and compares what they offer."""
import os
import re
import shutil

import pexpect
import pytest
from harness import FORMS, ROOT

pytestmark = pytest.mark.builds("release")
COMPLETION = ROOT / "completion"
POLICIES = " ".join(map(str, range(16)))

# Of each shell its command, the file that it starts with and the text of that. Tab inserts
# everything that is offered, Control-T completes, Control-O shows the line between two marks.
SHELLS = {
    "bash": (["--noprofile", "-i"], ".bashrc", f"""PS1='ready$ '; for file in {COMPLETION}/*.bash; do . "$file"; done
show() {{ printf '\\1%s\\2' "$READLINE_LINE"; }}; bind -x '"\\C-o": show'
bind '"\\t": insert-completions'; bind '"\\C-t": complete'
"""),
    "zsh": (["-d", "-i"], ".zshrc", f"""PS1='ready$ '; fpath=({COMPLETION} $fpath); autoload -Uz compinit; compinit -u -D
show() {{ printf '\\1%s\\2' "$BUFFER" >/dev/tty; }}; zle -N show; bindkey '^O' show
zle -C plain complete-word _generic; bindkey '^T' plain
zstyle ':completion:plain:*' completer _complete
zstyle ':completion:*' insert true; zstyle ':completion:*' completer _all_matches _complete
""")}

# What stands for words that the test reads off the programs.
OFFERS = {
    "orbelstatprobe ": "OPTIONS", "orbelstatprobe -": "OPTIONS", "orbelstatprobe -d ": "OPTIONS",
    "orbelstatprobe -l ": "", "orbelstatprobe -l 5 ": "OPTIONS", "orbelstatprobe -l5 ": "OPTIONS",
    "orbelstatprobe -i -u ": "OPTIONS", "orbelstatprobe -- ": "", "orbelstatprobe -u ": "-h -p -t",
    "orbelstatprobe -du ": "-h -p -t", "orbelstatprobe -u -h ": "", "orbelstatprobe -u -t ": "",
    "orbelstatprobe -u -p ": "-a -c " + POLICIES, "orbelstatprobe -u -p 1": "1 10 11 12 13 14 15",
    "orbelstatprobe -u -p 3 ": "", "orbelstatprobe -w ": "-u", "orbelstatprobe -w -u ": "-c -m -p",
    "orbelstatprobe -w -u -c ": "OPTIONS", "orbelstatprobe -w -u -m ": "",
    "orbelstatprobe -w -u -p ": POLICIES, "orbelstatprobe -w -u -p 3 ": "-s",
    "orbelstatprobe -w -u -p 3 -s ": "0 1", "orbelstatprobe -w -u -p 3 -s 1 ": "OPTIONS",
    "orbelstatprobe -w -u -p 3 -s 1 -u -p 3 ": "", "orbelstatprobe -d > fi": "file-1",
    "orbelstatprobe -d >": "file-1", "orbelstatprobe -u -p 3 2>": "file-1",
    "orbelstatprobe -u -p 3 > x ": "", "orbelstatprobe > x -u ": "-h -p -t",
    "orbelstatprobe -u 2>x ": "-h -p -t",
    "tolmfill ": "--check --force", "tolmfill --force ": "", "tolmfill > ": "file-1",
    "orbelstatctl ": "COMMANDS", "orbelstatctl get ": "ROOTS",
    "orbelstatctl get ps": "psu", "orbelstatctl get psu": " ".join(f"psu[{i}]" for i in range(12)),
    r"orbelstatctl json psu\[1": "psu[1] psu[10] psu[11]", "orbelstatctl list psu[3].psuB": "psu[3].psuBus",
    "orbelstatctl get upm.policies": " ".join(f"upm.policies[{i}]" for i in range(16)),
    "orbelstatctl get config.peakA": "config.peakAmpsTime config.peakAmpsStartTime",
    "orbelstatctl get config.u": "", "orbelstatctl get upm config.inst": "config.instHeadroom",
    "orbelstatctl json upm ": "", "orbelstatctl save /et": "/etc", "orbelstatctl set --": "--dry-run",
    "orbelstatctl set - ": "", "orbelstatctl set upm.p": "upm.powerLimits upm.policies",
    "orbelstatctl set --dry-run c": "", "orbelstatctl set upm.powerLimits.sysPL1=1 u": "upm",
    "orbelstatctl set upm.timestamp=": "",
    "orbelstatctl set upm.powerLimits.sys": "upm.powerLimits.sysPL1= upm.powerLimits.sysPL2=",
    "orbelstatctl set - < fi": "file-1", "orbelstatctl get upm > fi": "file-1",
}
COMPLETED = {  # which leaves the line ready to be gone on with
    "orbelstatctl get up": "get upm", "orbelstatctl get upm.timest": "get upm.timestamp ",
    "orbelstatctl get 'psu": "get 'psu[",
    "orbelstatctl set upm.powerLimits.sysPL1": "set upm.powerLimits.sysPL1=",
}


@pytest.fixture(scope="module", params=SHELLS)
def typed(build, request, tmp_path_factory):
    """What becomes of a line in a shell after a key has been typed."""
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

    def result(line, key):
        shell.send(f"{line}{key}\x0f\x15")  # Control-U empties the line
        shell.expect("\1([^\1\2]*)\2")
        return shell.match[1]
    yield result
    shell.close(force=True)


@pytest.mark.parametrize("line", OFFERS)
def test_offers(build, typed, line):
    letters = {form[:2] for form in [*FORMS, "-h", "-i", "-l"]}
    words = OFFERS[line].replace("OPTIONS", " ".join(sorted(letters)))
    words = words.replace("ROOTS", " ".join(build.roots)).replace("COMMANDS", " ".join(sorted(build.commands)))
    # zsh quotes brackets, and has a directory end in a slash.
    shown = re.sub(r"\\(.)", r"\1", typed(line, "\t")).rstrip("/")
    assert sorted(shown.split()) == sorted((re.sub("[^ >]*$", words, line, count=1) if words else line).split())


@pytest.mark.parametrize("form", FORMS)
def test_offers_every_word_of_a_form(typed, form):
    words = re.sub("<.*?>", "1", "orbelstatprobe " + form).split()
    for number in range(1, len(words)):
        assert words[number] in typed(" ".join(words[:number]) + " ", "\t").split()[number:]


@pytest.mark.parametrize("line", COMPLETED)
def test_completes(typed, line):
    assert typed(line, "\x14") == "orbelstatctl " + COMPLETED[line]
