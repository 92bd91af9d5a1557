#!/usr/bin/env python3
"""Runs the benchmarks and prints each figure as a ratio to the floor measured beside it.

usage: ratios.py BUILD_DIRECTORY [FILTER]

Each workload has a process of its own, with its floor: memory that others have given back would
serve the one and not the other.
"""
import json, pathlib, re, subprocess, sys


def run(program, *options):
    return subprocess.run([str(program), *options], check=True, capture_output=True,
                          text=True).stdout


def main(argv):
    if len(argv) < 2:
        print(__doc__)
        return 2
    build = pathlib.Path(argv[1]) / "bench"
    for program in sorted(build.glob("*_bench")):
        if program.name == "java_launch_bench":  # needs a Java runtime, and has no floor
            continue
        for name in run(program, "--benchmark_list_tests").split():
            if "_vorlane" not in name or not re.search(argv[2] if len(argv) > 2 else "", name):
                continue
            pair = "^" + name.replace("_vorlane", "_(floor|vorlane)") + "$"
            report = json.loads(run(program, "--benchmark_format=json",
                                    "--benchmark_repetitions=3", "--benchmark_filter=" + pair,
                                    "--benchmark_report_aggregates_only=true"))
            medians = {b["run_name"]: b for b in report["benchmarks"]
                       if b["aggregate_name"] == "median"}
            ours, floor = medians[name], medians[name.replace("_vorlane", "_floor")]
            extra = ", ".join(f"{k} {v:.1f}" for k, v in ours.items()
                              if k.startswith("bytes") or k == "heard")
            label = re.sub(r"BM_|_vorlane", "", name)
            print(f"{label:32} {ours['real_time'] / floor['real_time']:6.2f} x  "
                  f"({floor['real_time']:.2f} {floor['time_unit']} floor)"
                  f"{'  ' + extra if extra else ''}", flush=True)
    return 0


sys.exit(main(sys.argv))
