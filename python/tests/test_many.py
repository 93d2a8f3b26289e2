"""Threads, processes, signals and hosts."""
import concurrent.futures
import gc
import itertools
import multiprocessing
import os
import pickle
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import warnings
from pathlib import Path

import numpy as np

import pavane
from maps import write_map


def cells(k, size=40):
    y, x = np.mgrid[:size, :size]
    return np.exp(-((x - k) ** 2 + (y - 20) ** 2) / 20).astype(np.float32)


def png(k):
    return pavane.draw(cells(k), size=(200 + k, 160), palette=("heat", "grey")[k % 2]).to_bytes()


class Many(unittest.TestCase):
    def test_threads_and_processes_draw_the_same(self):
        wanted = [png(k) for k in range(8)]
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            self.assertEqual(list(pool.map(png, range(8))), wanted)
        for way in ("fork", "forkserver", "spawn"):
            with multiprocessing.get_context(way).Pool(2) as pool:
                self.assertEqual(pool.map(png, range(3)), wanted[:3], way)

    def test_one_figure_in_many_threads(self):
        fig = pavane.draw(cells(9))
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            for answer in [pool.submit((fig.refresh, fig.to_bytes, fig._drawing.notes)[k % 3]) for k in range(24)]:
                answer.result()
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            whole = list(pool.map(lambda k: fig.to_bytes(("png", "svg")[k % 2]), range(8)))
        self.assertEqual(len(set(whole)), 2)

    def test_draw_many_goes_on(self):
        with tempfile.TemporaryDirectory() as folder:
            good, bad = Path(folder) / "good.fits", Path(folder) / "bad.fits"
            write_map(good, cells(20))
            bad.write_text("SIMPLE")
            for workers in (1, 2):
                said = []
                with warnings.catch_warnings(record=True) as told:
                    warnings.simplefilter("always")
                    drawn = pavane.draw_many([good, bad, cells(7), good], Path(folder) / "out", workers=workers,
                                             size=(200, 160), progress=lambda n, of: said.append((n, of)))
                self.assertEqual([os.path.basename(d.path) for d in drawn],
                                 ["good.png", "bad.png", "map-3.png", "good-2.png"])
                self.assertEqual([type(d.error) for d in drawn],
                                 [type(None), pavane.FormatError, type(None), type(None)])
                self.assertEqual([os.path.exists(d.path) for d in drawn], [True, False, True, True])
                self.assertEqual(said, [(n, 4) for n in (1, 2, 3, 4)])
                self.assertIn("bad.fits", str(told[0].message))
        for options, error in (({"workers": 0}, ValueError), ({"workers": 1.5}, TypeError),
                               ({"palett": "heat"}, TypeError), ({"format": "gif"}, ValueError), ({"names": ["a", "a"]}, ValueError)):
            with self.assertRaises(error):
                pavane.draw_many([1, 2], "/tmp", **options)

    def test_dropped_in_every_order(self):
        area = pavane.Area.ellipse((20, 20), (9, 5))

        def made(file):
            array = cells(5)
            fig = pavane.draw(array, size=(64, 64), areas=area)
            return {"array": array, "fig": fig, "pixels": fig.pixels, "read": pavane.draw(file).array,
                    "bits": pavane.Areas([area]).mask((40, 40), packed=True)}

        gc.freeze()  # what was there before need not be looked through
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "map.fits"
            write_map(file, cells(5))
            wanted = {name: part.sum() for name, part in made(file).items() if name != "fig"}
            for order in list(itertools.permutations(wanted.keys() | {"fig"}))[::3]:
                parts = made(file)
                for name in order:
                    del parts[name]
                    gc.collect()
                    for left, part in parts.items():
                        self.assertTrue(part.refresh() is None if left == "fig" else part.sum() == wanted[left])
        gc.unfreeze()

    def test_other_versions_of_pickles_are_refused(self):
        text = pickle.dumps(pavane.draw(cells(3)), protocol=0).decode("latin1")
        function, (_, *rest) = pavane.draw(cells(3)).__reduce__()
        with self.assertRaisesRegex(ValueError, "another version"):
            function(99, *rest)
        self.assertIn("_again", text)


def run(code):
    with tempfile.TemporaryDirectory() as folder:  # which Qt's own start wants to be private
        return subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, timeout=120,
                              env={**os.environ, "XDG_RUNTIME_DIR": folder})


class Process(unittest.TestCase):
    def test_import_starts_and_loads_nothing(self):
        done = run("import sys, pavane; print([m for m in ('numpy', 'astropy', 'matplotlib', 'IPython') if m in "
                   "sys.modules])")
        self.assertEqual((done.stdout.strip(), done.stderr), ("[]", ""))

    def test_shutdown_with_figures_alive(self):
        for code in ("fig = pavane.draw(numpy.ones((9, 9))); p = fig.pixels",
                     "fig = pavane.draw(numpy.ones((9, 9))); fig.pixels; pavane.release(); fig.to_bytes()",
                     "import sys, threading, time\n"
                     "def draw():\n while True: pavane.draw(numpy.ones((9, 9))).to_bytes()\n"
                     "class Late:\n def __del__(self): pavane.draw(numpy.ones((9, 9))).to_bytes()\n"
                     "sys.late = Late()\n"
                     "[threading.Thread(target=draw, daemon=True).start() for _ in range(2)]; time.sleep(0.2)",
                     "import threading; t = threading.Thread(target=lambda: pavane.draw(numpy.ones((9, 9))).pixels); "
                     "t.start(); t.join(); pavane.draw(numpy.ones((9, 9))).pixels"):
            done = run("import numpy, pavane; " + code)
            self.assertEqual((done.returncode, done.stderr), (0, ""), code)

    def test_interrupts_are_answered(self):
        rows = np.random.default_rng(1).normal(size=(3000, 3000)).astype(np.float32)
        fig = pavane.draw(rows, levels="sigma:1,1.5,2")

        def kill():
            time.sleep(0.15)
            sent.append(time.monotonic())
            os.kill(os.getpid(), signal.SIGINT)

        sent = []
        thread = threading.Thread(target=kill)
        thread.start()
        with self.assertRaises(KeyboardInterrupt):
            while True:
                fig.refresh()
                fig.to_bytes("svg")
        waited = time.monotonic() - sent[0]
        thread.join()
        # 0.2 s on a machine that does nothing else; a call that hears nothing takes many seconds
        self.assertLess(waited, 2.0)

    def test_beside_a_qt_host(self):
        try:
            import PyQt6.QtWidgets  # noqa: F401
        except ImportError:
            self.skipTest("no PyQt6")
        draw = "pavane.draw(numpy.ones((9, 9))).to_bytes(); "
        is_free = "assert QApplication.instance() is None; "
        for code in ("a = QApplication([]); " + draw + "assert QApplication.instance() is a",
                     draw + is_free + "a = QApplication([]); w = QWidget(); w.show(); " + draw,
                     draw + "pavane.release(); a = QApplication([]); " + draw + "w = QWidget(); w.show()"):
            done = run("import numpy, pavane; from PyQt6.QtWidgets import QApplication, QWidget; " + code)
            self.assertEqual((done.returncode, done.stderr), (0, ""), code)
        done = run("import numpy, pavane; " + draw + "from PyQt6.QtWidgets import QApplication; " + is_free)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        done = run("import numpy, pavane; from PyQt6.QtCore import QCoreApplication; a = QCoreApplication([]); " + draw)
        self.assertIn("RuntimeError", done.stderr)


if __name__ == "__main__":
    unittest.main()
