#!/usr/bin/env python3
"""Each line of the tool's JSON is what its schema says, and each key of the schema is in some line.

Usage: run.py TOOL
"""
import json
import os
import subprocess
import sys
import tempfile

try:
    from jsonschema import Draft202012Validator
except ImportError:
    print("python3-jsonschema is not installed")
    sys.exit(77)

tool = sys.argv[1]


def number(value, octets):
    return value.to_bytes(octets, "big")


def counted(octets, size):
    return number(len(octets), size) + octets


def update(withdrawn, attributes, nlri, add_path=False):
    """A record of an UPDATE of AS 64600, with microseconds."""
    body = counted(bytes.fromhex(withdrawn), 2) + counted(bytes.fromhex(attributes), 2)
    message = body + bytes.fromhex(nlri)
    message = b"\xff" * 16 + number(len(message) + 19, 2) + b"\x02" + message
    session = bytes.fromhex("0000fc58 0000fc59 0000 0001 c0000201 c0000202")
    record = number(500, 4) + session + message
    return number(1700000000, 4) + number(17, 2) + number(9 if add_path else 4, 2) + counted(record, 4)


# Withdrawals, path identifiers, malformed attributes, lists of every type, prefixes cut short, of a VPN.
dump = b"".join([
    update("180a0102", "40010100 40020602010000fc5a 400304c0000207 c00804fc5800ff "
           "c010080002fc5800000064 c01914000220010db80000000000000000000000010064 "
           "c0200c0000fc580000000100000002", "180a0103"),
    update("00000007180a0102", "40010100 c00803fc5800", "00000001180a0103", add_path=True),
    update("", "40010100 c00804fc580001", "18"),
    update("", "40010100 800e20000180 0c0000000000000000c0000207 00 700006410000fc58000000010a0102", ""),
])


with tempfile.TemporaryDirectory() as folder:
    with open(folder + "/as64600.txt", "w") as descriptions:
        descriptions.write("64600:nnn,Number $0\n")
    with open(folder + "/made.mrt", "wb") as made:
        made.write(dump)
    os.environ["XDG_CONFIG_HOME"] = folder + "/none"
    schema = json.load(open("docs/paths.schema.json"))
    Draft202012Validator.check_schema(schema)
    validator = Draft202012Validator(schema)
    lines, keys = 0, set()
    for options in [], ["--withdrawals", "--collector", "rrc00"], ["--describe", folder], ["--text", "policy"]:
        run = subprocess.run(
            [tool, "paths", "--json", *options, folder + "/made.mrt", "samples/rib.bird.mrt.gz"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
        for line in run.stdout.splitlines():
            value = json.loads(line)
            for error in validator.iter_errors(value):
                sys.exit(f"{line.decode()}: {error.message}")
            keys.update(value)
            lines += 1
never = set(schema["properties"]) - keys
if never:
    sys.exit(f"no line has {sorted(never)}")
print(f"{lines} lines")
