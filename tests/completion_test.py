#!/usr/bin/env python3
"""Types command lines and Tab into a real bash and a real zsh and compares what they offer."""
import os, pathlib, pty, re, select, shutil, signal, subprocess, sys, tempfile

completion = pathlib.Path(__file__).resolve().parent.parent / "completion"
usage = subprocess.getoutput(sys.argv[1] + "/orbelstatprobe -h")
options = " ".join(sorted({"-h", "-i", "-l", *re.findall("orbelstatprobe (-[a-z])", usage)}))
policies = " ".join(map(str, range(16)))
fields = subprocess.getoutput(sys.argv[1] + "/orbelstatctl list")
roots = " ".join(dict.fromkeys(re.findall(r"^\w+", fields, re.M)))
offers = {  # behind "orbelstatprobe "; the current directory holds file-1
    "": options, "-": options, "-d ": options, "-l ": "", "-l 5 ": options, "-l5 ": options,
    "-i -u ": options, "-- ": "", "-u ": "-h -p -t", "-du ": "-h -p -t", "-u -h ": "", "-u -t ": "",
    "-u -p ": "-a -c " + policies, "-u -p 1": "1 10 11 12 13 14 15", "-u -p 3 ": "", "-w ": "-u",
    "-w -u ": "-c -m -p", "-w -u -c ": options, "-w -u -m ": "", "-w -u -p ": policies,
    "-w -u -p 3 ": "-s", "-w -u -p 3 -s ": "0 1", "-w -u -p 3 -s 1 ": options,
    "-w -u -p 3 -s 1 -u -p 3 ": "", "-d > fi": "file-1", "-d >": "file-1", "-u -p 3 2>": "file-1",
    "-u -p 3 > x ": "", "> x -u ": "-h -p -t", "-u 2>x ": "-h -p -t",
}
lines = {"orbelstatprobe " + line: words for line, words in offers.items()}
lines |= {"tolmfill ": "--check --force", "tolmfill --force ": "", "tolmfill > ": "file-1"}
indices = lambda name, count: " ".join(f"{name}[{i}]" for i in range(count))
offers = {  # behind "orbelstatctl "
    "": "get json list save set --help --version", "get ": roots,
    "get ps": "psu", "get psu": indices("psu", 12), r"json psu\[1": "psu[1] psu[10] psu[11]",
    "list psu[3].psuB": "psu[3].psuBus", "get upm.policies": indices("upm.policies", 16),
    "get config.peakA": "config.peakAmpsTime config.peakAmpsStartTime", "get config.u": "",
    "get upm config.inst": "config.instHeadroom", "json upm ": "", "save /et": "/etc",
    "set --": "--dry-run", "set - ": "", "set upm.p": "upm.powerLimits upm.policies",
    "set --dry-run c": "", "set upm.powerLimits.sysPL1=1 u": "upm", "set upm.timestamp=": "",
    "set upm.powerLimits.sys": "upm.powerLimits.sysPL1= upm.powerLimits.sysPL2=",
    "set - < fi": "file-1", "get upm > fi": "file-1",
}
lines |= {"orbelstatctl " + line: words for line, words in offers.items()}
completed = {  # by Control-T, which leaves the line ready to be gone on with
    "get up": "get upm", "get upm.timest": "get upm.timestamp ", "get 'psu": "get 'psu[",
    "set upm.powerLimits.sysPL1": "set upm.powerLimits.sysPL1=",
}

# Tab inserts everything that is offered, Control-O shows the line between two marks.
bash = f"""PS1='ready$ '; for file in {completion}/*.bash; do . "$file"; done
show() {{ printf '\\1%s\\2' "$READLINE_LINE"; }}; bind -x '"\\C-o": show'
bind '"\\t": insert-completions'; bind '"\\C-t": complete'"""
zsh = f"""PS1='ready$ '; fpath=({completion} $fpath); autoload -Uz compinit; compinit -u -D
show() {{ printf '\\1%s\\2' "$BUFFER" >/dev/tty; }}; zle -N show; bindkey '^O' show
zle -C plain complete-word _generic; bindkey '^T' plain
zstyle ':completion:plain:*' completer _complete
zstyle ':completion:*' insert true; zstyle ':completion:*' completer _all_matches _complete"""

def read_until(terminal, pattern):
    text = ""
    while not (found := re.search(pattern, text)):
        if not select.select([terminal], [], [], 60)[0]:
            sys.exit(f"no {pattern!r} within a minute, only {text!r}")
        text += os.read(terminal, 4096).decode()
    return found

def count_faults(shell, start_file, start_text):
    if not shutil.which(shell[0]):
        print(shell[0], "is missing: its completion is not tested")
        return 0
    faults = 0
    with tempfile.TemporaryDirectory() as home, tempfile.TemporaryDirectory() as current:
        pathlib.Path(home, start_file).write_text(start_text)
        pathlib.Path(current, "file-1").touch()
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(current)
            settings = {"HOME": home, "ZDOTDIR": home, "TERM": "dumb"}
            settings["PATH"] = sys.argv[1] + ":" + os.environ["PATH"]
            os.execvpe(shell[0], shell, os.environ | settings)
        read_until(terminal, "ready[$] ")
        for line, words in lines.items():
            os.write(terminal, f"{line}\t\x0f\x15".encode())  # Control-U empties the line
            shown = read_until(terminal, "\1(.*)\2")[1]
            wanted = re.sub("[^ >]*$", words, line, count=1) if words else line
            # zsh quotes brackets, and has a directory end in a slash.
            if re.sub(r"\\(.)", r"\1", shown).rstrip("/").split() != wanted.split():
                print(f"{shell[0]}: {line!r} becomes {shown!r}, not with {words!r}")
                faults += 1
        for line, wanted in completed.items():
            os.write(terminal, f"orbelstatctl {line}\x14\x0f\x15".encode())
            shown = read_until(terminal, "\1orbelstatctl (.*)\2")[1]
            if shown != wanted:
                print(f"{shell[0]}: {line!r} is completed to {shown!r}, not {wanted!r}")
                faults += 1
        os.kill(child, signal.SIGKILL)
        os.waitpid(child, 0)
    return faults

sys.exit(count_faults(["bash", "--noprofile", "-i"], ".bashrc", bash)
         + count_faults(["zsh", "-d", "-i"], ".zshrc", zsh) > 0)
