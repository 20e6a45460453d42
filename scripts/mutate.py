"""Plants faults in source files, one at a time, and lists those that survive the tests.

A fault is one small change of one line, as an inattentive hand would make it: a condition turned,
a constant off by one, a statement dropped, a flag swapped. The tests of the file's folder are built
and run with it. A fault is caught when a test fails, crashes or hangs. A fault that does not
compile is not counted, and another is drawn. Some survivors change nothing that anybody could see;
the rest are work.

Faults are drawn with a seed, which is printed. A run works on a copy of the tree as it was when the
run began. Results are kept in build/mutate/results.json by the content of the file and of the
tests, so a run that was interrupted goes on, and a file that changed, or whose tests did, is tried
afresh.
"""

import argparse
import collections
import contextlib
import fcntl
import hashlib
import json
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build" / "mutate"
TREE = WORK / "tree"
BUILD = WORK / "build"
RESULTS = WORK / "results.json"
TEST_MEMORY = 8 << 30  # so much address space, should a fault ask for more and more

# The test programs that the faults of a folder or file are held against: its own, and the next one
# up where it is mostly used through that. The longest name that fits counts.
PROGRAMS = {
    "platform": ["test_platform"],
    "platform/Mox/NotifieeList.cpp": ["test_platform", "test_community-list"],
    "platform/Orv": ["test_platform", "test_community-list"],
    "platform/Mox/PtrInterface.h": ["test_platform", "test_community-list"],
    "platform/MoxStash": ["test_platform", "test_community-list"],
    "platform/MoxStash/StoreFile.cpp": ["test_community-list", "test_tools"],
    "platform/ZoFmt": ["test_platform", "test_community-list"],
    "platform/Mox/IndexedQueue.h": ["test_platform", "test_parse"],
    "attr": ["test_attr"],
    "community": ["test_community"],
    "community/ZoBgpCommunityCanonicalText.cpp": ["test_kinds"],
    "community/ZoBgpCommunityTextParts.cpp": ["test_kinds"],
    "ip6": ["test_community", "test_community-list"],
    "community-list": ["test_community-list"],
    "parse": ["test_parse"],
    "path": ["test_path"],
    "path/ZoBgpPathFault.cpp": ["test_path", "test_tools"],
    "kinds": ["test_kinds"],
    "mrt": ["test_mrt"],
    "tools": ["test_tools"],
}

# Only builds that let threads take turns have code in them.
SKIPPED = {"platform/Orv/Interleave.cpp"}

Fault = collections.namedtuple("Fault", "kind line before after")


# --- Where faults can be.


def code_only(text):
    """The text with comments, strings and preprocessor lines blanked, positions kept."""
    token = re.compile(
        r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|^[ \t]*#(?:\\\n|[^\n])*',
        re.S | re.M,
    )
    # Digit separators look like characters: 65'536.
    text = re.sub(r"(?<=[0-9a-fA-F])'(?=[0-9a-fA-F])", "_", text)
    return token.sub(lambda m: re.sub(r"[^\n]", " ", m.group()), text)


def replaced(line, match, new):
    return line[: match.start()] + new + line[match.end() :]


TURNED = {
    " == ": " != ", " != ": " == ", " < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ",
    " && ": " || ", " || ": " && ",
}
SWAPPED = {"true": "false", "false": "true", " | ": " & ", " |= ": " &= ", " &= ": " |= "}


def alternatives(table):
    return re.compile("|".join(re.escape(key) if " " in key else rf"\b{key}\b" for key in table))


def faults_of(path):
    """Every fault that can be planted in the file."""
    text = path.read_text()
    lines = text.splitlines()
    for number, (line, code) in enumerate(zip(lines, code_only(text).splitlines())):
        if re.match(r"\s*(template|using|static_assert|friend|namespace|MOX_ASSERT)\b", code):
            continue

        def fault(kind, new):
            return Fault(kind, number, line, new)

        for match in alternatives(TURNED).finditer(code):
            yield fault("condition", replaced(line, match, TURNED[match.group()]))
        for match in re.finditer(r"\b(if|while) (constexpr )?\((?!\w+ .* = )", code):
            depth, end = 1, match.end()
            while end < len(code) and depth:
                depth += {"(": 1, ")": -1}.get(code[end], 0)
                end += 1
            if depth == 0 and ";" not in code[match.end() : end]:
                condition = line[match.end() : end - 1]
                yield fault("condition", f"{line[:match.end()]}!({condition}){line[end - 1:]}")
        for match in re.finditer(r"(?<![\w.:'])(0x[0-9A-Fa-f]+|\d+)(?=[uU]?\b)(?![\w.'])", code):
            value = match.group()
            more = hex(int(value, 16) + 1) if value.startswith("0x") else str(int(value) + 1)
            yield fault("constant", replaced(line, match, more))
        for match in alternatives(SWAPPED).finditer(code):
            yield fault("flag", replaced(line, match, SWAPPED[match.group()]))
        if is_statement(lines, code, number):
            yield fault("dropped", re.match(r"\s*", line).group() + ";")


