#!/usr/bin/python3 -IS
"""A header, or a page, as Doxygen reads it: docs_filter.py FILE. Lines keep their numbers.

Headers here are written for people who read them from top to bottom. Doxygen is told what these see:
- the comment at the top is of the first class or function, if that has none of its own, and of the file;
- a plain comment right above members is of all of them, up to the next blank line;
- lines that are set in are code, or a picture of octets;
- enumerators are documented by their rows.
"""
import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parent.parent


def verbatim(lines):
    """Marks code and pictures in the lines of a comment, each with its `///`."""
    out, inside, listed = [], None, False
    for line in lines:
        mark, text = re.match(r"(\s*///| \*) ?(.*)", line).groups()
        if inside is None and re.match(r" {2,}\S", text) and not listed:
            inside = "code{.cpp}" if re.search(r"[;(]", text) else "code{.unparsed}"
            out[-1] += " @" + inside if out else ""
        elif inside and text and not text.startswith("  "):
            out[-1] += " @endcode"
            inside = None
        if inside is None:
            listed = bool(re.match(r"(\d+\.|-) ", text)) or (listed and text.startswith("  "))
        out.append(f"{mark} {text}")
    if inside:
        out[-1] += " @endcode"
    return out


# Members that every class has, or every class of their sort.
house_members = [
    (r"static const (Mox::)?Type type;", "The description for reflection."),
    (r"inline static const [^;]*Type type\b", "The description for reflection."),
    (r"using Ptr = ", "Owns one reference, or is null."),
    (r"using PtrConst = ", "The same, to an object that is read only."),
    (r"[^;]*\bfwkType\(\)", "The description of the object's own class."),
    (r"(static )?void\*? operator (new|delete)", "Memory that is counted under the name of the class."),
    (r"[^;]*\boperator(==|<=>)\(.* = default;", "Compares member by member."),
    (r"[\w<>, ]+\(const [\w:<>, ]+&\) = delete;", "Is not copied."),
    (r"[^;]*operator=\(const [\w:<>, ]+&\) = delete;", "Is not copied."),
    (r"const (Mox::)?AllocationTracker&\s*(Mox::)?storageTracker<", "Counts the storage of such elements."),
    (r"bool empty\(\) const", "Whether it holds nothing."),
    (r"[\w:]+ size\(\) const", "How many it holds."),
    (r"[\w:<>*\s]+ begin\(\) const", "Where a loop begins."),
    (r"[\w:<>*\s]+ end\(\) const", "Where a loop ends."),
    (r"explicit operator bool\(\) const", "Whether there is anything."),
    (r"[^;(]*std::ostream& operator<<\(std::ostream&", "Writes the text, whatever the stream's format."),
    (r"[^;]*\boverride\b", "As in the base class."),
]


def enumerators(rows):
    """The enumerators of `#define MOX_ROWS(X)`, each with its row."""
    found = []
    for row, note in re.findall(r"X\(((?:[^()\"]|\"[^\"]*\"|\([^()]*\))*)\)\s*(?:/\* (.*?) \*/)?", rows):
        name, value, *more = [column.strip() for column in re.split(r",(?![^(]*\))", row)]
        text = ", ".join([f"`{value}`"] + [f"`{column}`" for column in more] + ([note] if note else []))
        found.append(f"{name} = {value} /**< {text} */")
    return ", ".join(found)


def header(text):
    lines = text.split("\n")
    if not text.startswith("//"):  # for C, and written for Doxygen but for its code
        return "\n".join(marked(lines, r" \*(?!/)"))

    # The comment at the top.
    top = 0
    while lines[top].startswith("//"):
        top += 1
    opening = ["///" + line[2:] for line in lines[:top]]
    out = verbatim(opening)
    first_sentence = re.split(r"(?<=[.:]) ", " ".join(line[4:] for line in opening if line[4:]))[0]

    namespaces, rows, chief = [], None, None
    at = top
    body = []
    while at < len(lines):
        line = lines[at]
        opened = re.match(r"(?:inline )?namespace ([\w:]+) {", line)
        if opened:
            namespaces.append(opened[1])
        elif re.match(r"}  // namespace", line):
            namespaces.pop()
        if re.match(r"#define MOX_ROWS\(X\)", line):
            rows = ""
            while True:
                rows += lines[at].rstrip("\\") + " "
                body.append("")
                at += 1
                if not lines[at - 1].endswith("\\"):
                    break
            rows = rows.split("(X)", 1)[1]
            continue
        if "MOX_ROWS(MOX_ENUMERATOR)" in line and rows:
            line = line.replace("MOX_ROWS(MOX_ENUMERATOR)", enumerators(rows))
        table = re.match(r"(BGP_ENUM_TABLE)\((\w+), MOX_ROWS.*\);", line)
        if table:
            line = (f"/** The {table[2]} of a number or of a name; RangeException for any other. */ "
                    f"inline constexpr Mox::EnumInstance<{table[2]}> {table[2]}Instance{{}};")
        # The first class without a comment of its own.
        declared = re.match(r"(class|struct) (\w+)\b(?! *[;<])[^;]*$", line)
        if declared and not chief and namespaces[-1:] != ["detail"]:
            above = at - 1
            while lines[above].startswith(("template", "requires", "    ")):
                above -= 1
            if not lines[above].startswith("//"):
                chief = f"{declared[1]} {'::'.join(namespaces)}::{declared[2]}"
        # What Doxygen would take for another class, or for a member.
        if re.match(r"extern template |\s*friend (class |struct )?[\w:<>]+;|"
                    r"\s*using (\w+::)*(\w+)::\3;", line):
            while not line.endswith(";"):
                body.append("")
                at += 1
                line = lines[at]
            line = ""
        body.append(line)
        at += 1

    # One line more in front, and instead of it none of `#pragma once`.
    body = groups(body)
    out.insert(0, f"/// @{chief}" if chief else "/// @file")
    if "#pragma once" in body[0] and not body[1]:
        body = [f"/** @file \\ilinebr @brief {first_sentence} */" if chief else ""] + body[2:]
    return "\n".join(out + marked(body))


