#!/usr/bin/env python3
"""Prints without a window, to files and to queues of a print scheduler of its own, and reads the pages with poppler.

usage: print_e2e.py PAVANE_VIEW PAVANE_SIMULATE FOLDER
"""
import glob
import os
import random
import re
import shutil
import signal
import struct
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "platform"))
import print_scheduler  # noqa: E402

MAP, DATA, CUBE = "clean.fits", "observation.uvfits", "cube.fits"
A4, LETTER_LYING = (595, 842), (792, 612)
# arguments, pages, size in points, words of a page (from 0), what is nowhere
FILES = [
    ([MAP, "--print", "F", "--paper", "A4"], 1, A4, {0: ["SIMULATED, 15.2", " GHz, 2026-03-20", "Jy"]}, ["(Continued)", "%"]),
    ([MAP, "--print", "F", "--paper", "letter", "--landscape", "--caption", "Fig. %d ~C: 50% & ~L", "--dpi", "300"], 1,
     LETTER_LYING, {0: ["Fig. 1 : 50% &"]}, ["(Continued)"]),
    ([MAP, "--print", "F", "--caption", "", "--paper", "100x150", "--number", "12"], 1, (283, 425), {0: ["12."]}, ["GHz,"]),
    ([DATA, "--print", "F", "--paper", "A4", "--copies", "3"], 1, A4, {0: ["uv distance", "SIMULATED, 15.2"]}, []),
    ([DATA, "--table", "baselines", "--print", "F", "--paper", "A6", "--landscape"], 3, (420, 298),
     {0: ["First", "BR"], 1: ["2.", "(Continued)", "First"]}, []),
    ([DATA, "--table", "baselines", "--print", "F", "--paper", "A6", "--landscape", "--pages", "2-", "--number", "8"], 2,
     (420, 298), {0: ["9.", "(Continued)"]}, [" 8.\n"]),
    ([CUBE, "--print", "F", "--paper", "A4", "--planes", "0-11", "--grid", "3x4"], 1, A4, {0: ["1.42 GHz", "1.431 GHz"]}, []),
    ([CUBE, "--print", "F", "--paper", "A4", "--planes", "2-7", "--grid", "2x2"], 2, A4,
     {0: ["1.422 GHz", "1.425 GHz"], 1: ["1.426 GHz", "1.427 GHz", "2."]}, ["1.421 GHz", "1.428 GHz"]),
]
# arguments, status, word of the one line
REFUSED = [
    ([MAP, "--print", "no/F.pdf"], 2, "no/F.pdf"),
    ([MAP, "--print", "F.pdf", "--pages", "5"], 2, "F.pdf"),
    ([MAP, "--print", "F.pdf", "--margins", "200,10,10,10", "--paper", "A4"], 2, "F.pdf"),
    ([MAP, "--print", MAP], 1, "would write over"),
    ([MAP, "--printer", "nowhere"], 2, "nowhere"),
    ([CUBE, "--print", "F.pdf", "--planes", "3-12"], 2, "has no plane 12"),
    ([CUBE, "--print", "F.pdf", "--planes", "3-12", "--plane", "1"], 1, "one of the two"),
    ([CUBE, "--print", "F.pdf", "--grid", "2x2"], 1, "--grid goes with"),
    ([MAP, "--printer", "rejects"], 2, "Out of toner"),
]


