"""Runs the benchmarks of two commits in turn and says what differs.

Each round runs both programs once, the order changing from round to round. A machine drifts between
two processes, so times are taken against what does not change: the ratio of a row is divided by that
of the contenders which are not ours, such as flyweight, in the same two runs. A row's ratio is the
median over the rounds; its interval goes from the smallest to the largest round, and holds the true
median with a probability of 1 - 2^(1 - rounds). What is marked differs beyond that.
"""

import argparse
import collections
import math
import pathlib
import re
import statistics
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ROW = re.compile(r"^(\S.*?) {2,}([\d.]+) {3}[\d.]+ to [\d.]+ (\w+)$")
YARDSTICKS = ("flyweight", "unordered_set", "floor")
TIMES = ("ns", "us")

Figure = collections.namedtuple("Figure", "value unit")


def commit_of(name):
    found = subprocess.run(
        ["git", "rev-parse", "--verify", "--quiet", name + "^{commit}"],
        cwd=ROOT, stdout=subprocess.PIPE, text=True,
    )
    if found.returncode != 0:
        sys.exit(f"bench: --against {name}: no such commit")
    return found.stdout.strip()


def built(commit):
    """The commit's program, built in a copy of its tree."""
    tree = ROOT / "build" / "against" / commit[:12]
    program = tree / "build" / "release" / "bin" / "zobgp_bench"
    tree.mkdir(parents=True, exist_ok=True)
    archive = subprocess.run(["git", "archive", commit], cwd=ROOT, stdout=subprocess.PIPE, check=True)
    # Files keep the commit's time, so that what was built before is not built again.
    subprocess.run(["tar", "-x"], cwd=tree, input=archive.stdout, check=True)
    for command in (["cmake", "--preset", "release"],
                    ["cmake", "--build", "--preset", "release", "--target", "zobgp_bench"]):
        done = subprocess.run(command, cwd=tree, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode != 0:
            sys.exit(f"bench: {commit[:12]} cannot be built:\n{done.stdout[-3000:]}")
    return program


def figures(program, arguments):
    done = subprocess.run([program, *arguments], cwd=ROOT, stdout=subprocess.PIPE, text=True)
    if done.returncode != 0:
        sys.exit(f"bench: {program} ended with {done.returncode}")
    rows = (ROW.match(line) for line in done.stdout.splitlines())
    return {row[1]: Figure(float(row[2]), row[3]) for row in rows if row}


def contender(name):
    return name.rsplit("/", 1)[-1]


def is_yardstick(name):
    return contender(name).startswith(YARDSTICKS)


def drift(old, new):
    """How much slower the machine was for the new program than for the old."""
    logs = [math.log(new[name].value / old[name].value) for name in old
            if is_yardstick(name) and old[name].unit in TIMES and name in new
            and old[name].value > 0 and new[name].value > 0]
    return math.exp(statistics.median(logs)) if logs else 1.0


def compare(rounds):
    """Rows of name, old and new median, unit, ratio, interval."""
    names = [name for name in rounds[0][0] if not is_yardstick(name)
             and all(name in side for pair in rounds for side in pair)]
    drifts = [drift(old, new) for old, new in rounds]
    for name in names:
        unit = rounds[0][0][name].unit
        values = [(old[name].value, new[name].value) for old, new in rounds]
        if any(old <= 0 for old, _ in values):
            continue
        ratios = [new / old / (by if unit in TIMES else 1) for (old, new), by in zip(values, drifts)]
        yield (name, statistics.median(old for old, _ in values),
               statistics.median(new for _, new in values), unit,
               statistics.median(ratios), min(ratios), max(ratios))


def main():
    parser = argparse.ArgumentParser(prog="bench", add_help=False)
    parser.add_argument("--against", required=True, metavar="COMMIT")
    parser.add_argument("--rounds", type=int, default=7)
    parser.add_argument("--program", type=pathlib.Path, required=True)
    options, arguments = parser.parse_known_args()
    if options.rounds < 2:
        sys.exit("bench: --rounds: at least 2")

    commit = commit_of(options.against)
    print(f"building {commit[:12]} ...", file=sys.stderr, flush=True)
    programs = [built(commit), options.program.resolve()]
    if "--quick" not in arguments:
        arguments.append("--quick")
    rounds = []
    for number in range(options.rounds):
        print(f"round {number + 1} of {options.rounds}", file=sys.stderr, flush=True)
        order = [0, 1] if number % 2 == 0 else [1, 0]
        results = {side: figures(programs[side], arguments) for side in order}
        rounds.append((results[0], results[1]))

    if not rounds[0][0]:
        sys.exit("bench: nothing was measured; see --benchmark_filter")
    if not any(is_yardstick(name) for name in rounds[0][0]):
        print("no contender is measured beside: drift of the machine is in the ratios")
    print(f"{'this tree against ' + commit[:12]:<56}{'before':>9}{'now':>9}  ratio  interval")
    for name, old, new, unit, ratio, low, high in compare(rounds):
        mark = " *" if low > 1 or high < 1 else ""
        print(f"{name:<56}{old:9.1f}{new:9.1f}  {ratio:5.2f}  {low:.2f} to {high:.2f} {unit}{mark}")


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit("bench: stopped")
