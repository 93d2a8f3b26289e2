#!/usr/bin/env python3
"""Runs the benchmark programs and the peers that are scripts, and prints one table.

    table.py BUILD [JOB ...]

Programs are BUILD/benchmarks/bin/*_bench and *_peer (Google Benchmark, entries "job/case/who").
Scripts are benchmarks/peers/*_peer.py, which print lines "job/case/who milliseconds" (medians of their
own). The job of a program is its file's name up to the first underscore.
"""
import json
import pathlib
import subprocess
import sys

REPETITIONS = 5
TO_MS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def run_program(path):
    command = [str(path), "--benchmark_format=json", f"--benchmark_repetitions={REPETITIONS}",
               "--benchmark_report_aggregates_only=true", "--benchmark_min_time=0.05"]
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    for entry in json.loads(done.stdout)["benchmarks"]:
        if entry.get("aggregate_name") == "median":
            name = "/".join(entry["run_name"].split("/")[:3])
            yield name, entry["real_time"] * TO_MS[entry["time_unit"]]


def run_script(path):
    done = subprocess.run([sys.executable, str(path)], stdout=subprocess.PIPE, check=True, text=True)
    for line in done.stdout.splitlines():
        name, milliseconds = line.rsplit(None, 1)
        yield name, float(milliseconds)


def collect(build, jobs):
    here = pathlib.Path(__file__).parent
    programs = sorted(pathlib.Path(build, "benchmarks", "bin").glob("*_bench"))
    programs += sorted(pathlib.Path(build, "benchmarks", "bin").glob("*_peer"))
    scripts = sorted((here / "peers").glob("*_peer.py"))
    results = {}
    for path in programs + scripts:
        if jobs and path.name.split("_")[0] not in jobs:
            continue
        print(f"running {path.name} ...", file=sys.stderr)
        for name, milliseconds in (run_script if path.suffix == ".py" else run_program)(path):
            job, case, who = name.split("/")
            results.setdefault((job, case), {})[who] = milliseconds
    return results


def main():
    results = collect(sys.argv[1], sys.argv[2:])
    print(f"{'job':14} {'case':26} {'who':22} {'median ms':>12} {'pavane / it':>12}")
    for (job, case), times in sorted(results.items()):
        own = times.get("pavane")
        for who, milliseconds in sorted(times.items(), key=lambda item: item[0] != "pavane"):
            ratio = f"{own / milliseconds:.3f}" if own is not None and who != "pavane" else ""
            print(f"{job:14} {case:26} {who:22} {milliseconds:12.4f} {ratio:>12}")


if __name__ == "__main__":
    main()
