#!/usr/bin/env python3
"""Runs README's examples of the companion as they are printed, in a folder of their own."""
import os, pathlib, re, shutil, subprocess, sys, tempfile

build = pathlib.Path(os.environ.get("ORBEL_TEST_BUILD", sys.argv[1])).resolve()
emulator = os.environ.get("ORBEL_TEST_EMULATOR", "")
readme = (pathlib.Path(__file__).resolve().parent.parent / "README.md").read_text()
examples = [block for block in re.findall("(?:^    .*\n)+", readme, re.M) if "orbelstatctl" in block]
if not shutil.which("jq"):
    print("jq is missing: its examples are not tested")
    examples = [block for block in examples if "jq" not in block]
with tempfile.TemporaryDirectory() as folder:
    os.environ["TOLM_SHM_DIR"] = folder + "/sections"
    programs = pathlib.Path(folder, "build/release")
    programs.mkdir(parents=True)
    for name in "orbelstatprobe", "orbelstatctl", "tolmfill":
        (programs / name).write_text(f'#!/bin/sh\nexec {emulator} {build}/{name} "$@"\n')
        (programs / name).chmod(0o755)
    subprocess.run([programs / "tolmfill"], check=True)
    for block in examples:
        subprocess.run(["bash", "-e", "-o", "pipefail", "-x", "-c", block], cwd=folder, check=True)
sys.exit(0 if examples else "no examples")
