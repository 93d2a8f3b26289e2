"""Many maps by several processes."""
from __future__ import annotations

import os
import sys
import warnings

from . import _core
from ._draw import draw

# what an interpreter needs 10 ms and more for is imported where it is used
TYPE_CHECKING = False
if TYPE_CHECKING:
    from collections.abc import Callable, Iterable, Iterator, Sequence
    from typing import Any


class Drawn:
    """What became of one map of `draw_many`: its `source`, the `path` of its file, and the `error`
    that it failed with, None when it is there.

    >>> drawn = draw_many(["jet.fits"], "figures")
    >>> drawn[0].error is None
    True
    """

    __slots__ = ("source", "path", "error")

    def __init__(self, source: Any, path: str, error: Exception | None) -> None:
        self.source = source
        self.path = path
        self.error = error

    def __repr__(self) -> str:
        return f"<pavane.Drawn {self.path}: {self.error or 'done'}>"


def draw_many(
    sources: Iterable[Any],
    folder: str | os.PathLike[str],
    *,
    workers: int | None = None,
    format: str = "png",
    names: Sequence[str] | None = None,
    progress: Callable[[int, int], object] | None = None,
    **options: Any,
) -> list[Drawn]:
    """Draws each source, as `draw` takes them, into a file of `folder` and tells what became of it.

    workers   processes that draw, those of the machine when none are named; 1: this one
    format    "png", "pdf" or "svg"
    names     of the files, without ending; else the names of the maps, or "map-1" for arrays
    progress  called with how many are done, and of how many
    options   those of `draw`

    A map that fails stops no other: its `error` says why, and a warning tells of it. The processes
    are new ones, not copies of this one, so threads and open files here do not matter.

    >>> for drawn in draw_many(["jet.fits", "core.fits"], "figures", workers=2):
    ...     print(drawn.path, drawn.error or "done")
    figures/jet.png done
    figures/core.png done
    """
    all_sources = list(sources)
    if workers is None:
        workers = os.cpu_count() or 1
    if isinstance(workers, bool) or not isinstance(workers, int):
        raise TypeError("workers has to be a whole number")
    if not 1 <= workers <= 1024:
        raise ValueError(f"workers has to be from 1 to 1024, not {workers}")
    if format not in ("png", "pdf", "svg"):
        raise ValueError(f"format knows png, pdf and svg, not '{format}'")
    if isinstance(sources, (str, bytes)):
        raise TypeError("sources has to be a list of maps")
    for option in options:
        if option not in (draw.__kwdefaults__ or {}):
            raise TypeError(f"draw has no option {option}")
    folder = os.fspath(folder)
    os.makedirs(folder, exist_ok=True)
    paths = [os.path.join(folder, f"{name}.{format}") for name in _names(all_sources, names)]
    jobs = list(zip(all_sources, paths))
    if workers == 1 or len(jobs) < 2:
        errors = [_draw_one(source, path, options) for source, path in _told(jobs, progress)]
    else:
        errors = _by_workers(jobs, options, min(workers, len(jobs)), progress)
    results = [Drawn(source, path, error) for (source, path), error in zip(jobs, errors)]
    for drawn in results:
        if drawn.error is not None:
            what = drawn.source if isinstance(drawn.source, (str, os.PathLike)) else drawn.path
            warnings.warn(f"{what} was not drawn: {drawn.error}", _core.PavaneWarning, stacklevel=2)
    return results


def _names(sources: list[Any], names: Sequence[str] | None) -> list[str]:
    if names is not None:
        wanted = [str(name) for name in names]
        if len(wanted) != len(sources):
            raise ValueError(f"there are {len(sources)} maps and {len(wanted)} names")
        if len(set(wanted)) != len(wanted) or any(not n or os.path.basename(n) != n for n in wanted):
            raise ValueError("names have to be names of files, each another one")
        return wanted
    result: list[str] = []
    taken: set[str] = set()
    for i, source in enumerate(sources, 1):
        name = f"map-{i}"
        if isinstance(source, (str, os.PathLike)):
            name = os.path.splitext(os.path.basename(os.fspath(source)))[0] or name
        free, more = name, 2
        while free in taken:
            free, more = f"{name}-{more}", more + 1
        taken.add(free)
        result.append(free)
    return result


