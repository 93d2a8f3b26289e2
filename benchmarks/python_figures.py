#!/usr/bin/env python3
"""Figures of the Python module beside matplotlib, in processor time: BUILD/python has to be on PYTHONPATH.

    PYTHONPATH=build/release/python benchmarks/python_figures.py [512] [4096] [start] [many] [memory] [endless]

The map is a Gaussian of 1 in the middle, one of 0.3 beside it, noise of 0.002; 900 x 900 pixels with a colour bar and
contours at 1, 2, 4 ... 64 per cent, to the bytes of a PNG. Each figure is the median of some runs.
"""
import io
import multiprocessing
import os
import resource
import statistics
import subprocess
import sys
import tempfile
import time

import numpy as np

import pavane

LEVELS = [1, 2, 4, 8, 16, 32, 64]


def cells(size, seed=1):
    y, x = np.mgrid[:size, :size] / size - 0.5
    whole = np.exp(-(x**2 + y**2) / 0.002) + 0.3 * np.exp(-((x - 0.2) ** 2 + (y - 0.1) ** 2) / 0.001)
    return (whole + np.random.default_rng(seed).normal(scale=0.002, size=(size, size))).astype(np.float32)


def ours(array):
    return pavane.draw(array, levels="peak:1,2,4,8,16,32,64", size=(900, 900)).to_bytes()


def theirs(array):
    from matplotlib.backends.backend_agg import FigureCanvasAgg
    from matplotlib.figure import Figure

    figure = Figure(figsize=(9, 9), dpi=100)
    FigureCanvasAgg(figure)
    axes = figure.add_subplot()
    figure.colorbar(axes.imshow(array, origin="lower"))
    axes.contour(array, [level / 100 * array.max() for level in LEVELS], colors="w", linewidths=0.5)
    out = io.BytesIO()
    figure.savefig(out, format="png")
    return out.getvalue()


def processor(function, array, runs):
    function(array)
    times = []
    for _ in range(runs):
        start = time.process_time()
        size = len(function(array))
        times.append(time.process_time() - start)
    return statistics.median(times) * 1e3, size


def drawn(size):
    array = cells(size)
    runs = 7 if size < 2000 else 3
    mine, mine_bytes = processor(ours, array, runs)
    peer, peer_bytes = processor(theirs, array, runs)
    print(f"{size} squared: {mine:.0f} ms, matplotlib {peer:.0f} ms: {mine / peer:.3f}; {mine_bytes} bytes, {peer_bytes}")


def start():
    programs = {
        "pavane": "import sys, pavane; pavane.draw(sys.argv[1]).save('a.png')",
        "pavane, array": "import sys, numpy, pavane; pavane.draw(numpy.load(sys.argv[1])).save('a.png')",
        "matplotlib": "import sys, numpy; import matplotlib; matplotlib.use('agg'); import matplotlib.pyplot as p; "
                      "f = p.figure(figsize=(10, 9)); i = p.imshow(numpy.load(sys.argv[1])); p.colorbar(i); "
                      "p.savefig('a.png')",
    }
    with tempfile.TemporaryDirectory() as folder:
        np.save(folder + "/map.npy", cells(512))
        sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../docs/python"))
        import jet

        jet.write(folder + "/map.fits", cells(512))
        took = {}
        for name, code in programs.items():
            walls = []
            for _ in range(5):
                begin = time.monotonic()
                subprocess.run([sys.executable, "-c", code, "map.npy" if "numpy" in code else "map.fits"], cwd=folder, check=True)
                walls.append(time.monotonic() - begin)
            took[name] = statistics.median(walls)
    for name in ("pavane", "pavane, array"):
        print(f"fresh interpreter to PNG, {name}: {took[name]:.2f} s, matplotlib {took['matplotlib']:.2f} s: "
              f"{took[name] / took['matplotlib']:.3f}")


def many(count=24):
    with tempfile.TemporaryDirectory() as folder:
        arrays = [cells(512, seed) for seed in range(count)]
        begin = time.monotonic()
        pavane.draw_many(arrays, folder, workers=2, levels="peak:1,2,4,8,16,32,64", size=(900, 900))
        mine = count / (time.monotonic() - begin)
    begin = time.monotonic()
    with multiprocessing.get_context("spawn").Pool(2) as pool:
        pool.map(theirs, arrays)
    peer = count / (time.monotonic() - begin)
    print(f"maps a second, 2 processes: {mine:.1f}, matplotlib {peer:.1f}: {mine / peer:.1f} times")


def peak():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss / 1024


def memory():
    for order in "<", ">":
        code = (f"import sys; sys.path.insert(0, {os.path.dirname(__file__)!r}); import python_figures as b, numpy as n; "
                f"a = b.cells(512); b.pavane.draw(a, levels='none', size=(900, 900)).pixels; "
                f"a = n.full((4096, 4096), 1, '{order}f4'); a[:] = n.resize(b.cells(256), (4096, 4096)); "
                "open('/proc/self/clear_refs', 'w').write('5'); v = lambda: int([l for l in open('/proc/self/status') if 'VmHWM' in l][0].split()[1]); "
                "before = v(); f = b.pavane.draw(a, levels='none', size=(900, 900)); f.pixels; "
                "print((v() - before) / 1024)")
        grown = subprocess.run([sys.executable, "-c", code], check=True, capture_output=True, text=True).stdout
        print(f"4096 squared '{order}f4', no contours: peak grows by {float(grown):.1f} MiB (the picture is 3.1)")


def endless(count=10000):
    array = cells(64)
    for i in range(count):
        pavane.draw(array, size=(200, 150)).pixels
        if i == 200:
            before = peak()
    print(f"{count} pictures: {peak() - before:.2f} MiB since the 200th")


if __name__ == "__main__":
    jobs = {"512": lambda: drawn(512), "4096": lambda: drawn(4096), "start": start, "many": many,
            "memory": memory, "endless": endless}
    for name in sys.argv[1:] or jobs:
        jobs[name]()
