#!/usr/bin/env python3
"""Every option or command of a usage text stands wherever such are listed; says what is missing."""
import os, pathlib, re, shlex, shutil, subprocess, sys

build = os.environ.get("ORBEL_TEST_BUILD", sys.argv[1])
emulator = os.environ.get("ORBEL_TEST_EMULATOR", "")
usage = subprocess.getoutput(f"{emulator} {build}/orbelstatprobe -h")
options = re.findall("^ +orbelstatprobe (-.+?)(?:  .*)?$", usage, re.M)
options.remove("-w")  # the heading of the writes, which must be there
os.chdir(pathlib.Path(__file__).resolve().parent.parent)
manual = open("docs/orbelstatprobe.1").read()
synopsis = manual.split(".Sh ")[2].replace("Fl ", "")
synopsis = re.sub(r"Ar \w+|Cm 0 \| 1", "1", synopsis)
readme = open("README.md").read()
measured = re.search("for options in (.*); do", open("scripts/bench").read())[1]
measured = shlex.split(re.sub(r"\d+", "1", measured))
offering = {  # the last word, behind those before it
    "bash": """. docs/$1.bash; COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
               _$1; printf '%s ' "${COMPREPLY[@]}" """,
    "zsh": """_describe() { echo - "${choices[@]%%:*}"; }; words=("$@") CURRENT=$#
              . docs/_$1"""}
def offered(shell, words):
    command = [shell, "-c", offering[shell], shell, *words]
    return subprocess.check_output(command, text=True).split()
missing = []
for option in options:
    typed = re.sub("<.*?>", "1", option)
    if not re.search(rf"^\.(. \| )*{typed.replace('-', '')}( \||$)", synopsis, re.M):
        missing.append(f"{option} in the manual's synopsis")
    if f"| `{option}` |" not in readme:
        missing.append(f"{option} in README's table")
    if typed not in measured and not typed.startswith("-w"):
        missing.append(f"{option} in scripts/bench")
    if re.fullmatch("-[^w]", option):
        if f"\n.It Fl {option[1]}\n" not in manual:
            missing.append(f"{option} in the manual's list")
        if f"`{option}`" not in re.search("in the order(.*?)\\.", readme, re.S)[1]:
            missing.append(f"{option} in README's order")
        if option != "-o" and not re.search(rf"^\| .*\| `section.*`{option}`", readme, re.M):
            missing.append(f"{option} in README's sections")
    words = ["orbelstatprobe", *typed.split()]
    for shell in filter(shutil.which, offering):
        for last in range(1, len(words)):
            if words[last] not in offered(shell, words[:last + 1]):
                missing.append(f"{option} in the completion of {shell}, at {words[last]}")
usage = subprocess.getoutput(f"{emulator} {build}/orbelstatctl --help")
synopsis = open("docs/orbelstatctl.1").read().split(".Sh ")[2]
for command in re.findall(r"(?:^.* orbelstatctl|\|) (-*\w+)", usage, re.M):
    if not re.search(rf"(Cm|Fl|\|) {command.removeprefix('-')}\b", synopsis):
        missing.append(f"{command} in the manual's synopsis")
    for shell in filter(shutil.which, offering):
        if command not in offered(shell, ["orbelstatctl", command]):
            missing.append(f"{command} in the completion of {shell}")
sys.exit("missing: " + ", ".join(missing) if missing else 0)