def is_statement(lines, code, number):
    """Whether the line is a whole statement without which the file may still compile."""
    before = lines[number - 1].split("//")[0].rstrip() if number else ""
    return bool(
        re.match(r"\s+(\+\+|--|\*?\w[\w.:<>\[\]*-]*(\(| [-+|&^]?= )).*;\s*$", code)
        and not re.match(r"\s*(return|throw|const|auto|using|case|if|for|while|static|explicit|virtual|inline)\b|.*= (default|delete);", code)
        and code.count("(") == code.count(")")
        and (before == "" or before[-1] in ";{}:)")
    )


# --- Planting one.


def run(command, seconds=None, **options):
    """The exit code, or None after that time. What was started has ended on every way out."""
    process = subprocess.Popen(
        command, start_new_session=True,
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options,
    )
    try:
        return process.wait(seconds)
    except subprocess.TimeoutExpired:
        return None
    finally:
        # Ninja, asked to end, ends its compilers, which are in groups of their own.
        for number in (signal.SIGTERM, signal.SIGKILL):
            with contextlib.suppress(ProcessLookupError, subprocess.TimeoutExpired):
                os.killpg(process.pid, number)
                process.wait(10)


def build(programs):
    return run(["cmake", "--build", BUILD, "--target", *programs]) == 0


def prepare(programs):
    """A copy of the tree as it is now, built without faults. How long each program may run."""
    TREE.mkdir(parents=True, exist_ok=True)
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
        cwd=ROOT, stdout=subprocess.PIPE, check=True,
    ).stdout.decode().split("\0")
    wanted = {name for name in listed if name and (ROOT / name).is_file()}
    for there in [path for path in TREE.rglob("*") if path.is_file()]:
        if str(there.relative_to(TREE)) not in wanted:
            there.unlink()
    for name in wanted:
        source, copy = ROOT / name, TREE / name
        if not copy.exists() or copy.read_bytes() != source.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(source, copy)
            os.utime(copy)
    # Faults need no optimiser; warnings about them are of no interest.
    flags = ["-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O1", "-DCMAKE_CXX_FLAGS=-w"]
    configure = ["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", *flags]
    subprocess.run(configure, stdout=subprocess.DEVNULL, check=True)
    if not build(programs):
        sys.exit("mutate: the tree does not build without any fault")
    seconds = {}
    for program in programs:
        begin = time.monotonic()
        if not passes(program):
            sys.exit(f"mutate: {program} fails without any fault")
        # The machine may have more to do later.
        seconds[program] = 30 + 10 * (time.monotonic() - begin)
    return seconds


def prepare_program():
    """Bounds the memory. A shell's job in the background ignores signals that tests send."""
    resource.setrlimit(resource.RLIMIT_AS, (TEST_MEMORY, TEST_MEMORY))
    for number in (signal.SIGINT, signal.SIGQUIT):
        signal.signal(number, signal.SIG_DFL)


def passes(program, seconds=None):
    """Whether all of the program's tests do; stops at the first that does not."""
    return run(
        [BUILD / "bin" / program, "--gtest_fail_fast", "--gtest_brief=1"], seconds,
        cwd=TREE, env=dict(os.environ, BGPCOMM=str(BUILD / "bin" / "bgpcomm")),
        preexec_fn=prepare_program,
    ) == 0


def try_fault(name, fault, programs, seconds):
    """`caught`, `survived`, or `refused` when it does not compile."""
    copy = TREE / name
    good = copy.read_text()
    lines = good.splitlines(keepends=True)
    lines[fault.line] = fault.after + "\n"
    copy.write_text("".join(lines))
    try:
        if not build(programs):
            return "refused"
        passed = all(passes(program, seconds[program]) for program in programs)
        return "survived" if passed else "caught"
    finally:
        copy.write_text(good)


# --- The command.


def files_of(arguments):
    for argument in arguments:
        path = (ROOT / argument).resolve()
        if not path.exists():
            sys.exit(f"mutate: {argument}: no such file or folder")
        found = sorted(path.rglob("*")) if path.is_dir() else [path]
        names = (file.relative_to(ROOT) for file in found if file.suffix in (".h", ".cpp"))
        yield from (name for name in names if str(name) not in SKIPPED)


