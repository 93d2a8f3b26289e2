#!/usr/bin/env python3
"""Runs the benchmark programs and the peers that are scripts, and prints one table.

    table.py BUILD [JOB ...]

Programs are BUILD/benchmarks/bin/bench-JOB (Google Benchmark, entries "job/case/who"). Peers that are
scripts are benchmarks/peers/*_JOB.py, which get the job's program as their argument and print lines
"job/case/who milliseconds" (medians of their own).
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


def run_script(path, program):
    # the system's Python, for which the peers' packages are installed
    done = subprocess.run(["/usr/bin/python3", str(path), str(program)], stdout=subprocess.PIPE, check=True, text=True)
    for line in done.stdout.splitlines():
        name, milliseconds = line.rsplit(None, 1)
        yield name, float(milliseconds)


def collect(build, jobs):
    peers = pathlib.Path(__file__).parent / "peers"
    results = {}
    for program in sorted(pathlib.Path(build, "benchmarks", "bin").glob("bench-*")):
        job = program.name.removeprefix("bench-")
        if jobs and job not in jobs:
            continue
        print(f"running {program.name} ...", file=sys.stderr)
        times = list(run_program(program))
        for script in sorted(peers.glob(f"*_{job}.py")):
            print(f"running {script.name} ...", file=sys.stderr)
            times += run_script(script, program)
        for name, milliseconds in times:
            job_name, case, who = name.split("/")
            results.setdefault((job_name, case), {})[who] = milliseconds
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
