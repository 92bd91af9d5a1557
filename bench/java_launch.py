#!/usr/bin/env python3
"""Time to the first line of the example's Java class: by its launcher, and by the java command.

    java_launch.py BUILD_DIRECTORY [ROUNDS]

JAVA_HOME names the JDK. The two take turns, and the medians are compared.
"""

import os
import statistics
import subprocess
import sys
import time


def seconds_to_first_line(command):
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    line = process.stdout.readline()
    seconds = time.perf_counter() - start
    process.stdout.read()
    process.wait()
    if line != b"Hello, Ada!\n":
        sys.exit(f"{command[0]} printed {line!r}")
    return seconds


def main():
    build, rounds = sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 40
    os.environ.setdefault("VTQS_JVM_LIBRARY_OVERRIDE", "/lib/server/libjvm.so")
    example = os.path.join(build, "examples", "java_launcher")
    root = os.path.join(example, "root")
    launcher = [os.path.join(example, "java_launcher"), "-kvlroot", root, "Ada"]
    java = [os.path.join(os.environ["JAVA_HOME"], "bin", "java"), "-cp",
            os.path.join(root, "lib", "kvlall.jar"), "demo.Greeting", "Ada"]
    times = {"launcher": [], "java": []}
    for _ in range(rounds):
        times["launcher"].append(seconds_to_first_line(launcher))
        times["java"].append(seconds_to_first_line(java))
    medians = {name: statistics.median(values) for name, values in times.items()}
    for name, seconds in medians.items():
        print(f"{name:10} {1000 * seconds:7.1f} ms (best {1000 * min(times[name]):.1f})")
    print(f"ratio      {medians['launcher'] / medians['java']:7.2f}")


main()
