"""What users read: each public name has a docstring with an example that runs, a stub, and the pages run."""
import doctest
import inspect
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import warnings
from pathlib import Path

import numpy

import pavane

TOP = Path(__file__).parents[2]
PAGES = TOP / "docs" / "python"
sys.path.insert(0, str(PAGES))
import jet  # noqa: E402


def public():
    """Every public name with what it is, methods of public classes too."""
    for name in pavane.__all__:
        thing = getattr(pavane, name)
        yield name, thing
        if inspect.isclass(thing):
            for kind in (thing, *thing.__mro__[1:], *thing.__subclasses__()):
                if not kind.__module__.startswith("pavane"):
                    continue
                for member, value in vars(kind).items():
                    value = getattr(value, "fget", getattr(value, "__func__", value))
                    if not member.startswith("_") and inspect.isfunction(value):
                        yield f"{kind.__name__}.{member}", value


class Docs(unittest.TestCase):
    def setUp(self):
        self.before = os.getcwd()
        self.folder = tempfile.TemporaryDirectory()
        os.chdir(self.folder.name)
        jet.write("jet.fits")
        jet.write("core.fits")

    def tearDown(self):
        os.chdir(self.before)
        self.folder.cleanup()

    def test_every_public_name_has_an_example_that_runs(self):
        names = {"numpy": numpy, **{name: getattr(pavane, name) for name in pavane.__all__}}
        finder, runner = doctest.DocTestFinder(recurse=False), doctest.DocTestRunner(verbose=False)
        for name, thing in public():
            text = inspect.getdoc(thing) or ""
            with self.subTest(name=name):
                self.assertTrue(text, "has no docstring")
                if not (inspect.isclass(thing) and issubclass(thing, (Exception, Warning))):
                    self.assertIn(">>>", text)
                for test in finder.find(thing, name, globs=dict(names)):
                    said = []
                    with warnings.catch_warnings():
                        warnings.simplefilter("ignore")
                        self.assertEqual(runner.run(test, out=said.append).failed, 0, "".join(said))

    def test_pages_run_and_their_pictures_are_kept(self):
        keep = os.environ.get("PAVANE_KEEP_PICTURES")
        for page in sorted(PAGES.glob("*.py")):
            if page.name == "jet.py":
                continue
            done = subprocess.run([sys.executable, page], capture_output=True, text=True, cwd=self.folder.name)
            self.assertEqual(done.returncode, 0, done.stderr)
            text = page.read_text()
            self.assertTrue(text.startswith("# %% [markdown]\n# # "), page)
            for picture in Path(self.folder.name).glob("python-*.png"):
                kept = TOP / "docs" / "pictures" / picture.name
                if keep:
                    shutil.copy(picture, kept)
                self.assertTrue(kept.exists(), f"{picture.name}: PAVANE_KEEP_PICTURES=1 keeps it")
        for page in PAGES.glob("*.py"):
            for line in page.read_text().splitlines():
                if "](../pictures/" in line:
                    self.assertTrue((PAGES / line.split("](")[1].split(")")[0]).exists(), line)


class Types(unittest.TestCase):
    @unittest.skipUnless(shutil.which("mypy"), "no mypy")
    def test_stubs_and_examples_are_strict(self):
        environment = {key: value for key, value in os.environ.items() if key != "LD_PRELOAD"}
        environment.pop("PYTHONPATH", None)
        done = subprocess.run(
            ["mypy", "--strict", "--config-file", "pyproject.toml", "--cache-dir",
             os.environ.get("PAVANE_MYPY_CACHE", "/dev/null"), "python/pavane", *map(str, PAGES.glob("*.py"))],
            cwd=TOP, env={**environment, "MYPYPATH": str(PAGES)}, capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_the_core_has_the_stubs_that_it_is_called_by(self):
        stubs = (TOP / "python" / "pavane" / "_core.pyi").read_text()
        from pavane import _core

        for name, thing in vars(_core).items():
            if name.startswith("_"):
                continue
            what = "class" if inspect.isclass(thing) else "def"
            self.assertIn(f"{what} {name}(" if what == "def" else f"class {name}", stubs)
            if what == "class":
                for member in vars(thing):
                    if not member.startswith("_"):
                        self.assertIn(f"def {member}(", stubs, name)


if __name__ == "__main__":
    unittest.main()
