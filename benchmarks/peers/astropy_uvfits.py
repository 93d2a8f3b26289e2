#!/usr/bin/python3
"""The cells of an observation's tables with Astropy, import not counted, and cat over all of its groups.

Prints "uvfits/open/astropy <median milliseconds>" and "uvfits/groups/cat <median milliseconds>". The files are
those that bench-uvfits has left beside itself.
"""
import os
import statistics
import subprocess
import sys
import time

from astropy.io import fits

folder = os.path.dirname(sys.argv[1])


def median(job, times):
    taken = []
    for _ in range(times):
        start = time.perf_counter()
        job()
        taken.append((time.perf_counter() - start) * 1000)
    return statistics.median(taken)


def cells():
    with fits.open(f"{folder}/small.uvfits") as file:
        for hdu in file[1:]:
            for name in hdu.columns.names:
                hdu.data[name].tolist()


large = f"{folder}/large.uvfits"
print("uvfits/open/astropy", median(cells, 15))
print("uvfits/groups/cat", median(lambda: subprocess.run(["cat", large], stdout=subprocess.DEVNULL, check=True), 9))
os.remove(large)  # a gigabyte that the program makes anew
