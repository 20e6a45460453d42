#!/usr/bin/env python3
"""pages.py [TOOL]: pages of documentation say what is so.

- Code that a page of docs/ quotes stands so in the file that it names last, by "from [name](path):".
- Commands behind "$ " in the README answer what stands below them, or more.
"""
import os
import pathlib
import re
import subprocess
import sys
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
        if said.returncode or not answer or not said.stdout.startswith(dedent(answer)):
            faults.append(f"README.md: {command}\n{said.stdout}{said.stderr}")

if checked < 5:
    faults.append("nothing to check: not the root of the source tree?")
if faults:
    sys.exit("\n".join(faults))
