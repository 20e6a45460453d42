#!/usr/bin/env python3
"""pages.py [TOOL]: pages of documentation say what is so.

- Code that a page of docs/ quotes stands so in the file that it names last, by "from [name](path):".
- Commands behind "$ " in the README answer what stands below them.
- Its list of all commands can be typed from top to bottom.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile
from textwrap import dedent

faults, checked = [], 0

for page in sorted(pathlib.Path("docs").glob("*.md")):
    source = None
    either = r"from\s+\[[^]]*\]\(([^)]*)\):|^```cpp\n(.*?)^```"
    for named, code in re.findall(either, page.read_text(), re.S | re.M | re.I):
        if named:
            source = page.parent / named
        elif source:
            checked += 1
            if dedent(code) not in dedent(source.read_text()) and code not in source.read_text():
                faults.append(f"{page}: not in {source}:\n{code}")

if len(sys.argv) > 1:
    os.environ["XDG_CONFIG_HOME"] = "/nonexistent"  # no descriptions of the user's own
    text = pathlib.Path("README.md").read_text()
    for command, answer in re.findall(r"^    \$ (.*)\n((?:    (?!\$).*\n)*)", text, re.M):
        checked += 1
        shell = ["bash", "-c", 'bgpcomm() { "$0" "$@"; }; ' + command, sys.argv[1]]
        said = subprocess.run(shell, capture_output=True, text=True)
        if said.returncode or not answer or said.stdout != dedent(answer):
            faults.append(f"README.md: {command}\n{said.stdout}{said.stderr}")

    commands = re.search(r"^## All commands\n(.*?)^\S", text, re.S | re.M)[1]
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "samples").symlink_to(pathlib.Path("samples").absolute())
        shell = ["bash", "-eo", "pipefail", "-c", 'bgpcomm() { echo "$ $*" >&2; "$0" "$@"; };' + commands,
                 pathlib.Path(sys.argv[1]).absolute()]
        said = subprocess.run(shell, cwd=folder, capture_output=True, text=True)
    if said.returncode or said.stdout.count("\n") < 9000:
        faults.append(said.stderr)

if checked < 5:
    faults.append("nothing to check: not the root of the source tree?")
if faults:
    sys.exit("\n".join(faults))
