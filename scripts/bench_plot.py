"""Draws what a hit, a new list and a last release cost by members of the table."""

import argparse
import pathlib
import re
import subprocess
import sys

sys.dont_write_bytecode = True
from bench_against import ROOT, figures

PLOT = ROOT / "docs" / "performance.svg"
NAME = re.compile(r"(hit|miss|last release), members (\d+)/(ours|flyweight)$")
PANELS = {"hit": "hit", "miss": "new list", "last release": "last release"}
CONTENDERS = {"ours": "lc rgb '#1f5fbf' pt 7", "flyweight": "lc rgb '#c0662a' pt 5 dt 2"}
HEAD = """\
set terminal svg size 960,340 font 'sans-serif,13' background 'white'
set output '{plot}'
set multiplot layout 1,3
set logscale xy
set format x '10^{{%L}}'
set xlabel 'members of the table'
set xrange [{fewest} / 1.5 : {most} * 1.5]
set yrange [{least} / 1.3 : {highest} * 1.3]
set ytics (10, 20, 50, 100, 200, 500, 1000, 2000, 5000)
set grid lc rgb '#dddddd'
set key top left
"""


def lines(rows):
    """The plot in gnuplot's language, for rows of operation, members, contender and nanoseconds."""
    members = [row[1] for row in rows]
    costs = [row[3] for row in rows]
    yield HEAD.format(plot=PLOT, fewest=min(members), most=max(members), least=min(costs), highest=max(costs))
    for panel, (operation, title) in enumerate(PANELS.items()):
        curves = []
        for contender, look in CONTENDERS.items():
            block = f"${contender}{panel}"
            yield f"{block} << END"
            yield from (f"{row[1]} {row[3]}" for row in sorted(rows) if (row[0], row[2]) == (operation, contender))
            yield "END"
            curves.append(f"{block} using 1:2 with linespoints lw 2 ps 0.6 {look} title '{contender}'")
        yield f"set title '{title}'"
        yield f"set ylabel '{'' if panel else 'nanoseconds'}'"
        yield "plot " + ", ".join(curves)


def main():
    parser = argparse.ArgumentParser(prog="bench", add_help=False)
    parser.add_argument("--program", type=pathlib.Path, required=True)
    parser.add_argument("--members", type=int, default=10_000_000)
    options, arguments = parser.parse_known_args()
    measured = figures(options.program, [*arguments, f"--members={options.members}",
                                         "--benchmark_filter=, members "])
    rows = []
    for name, figure in measured.items():
        if found := NAME.match(name):
            rows.append((found[1], int(found[2]), found[3], figure.value))
            print(f"{name:<56}{figure.value:9.1f} {figure.unit}")
    if not rows:
        sys.exit("bench: --plot: nothing was measured")
    subprocess.run(["gnuplot"], input="\n".join(lines(rows)), text=True, check=True)
    print(f"drawn to {PLOT.relative_to(ROOT)}")


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit("bench: stopped")