def programs_for(name):
    """Those of the longest entry; none where there is no entry."""
    return next((PROGRAMS[str(key)] for key in (name, *name.parents) if str(key) in PROGRAMS), [])


def digest(*files):
    return hashlib.sha256(b"\0".join(file.read_bytes() for file in files)).hexdigest()[:16]


def digest_of_tests(programs):
    """That of what the programs are made of: their folders, and every header of the tests."""
    tests = TREE / "tests"
    folders = {program.removeprefix("test_") for program in programs}
    return digest(*sorted(
        file for file in tests.rglob("*.*")
        if file.suffix == ".h" or file.parent == tests or file.relative_to(tests).parts[0] in folders
    ))


def load_results():
    try:
        return json.loads(RESULTS.read_text())
    except FileNotFoundError:
        return {}


def save_results(results):
    fresh = RESULTS.with_suffix(".new")
    fresh.write_text(json.dumps(results, indent=1))
    fresh.replace(RESULTS)


def report(tried):
    print(f"\n{'folder':<16}{'tried':>7}{'caught':>8}{'survived':>10}")
    for folder, count in sorted(tried.items()):
        both = count["caught"] + count["survived"]
        share = f"{100 * count['caught'] / both:5.0f} %"
        print(f"{folder:<16}{both:>7}{count['caught']:>8}{count['survived']:>10} {share}")
    if before := sum(count["before"] for count in tried.values()):
        print(f"\n{before} were caught by the tests as they were; without --again they are tried afresh")


def main():
    parser = argparse.ArgumentParser(
        prog="mutate", description="Plants faults one at a time and lists those that no test sees.")
    parser.add_argument("paths", nargs="+", metavar="FILE|FOLDER")
    parser.add_argument("--faults", type=int, default=10, metavar="N", help="at most N a file (10)")
    parser.add_argument("--seed", type=int, help="draw the same faults as the run that printed it")
    parser.add_argument("--again", action="store_true", help="only what survived before")
    parser.add_argument("--list", action="store_true", help="show the faults, plant none")
    options = parser.parse_args()

    # Whichever way it is told to stop, also as a job in the background.
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, signal.default_int_handler)
    WORK.mkdir(parents=True, exist_ok=True)
    programs_of = {name: programs_for(name) for name in files_of(options.paths)}
    if unknown := sorted({name.parts[0] for name, programs in programs_of.items() if not programs}):
        sys.exit(f"mutate: no tests are named for {', '.join(unknown)}")
    seed_file = WORK / "seed"
    seed = options.seed
    if seed is None:
        seed = int(seed_file.read_text()) if seed_file.exists() else random.randrange(1 << 31)
    seed_file.write_text(str(seed))
    print(f"seed {seed}", flush=True)

    results = load_results()
    tried = collections.defaultdict(collections.Counter)
    if not options.list:
        lock = open(WORK / "lock", "w")  # held until this run ends
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            sys.exit("mutate: another run is at work in this tree")
        seconds = prepare(sorted({one for programs in programs_of.values() for one in programs}))
    for name, programs in programs_of.items():
        folder = name.parts[0]
        file = (ROOT if options.list else TREE) / name
        faults = list(dict.fromkeys(faults_of(file)))
        random.Random(f"{seed} {name}").shuffle(faults)
        counted = 0
        for fault in faults:
            if counted == options.faults and not options.again:
                break
            shown = f"{name}:{fault.line + 1}: {fault.before.strip()}  ->  {fault.after.strip()}"
            if options.list:
                print(f"{fault.kind:<10} {shown}")
                counted += 1
                continue
            key = f"{name} {digest(file)} {fault.line + 1} {fault.after.strip()}"
            tests = digest_of_tests(programs)
            outcome, _, by = results.get(key, "").partition(" ")
            if options.again:
                wanted = outcome == "survived" and by != tests
                if not outcome:
                    continue
            else:
                wanted = outcome != "refused" and by != tests
            if wanted:
                outcome, by = try_fault(name, fault, programs, seconds), tests
                results[key] = f"{outcome} {by}"
                save_results(results)
            if outcome == "refused":
                continue
            counted += 1
            tried[folder][outcome] += 1
            tried[folder]["before"] += by != tests
            if outcome == "survived":
                print(f"survived   {shown}", flush=True)
    if not options.list:
        report(tried)


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit("mutate: stopped; the same command goes on from here")