def write_cube(name, planes=12, side=16):
    cards = [("SIMPLE", "T"), ("BITPIX", -32), ("NAXIS", 3), ("NAXIS1", side), ("NAXIS2", side), ("NAXIS3", planes)]
    for axis, (kind, value, step) in enumerate([("RA---SIN", 187.7, -1e-3), ("DEC--SIN", 12.4, 1e-3), ("FREQ", 1.42e9, 1e6)], 1):
        cards += [(f"CTYPE{axis}", f"'{kind}'"), (f"CRVAL{axis}", value), (f"CDELT{axis}", step), (f"CRPIX{axis}", 1)]
    text = "".join(f"{key:8}= {value!s:>20}".ljust(80) for key, value in cards) + "END"
    cells = struct.pack(f">{planes * side * side}f", *(i % 97 for i in range(planes * side * side)))
    with open(name, "wb") as file:
        file.write(text.ljust(2880).encode() + cells.ljust(-len(cells) // 2880 * -2880, b"\0"))


class Failure(Exception):
    pass


def check(is_true, *what):
    if not is_true:
        raise Failure(" ".join(str(word) for word in what))


def told(*words):
    return subprocess.run(words, capture_output=True, check=True).stdout.decode()


def check_pages(name, pages, size):
    info = told("pdfinfo", name)
    check(int(re.search(r"Pages: +(\d+)", info)[1]) == pages, name, info)
    found = [float(x) for x in re.search(r"Page size: +([\d.]+) x ([\d.]+)", info).groups()]
    check(all(abs(a - b) <= 1 for a, b in zip(found, size)), name, info)
    return info


class Run:
    def __init__(self, program, folder, environment):
        self.program, self.folder, self.env = program, folder, environment

    def start(self, arguments):
        return subprocess.Popen([self.program, arguments[0], "--batch", *arguments[1:]], cwd=self.folder, env=self.env,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def __call__(self, arguments):
        process = self.start(arguments)
        out, err = process.communicate(timeout=250)
        return process.returncode, out.decode(), err.decode()


def files(run):
    name = os.path.join(run.folder, "F")
    for arguments, pages, size, words, nowhere in FILES:
        status, _, err = run(arguments)
        check(status == 0 and not err, arguments, err)
        check_pages(name, pages, size)
        texts = told("pdftotext", "-layout", name, "-").replace("\u00a0", " ").split("\f")
        for page, wanted in words.items():
            for word in wanted:
                check(word in texts[page], arguments, word, texts[page])
        check(not any(word in text for word in nowhere for text in texts), arguments, texts)
        os.remove(name)


def refused(run):
    before = sorted(os.listdir(run.folder))
    for arguments, status, word in REFUSED:
        result = run(arguments)
        check(result[0] == status and word in result[2].splitlines()[0], arguments, result)
        check(sorted(os.listdir(run.folder)) == before, arguments, os.listdir(run.folder))


def stopped(run, seed):
    """Nothing is left of a job that a signal ends, whenever it comes."""
    chance = random.Random(seed)
    before = sorted(os.listdir(run.folder))
    for i in range(4):
        process = run.start([MAP, "--print", "S.pdf", "--paper", "A0", "--dpi", "4800"])
        time.sleep(chance.uniform(0, 2))
        process.send_signal(signal.SIGINT if i % 2 else signal.SIGTERM)
        process.communicate(timeout=250)
        left = sorted(os.listdir(run.folder))
        check(left == before or (process.returncode == 0 and left == sorted(before + ["S.pdf"])), left)
        if process.returncode == 0:
            os.remove(os.path.join(run.folder, "S.pdf"))


def queues(run, jobs):
    for number, (queue, arguments) in enumerate([("raw", [MAP]), ("pdf", [DATA, "--table", "telescopes"])], 1):
        status, _, err = run([*arguments, "--printer", queue, "--paper", "A3", "--copies", "2"])
        check(status == 0, queue, err)
        name = f"{jobs}/{queue}-{number}"
        for _ in range(500):
            if os.path.exists(name + ".data"):
                break
            time.sleep(0.02)
        with open(name + ".txt", encoding="utf-8") as file:
            title, copies, options = file.read().splitlines()
        check((title, copies) == ("SIMULATED", "2") and "media=A3" in options and "print-scaling=none" in options, title, options)
        check("Title:           SIMULATED" in check_pages(name + ".data", 1, (842, 1191)), name)
    check(not glob.glob(run.folder + "/*.pdf"), os.listdir(run.folder))


def main():
    missing = [tool for tool in ("pdfinfo", "pdftotext") if not shutil.which(tool)]
    if missing or not print_scheduler.isThere():
        print("skipped: there is no " + ", ".join(missing or ["cups-daemon and cups-client"]))
        return 1 if os.environ.get("CI") else 77
    program, simulate, folder = (os.path.abspath(name) for name in sys.argv[1:4])
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    subprocess.run([simulate, "--out", folder, "--size", "64", "--clean", "10", "--hours", "2"], check=True,
                   stdout=subprocess.DEVNULL)
    write_cube(os.path.join(folder, CUBE))
    scheduler = print_scheduler.PrintScheduler(folder + "-queues")
    try:
        run = Run(program, folder, dict(scheduler.environment, QT_QPA_PLATFORM="offscreen"))
        files(run)
        queues(run, scheduler.jobs)
        refused(run)
        stopped(run, 5)
    except Failure as failure:
        print("failed:", failure)
        return 1
    finally:
        scheduler.close()
        shutil.rmtree(folder + "-queues", ignore_errors=True)
    print("passed")
    return 0


if __name__ == "__main__":
    sys.exit(main())