def _told(jobs: list[tuple[Any, str]], progress: Callable[[int, int], object] | None) -> Iterator[tuple[Any, str]]:
    for i, job in enumerate(jobs):
        yield job
        if progress:
            progress(i + 1, len(jobs))


def _draw_one(source: Any, path: str, options: dict[str, Any]) -> Exception | None:
    try:
        draw(source, **options).save(path)
    except Exception as error:
        return error
    return None


class _Worker:
    """A process that draws what it is sent. Nothing of the caller's program runs in it."""

    def __init__(self) -> None:
        import subprocess

        place = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
        paths = [place, *filter(None, os.environ.get("PYTHONPATH", "").split(os.pathsep))]
        self._process = subprocess.Popen(
            [sys.executable, "-c", "from pavane._many import _serve; _serve()"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            env={**os.environ, "PYTHONPATH": os.pathsep.join(paths)},
        )

    def draw(self, job: bytes) -> Exception | None:
        assert self._process.stdin and self._process.stdout
        _send(self._process.stdin, job)
        import pickle

        answer = _receive(self._process.stdout)
        if answer is None:
            raise EOFError
        error: Exception | None = pickle.loads(answer)
        return error

    def end(self, kill: bool = False) -> int:
        if kill:
            self._process.kill()
        for stream in (self._process.stdin, self._process.stdout):
            if stream:
                try:
                    stream.close()
                except OSError:
                    pass
        return self._process.wait()


def _send(stream: Any, data: bytes) -> None:
    stream.write(len(data).to_bytes(8, "little"))
    stream.write(data)
    stream.flush()


def _receive(stream: Any) -> bytes | None:
    head = stream.read(8)
    if len(head) < 8:
        return None
    length = int.from_bytes(head, "little")
    data: bytes = stream.read(length)
    return data if len(data) == length else None


def _serve() -> None:
    """What a worker does: reads jobs from standard input until it ends."""
    import pickle
    import signal

    signal.signal(signal.SIGINT, signal.SIG_IGN)  # the caller ends its workers
    stdin = sys.stdin.buffer
    answers = os.fdopen(os.dup(1), "wb")
    os.dup2(2, 1)  # nothing that is printed gets between the answers
    while (job := _receive(stdin)) is not None:
        try:
            error = _draw_one(*pickle.loads(job))
        except Exception as failure:
            error = failure
        try:
            answer = pickle.dumps(error)
            pickle.loads(answer)
        except Exception:
            answer = pickle.dumps(RuntimeError(str(error)))
        _send(answers, answer)


def _by_workers(
    jobs: list[tuple[Any, str]],
    options: dict[str, Any],
    workers: int,
    progress: Callable[[int, int], object] | None,
) -> list[Exception | None]:
    import pickle
    import queue
    import threading

    errors: list[Exception | None] = [None] * len(jobs)
    waiting: queue.SimpleQueue[int] = queue.SimpleQueue()
    done: queue.SimpleQueue[int | None] = queue.SimpleQueue()
    running: set[_Worker] = set()
    given_up = threading.Event()
    for i in range(len(jobs)):
        waiting.put(i)

    def serve() -> None:
        worker: _Worker | None = None
        while not given_up.is_set():
            try:
                i = waiting.get_nowait()
            except queue.Empty:
                break
            try:
                source, path = jobs[i]
                job = pickle.dumps((source, path, options), protocol=pickle.HIGHEST_PROTOCOL)
                if worker is None:
                    worker = _Worker()
                    running.add(worker)
                errors[i] = worker.draw(job)
            except (EOFError, OSError) as error:
                status = worker.end(kill=True) if worker else 0
                if worker:
                    running.discard(worker)
                    errors[i] = RuntimeError(f"the process that drew it ended with status {status}")
                else:
                    errors[i] = error
                worker = None
            except Exception as error:
                errors[i] = error
            done.put(i)
        if worker:
            worker.end(kill=given_up.is_set())
            running.discard(worker)

    threads = [threading.Thread(target=serve, daemon=True) for _ in range(workers)]
    for thread in threads:
        thread.start()
    try:
        for i in range(len(jobs)):
            while True:
                try:
                    done.get(timeout=0.1)
                    break
                except queue.Empty:
                    continue
            if progress:
                progress(i + 1, len(jobs))
    except BaseException:
        given_up.set()
        for worker in list(running):
            worker.end(kill=True)
        raise
    for thread in threads:
        thread.join()
    return errors
