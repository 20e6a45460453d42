#!/usr/bin/env python3
"""All JSON that the tool prints is what its schema says, and has each key of the schema somewhere.

Usage: run.py TOOL
"""
import glob
import json
import os
import re
import subprocess
import sys
import tempfile

try:
    from jsonschema import Draft202012Validator, exceptions, validators
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


# Withdrawals, path identifiers, lists of every type, prefixes cut short, of a VPN. Attributes of a wrong
# length, given again, with wrong flags, beyond their end; a route target that goes; half a record.
dump = b"".join([
    update("180a0102", "40010100 40020602010000fc5a 400304c0000207 c00804fc5800ff "
           "c010080002fc5800000064 c01914000220010db80000000000000000000000010064 "
           "c0200c0000fc580000000100000002", "180a0103"),
    update("00000007180a0102", "40010100 c00803fc5800", "00000001180a0103", add_path=True),
    update("", "40010100 c00804fc580001", "18"),
    update("", "40010100 800804fc580001 c00804fc580002 c02010", "180a0104"),
    update("", "40010100 800e20000180 0c0000000000000000c0000207 00 700006410000fc58000000010a0102", ""),
    update("180a0103", "", ""),
    bytes.fromhex("6553f100 000b 0001 00000001 00"),  # OSPF
])
dump += dump[:20]

# What prints JSON, by schemas. MADE and SAMPLE are dumps, STORE keeps both, TEXTS are descriptions.
sample = "samples/rib.bird.mrt.gz"
commands = {
    "paths": ["paths MADE SAMPLE --withdrawals --collector rrc00 --describe TEXTS",
              "paths MADE", "paths MADE --text policy", "paths MADE --count",
              *(f"paths MADE SAMPLE --describe TEXTS --group-by {key}"
                for key in "peer origin kind value prefix-length".split())],
    "kinds": ["kinds"],
    "summary": ["summary MADE SAMPLE --describe TEXTS --top 0", "summary SAMPLE --total",
                "summary MADE --core", "restore STORE", "restore STORE --total --describe TEXTS"],
    "values": ["values MADE SAMPLE", "values MADE --describe TEXTS --core"],
    "diff": ["diff MADE SAMPLE", "diff SAMPLE MADE --describe TEXTS --prefix 11.0.0.0/16 --more-specific"],
    "top": [f"top MADE SAMPLE --limit 200 --describe TEXTS --by {by}"
            for by in "value kind list route-target peer prefix origin".split()] + ["top MADE"],
    "faults": ["faults MADE SAMPLE", "faults MADE --flags --repeats"],
    "spread": ["spread 10.0.0.0/8 MADE --more-specific --describe TEXTS",
               "spread 11.0.0.0/16 MADE SAMPLE --more-specific"],
    "lint": ["lint MADE SAMPLE --longer-than 0 --examples 20", "lint MADE --external --describe TEXTS"],
    "watch-rt": ["watch-rt MADE", "watch-rt SAMPLE --text show"],
    "decode": [f"decode {hexes} {options}"
               for hexes in ("0002fc5800000064 c010080002fc5800000064",
                             "fc580064 0000fc580000000100000002 000220010db80000000000000000000000010064 "
                             "c00808fc580064ffffff01 c0200c0000fc580000000100000002 40010100 "
                             "c01914000220010db80000000000000000000000010064 0004fc587fc00000 9900fc5800000064")
               for options in ("", "--describe TEXTS", "--core", "--text policy --format none")],
}


def keys_in(schema, path=""):
    """Each object of properties in a schema, under a text that says where it is."""
    for key, inside in schema.items() if isinstance(schema, dict) else enumerate(schema):
        if key == "properties":
            yield path, inside
        if isinstance(inside, (dict, list)):
            yield from keys_in(inside, f"{path}/{key}")


def values_in(text):
    """Objects by lines, or one that has several."""
    while text:
        value, end = json.JSONDecoder().raw_decode(text)
        yield value
        text = text[end:].lstrip()


met = set()


def properties(validator, schema, instance, whole):
    if isinstance(instance, dict):
        met.update((id(schema), key) for key in instance)
    return Draft202012Validator.VALIDATORS["properties"](validator, schema, instance, whole)


Validator = validators.extend(Draft202012Validator, {"properties": properties})
described = {re.sub(r".*/|\.schema\.json", "", name) for name in glob.glob("docs/*.schema.json")}
if described != set(commands):
    sys.exit(f"schemas without commands, or commands without schemas: {described ^ set(commands)}")

with tempfile.TemporaryDirectory() as folder:
    names = {"MADE": folder + "/made.mrt", "SAMPLE": sample, "STORE": folder + "/store", "TEXTS": folder}
    with open(folder + "/as64600.txt", "w") as descriptions:
        descriptions.write("64600:nnn,Number $0\n")
    with open(names["MADE"], "wb") as made:
        made.write(dump)
    os.environ["XDG_CONFIG_HOME"] = folder + "/none"

    def output(line):
        words = [tool] + [names.get(word, word) for word in line.split()]
        run = subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        if run.returncode not in (0, 1):  # 1: half a record
            sys.exit(f"{line}: exit code {run.returncode}")
        return run.stdout

    output("save MADE SAMPLE --to STORE")
    for name, lines in commands.items():
        schema = json.load(open(f"docs/{name}.schema.json"))
        Draft202012Validator.check_schema(schema)
        validator, values = Validator(schema), 0
        met.clear()
        names_of_keys = {key for _, keys in keys_in(schema) for key, its in keys.items() if its is not False}
        for what in (f"help {name}", f"help --json {name}"):
            missing = names_of_keys - set(re.findall(r"[\w-]+", output(what)))
            if missing:
                sys.exit(f"{what}: does not name {missing}")
        unexplained = re.findall(r"^ +[\w-]+$", output(f"help --json {name}"), re.M)
        if unexplained:
            sys.exit(f"help --json {name}: says nothing of {unexplained}")
        for line in lines:
            before = values
            for value in values_in(output(line + " --json")):
                error = exceptions.best_match(validator.iter_errors(value))
                if error:
                    sys.exit(f"{line}: {error.json_path}: {error.message}\n{json.dumps(value)[:1000]}")
                values += 1
            if values == before:
                sys.exit(f"{line}: prints nothing")
        never = [f"{path}/{key}" for path, keys in keys_in(schema) for key, its in keys.items()
                 if its is not False and (id(keys), key) not in met]
        if never:
            sys.exit(f"{name}: nothing printed has {never}")
        print(f"{name}: {values} values")
