#!/usr/bin/env python3
"""Runs the benchmarks and prints each figure as a ratio to the floor measured in the same run.

usage: ratios.py BUILD_DIRECTORY [FILTER]
"""
import json, pathlib, re, subprocess, sys


def main(argv):
    if len(argv) < 2:
        print(__doc__)
        return 2
    build = pathlib.Path(argv[1]) / "bench"
    for program in sorted(build.glob("*_bench")):
        if program.name == "java_launch_bench":  # needs a Java runtime, and has no floor
            continue
        command = [str(program), "--benchmark_format=json", "--benchmark_repetitions=3",
                   "--benchmark_report_aggregates_only=true"]
        if len(argv) > 2:
            command.append("--benchmark_filter=" + argv[2])
        report = json.loads(subprocess.run(command, check=True, capture_output=True).stdout or "{}")
        medians = {b["run_name"]: b for b in report.get("benchmarks", [])
                   if b["aggregate_name"] == "median"}
        for name, run in medians.items():
            floor = medians.get(name.replace("_vorlane", "_floor"))
            if "_vorlane" not in name or floor is None:
                continue
            extra = ", ".join(f"{k} {v:.1f}" for k, v in run.items()
                              if k.startswith("bytes") or k == "heard")
            label = re.sub(r"BM_|_vorlane", "", name)
            print(f"{label:32} {run['real_time'] / floor['real_time']:6.2f} x  "
                  f"({floor['real_time']:.2f} {floor['time_unit']} floor){'  ' + extra if extra else ''}",
                  flush=True)
    return 0


sys.exit(main(sys.argv))
