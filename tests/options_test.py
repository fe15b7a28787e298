#!/usr/bin/env python3
"""Every option of the usage text stands wherever options are listed; says what is missing where."""
import os, pathlib, re, shlex, shutil, subprocess, sys

build = os.environ.get("ORBEL_TEST_BUILD", sys.argv[1])
emulator = os.environ.get("ORBEL_TEST_EMULATOR", "")
usage = subprocess.getoutput(f"{emulator} {build}/orbelstatprobe -h")
options = re.findall("^ +orbelstatprobe (-.+?)(?:  .*)?$", usage, re.M)
options.remove("-w")  # the heading of the writes, which must be there
os.chdir(pathlib.Path(__file__).resolve().parent.parent)
synopsis = open("docs/orbelstatprobe.1").read().split(".Sh ")[2].replace("Fl ", "")
synopsis = re.sub(r"Ar \w+|Cm 0 \| 1", "1", synopsis)
readme = open("README.md").read()
measured = re.search("for options in (.*); do", open("scripts/bench").read())[1]
measured = shlex.split(re.sub(r"\d+", "1", measured))
offering = {  # the last word, behind those before it
    "bash": """. docs/orbelstatprobe.bash; COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
               _orbelstatprobe; printf '%s ' "${COMPREPLY[@]}" """,
    "zsh": """_describe() { echo - "${choices[@]%%:*}"; }; words=("$@") CURRENT=$#
              . docs/_orbelstatprobe"""}
missing = []
for option in options:
    typed = re.sub("<.*?>", "1", option)
    if not re.search(rf"^\.(. \| )*{typed.replace('-', '')}( \||$)", synopsis, re.M):
        missing.append(f"{option} in the manual's synopsis")
    if f"| `{option}` |" not in readme:
        missing.append(f"{option} in README's table")
    if typed not in measured and not typed.startswith("-w"):
        missing.append(f"{option} in scripts/bench")
    words = ["orbelstatprobe", *typed.split()]
    for shell in filter(shutil.which, offering):
        for last in range(1, len(words)):
            command = [shell, "-c", offering[shell], shell, *words[:last + 1]]
            if words[last] not in subprocess.check_output(command, text=True).split():
                missing.append(f"{option} in the completion of {shell}, at {words[last]}")
sys.exit("missing: " + ", ".join(missing) if missing else 0)
