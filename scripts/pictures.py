#!/usr/bin/env python3
"""Draws the pictures of docs/: pictures.py [--check].

docs/layers.dot is made of the includes as they are, docs/*.svg of docs/*.dot by Graphviz; only what
is out of date is drawn. With --check nothing is written, and it fails when something is.
"""
import hashlib
import pathlib
import re
import subprocess
import sys

# The nodes: what the folder is, and the files that it stands for.
layers = {
    "platform": ("platform/", "counted objects, interning,\\nreflection, notification, store", r"platform/"),
    "attr": ("attr/", "path attributes,\\nin and out", r"attr/"),
    "values": ("community/, ip6/", "vocabulary, values,\\ntheir texts", r"community/|ip6/(?!\w*List)"),
    "parse": ("parse/", "rules, registry,\\nplug-ins, cache", r"parse/"),
    "lists": ("community-list/, ip6/", "lists, groups, snapshots, tables,\\nnotification", r"community-list/|ip6/"),
    "path": ("path/", "all tables at once,\\nwhat a path keeps", r"path/"),
    "kinds": ("kinds/", "every assigned kind,\\ncanonical texts", r"kinds/"),
    "query": ("query/", "patterns, matchers,\\ndescriptions", r"query/"),
    "mrt": ("mrt/", "dumps of collectors", r"mrt/"),
    "capi": ("capi/", "an interface for C", r"capi/"),
    "tool": ("tools/bgpcomm/", "the tool", r"tools/"),
    "examples": ("examples/", "an agent, a plug-in", r"examples/"),
}


def layer_of(file):
    for name, (_, _, files) in layers.items():
        if re.match(files, file):
            return name
    sys.exit(f"{file}: stands in no layer of scripts/pictures.py")


def libraries():
    """The libraries, each with its layers, as the build has them."""
    found = {}
    for build in ("CMakeLists.txt", "cmake/CLibrary.cmake", "cmake/MrtLibrary.cmake"):
        for name, rest in re.findall(r"^\s*zobgp_library\(([\w-]+) ([^)]*)\)",
                                     pathlib.Path(build).read_text(), re.M):
            base = re.search(r"BASE (\w+)", rest)
            folders = re.search(r"FOLDERS (.+?)(?: LINK| PRIVATE|$)", rest)[1].split()
            found[name] = [layer for layer, (_, _, files) in layers.items()
                           if any(re.match(files, f"{base[1] if base else folder}/") for folder in folders)]
    return found


def behind(edges, start):
    """All that can be reached from a node."""
    seen, ahead = set(), [start]
    while ahead:
        for a, b in edges:
            if a == ahead[-1] and b not in seen:
                seen.add(b)
                ahead.insert(0, b)
        ahead.pop()
    return seen


def necessary(edges):
    """The edges without those that follow from others."""
    return {(a, b) for a, b in edges if b not in behind(edges - {(a, b)}, a)}


def layers_dot():
    lines = subprocess.run(["tests/layers.sh", "--edges"], check=True, capture_output=True, text=True).stdout
    headers, sources, there = set(), set(), set()
    for file, included in map(str.split, lines.splitlines()):
        a, b = layer_of(file), layer_of(included)
        there |= {a, b}
        if a != b:
            (headers if file.endswith(".h") or a in ("capi", "tool", "examples") else sources).add((a, b))
    solid = necessary(headers)
    known = {(a, b) for a in layers for b in behind(headers, a)}
    dashed = sources - known
    dot = ["// Made by scripts/pictures.py of the includes as they are.",
           "digraph layers {",
           '  rankdir=TB; nodesep=0.3; ranksep=0.35; bgcolor=white; fontname="Helvetica"; fontsize=11;',
           '  node [shape=box, style=filled, fillcolor=white, fontname="Helvetica", fontsize=11];',
           '  edge [arrowsize=0.7];']
    for name in (name for name in layers if name in there):
        folder, about, _ = layers[name]
        dot.append(f'  {name} [label="{folder}\\n{about}"];')
    for library, its in libraries().items():
        dot.append(f'  subgraph "cluster_{library}" {{ label="lib{library}"; labeljust=l; color=gray; '
                   f'style=filled; fillcolor="#f2f2f2"; {" ".join(n + ";" for n in its if n in there)} }}')
    dot += [f"  {a} -> {b};" for a, b in sorted(solid)]
    dot += [f"  {a} -> {b} [style=dashed, constraint=false];" for a, b in sorted(dashed)]
    return "\n".join(dot + ["}", ""])


def drawn_from(dot):
    return f"<!-- Drawn by scripts/pictures.py of a text with SHA-256 {hashlib.sha256(dot.encode()).hexdigest()} -->"


def main():
    check = sys.argv[1:] == ["--check"]
    stale = []
    made = pathlib.Path("docs/layers.dot")
    if not made.exists() or made.read_text() != layers_dot():
        stale.append(made)
        if not check:
            made.write_text(layers_dot())
    for text in sorted(pathlib.Path("docs").glob("*.dot")):
        picture, mark = text.with_suffix(".svg"), drawn_from(text.read_text())
        if picture.exists() and mark in picture.read_text():
            continue
        stale.append(picture)
        if not check:
            svg = subprocess.run(["dot", "-Tsvg", text], check=True, capture_output=True, text=True).stdout
            svg = re.sub(r"<!--.*?-->\n?", "", svg, flags=re.S)
            picture.write_text(svg.replace("<svg ", mark + "\n<svg ", 1))
    if check and stale:
        sys.exit("out of date, run ./scripts/docs: " + " ".join(map(str, stale)))


main()
