#!/usr/bin/env python3
"""The lattice of a map of 512 squared as whole processes, from floats to SVG: ours, and gnuplot with hidden3d
(which takes most of a minute) and with pm3d. Without gnuplot it prints nothing.

    gnuplot_box.py PROGRAM [CELLS]
"""
import pathlib
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

PLOT = """set terminal {terminal} size 1200,800
set output '{out}'
set view 55,30
set xyplane 0
unset key
{style}
splot '{map}' binary array=({cells},{cells}) format='%float' with {what}
"""


def median(runs, command, **options):
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options)
        times.append((time.perf_counter() - start) * 1e3)
    return statistics.median(times)


def main():
    program, cells = sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else "512"
    if not shutil.which("gnuplot"):
        return
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "map.floats")
        subprocess.run([program, "--write-map", str(file), cells], check=True)
        out = str(pathlib.Path(folder, "out"))
        print(f"box/process-lattice-{cells}/pavane", median(5, [program, "--draw-lattice", str(file), cells, out]))
        for who, runs, terminal, style, what in (("gnuplot-pm3d", 3, "pngcairo", "", "pm3d"),
                                                 ("gnuplot-hidden3d", 1, "svg", "set hidden3d", "lines")):
            script = PLOT.format(terminal=terminal, out=out, map=file, cells=cells, style=style, what=what)
            print(f"box/process-lattice-{cells}/{who}", median(runs, ["gnuplot"], input=script.encode()))


if __name__ == "__main__":
    main()