def marked(lines, start=r"\s*///(?!<)"):
    """Code and pictures in all comments, whose lines start so."""
    out, comment = [], []
    for line in lines + [""]:
        if re.match(start, line):
            comment.append(line)
        else:
            out += verbatim(comment) + [line]
            comment = []
    return out[:-1]


def groups(lines):
    """Gives members the comment that stands above all of them, and house members theirs."""
    out, shared = [], None  # shared: the comment of the members up to the next blank line
    inside, depth = False, 0  # of a member
    head = False  # of a class, not yet at its brace
    for at, line in enumerate(lines):
        before = lines[at - 1] if at else ""
        plain = re.sub(r'"(\\.|[^"])*"|\'(\\.|[^\'])\'|//.*|/\*.*?\*/', "", line)
        if inside:
            pass
        elif head:
            head = not re.search(r"[{;]\s*$", plain)
        elif before.endswith("\\") or re.match(r"\s*(#|}|(public|protected|private):)", line):
            pass
        elif not line.strip():
            shared = None
        elif re.match(r"\s*//(?!/| ---)", line):
            text = re.sub(r"\s*// ?", "", line)
            shared = f"{shared} {text}" if shared and re.match(r"\s*//(?!/)", before) else text
        elif not re.match(r"\s*//", line):
            code = re.match(r"[^;{]*[;{]?[^;{}]*;?", " ".join(lines[at:at + 8]))[0]
            code = re.sub(r"^\s*template <[^()]*?> (?=\w)|requires \S+ ", "", code).strip()
            if re.match(r"(inline )?(class|struct|namespace|enum|union|using namespace)\b", code):
                head = not re.search(r"[{};]\s*$", plain)
            else:
                inside = True
                if not re.match(r"\s*///", before) and "/**" not in line:
                    text = shared or next((text for member, text in house_members
                                           if re.match(member, code)), None)
                    line = f"/** {text} */ {line}" if text else line
        if inside:
            depth += plain.count("{") - plain.count("}")
            inside = depth > 0 or not re.search(r"[;}]\s*$", plain)
            depth = max(depth, 0)
        out.append(line)
    return out


def page(path, text):
    """Links to headers lead to their pages, those to other files of the tree to copies of them."""
    if path.parent == root and path.name == "README.md":
        text = re.sub(r"^(# .*)", r"\1 {#mainpage}", text)
    for anchor in set(re.findall(r"\]\(#([\w-]+)\)", text)):
        title = anchor.replace("-", "[ ,-]+")
        text = re.sub(rf"^(#+ {title})$", rf"\1 {{#{anchor}}}", text, flags=re.M | re.I)

    def link(match):
        shown, target = match.groups()
        name = shown.replace("`", "")  # Doxygen reads no code inside of links to its pages
        if re.match(r"https?:|#", target):
            return match[0]
        if ".md" in target:
            return f"[{name}]({target})"
        file = (path.parent / target).resolve()
        if file.is_dir():
            return shown
        if file.suffix == ".h" and root / "examples" not in file.parents:
            included = str(file.relative_to(root)).removeprefix("platform/")
            return f"[{name}](@ref {included})"
        return f"[{shown}]({file.name})"
    return re.sub(r"\[([^\]]*)\]\(([^)\s]+)\)", link, text)


def main():
    path = pathlib.Path(sys.argv[1])
    text = path.read_text()
    # A header for C is written for Doxygen already.
    sys.stdout.write(header(text) if path.suffix == ".h" else page(path, text))


main()
