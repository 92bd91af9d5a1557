#!/usr/bin/env python3
"""Compares vorlane-solve with the cbc command: processor time, and the values that they find.

usage: cbc_ratios.py BUILD_DIRECTORY INSTANCES_DIRECTORY [EDITS]

Solves every .mps file of the directory, and as many random edits of gt2.mps there (20, if not
told): of a bound, a coefficient, or a row that goes. The two programs take turns, three times each,
and the best time of each counts.
"""
import math, pathlib, random, re, resource, subprocess, sys, tempfile

LIMIT = 60.0


def cpu():
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def run(command):
    begin = cpu()
    try:
        text = subprocess.run(command, capture_output=True, text=True, timeout=LIMIT).stdout
    except subprocess.TimeoutExpired:
        text = ""
    return cpu() - begin, text


def value(text):
    found = re.findall(r"^(?:objective:|Objective value:|Optimal objective) +(-?[\d.e+-]+)", text,
                       re.M)
    return float(found[-1]) if found else None


def sections(lines):
    """The data lines of each section, by number."""
    result, name = {}, None
    for i, line in enumerate(lines):
        if line[:1].isalpha():
            name = line.split()[0]
        elif line.strip() and not line.startswith("*") and "'MARKER'" not in line:
            result.setdefault(name, []).append(i)
    return result


def scaled(word, factor, whole):
    number = float(word) * factor
    return str(max(1, round(number))) if whole else f"{number:.6g}"


def edited(lines, seed):
    dice = random.Random(seed)
    lines = list(lines)
    where = sections(lines)
    for _ in range(dice.randint(1, 3)):
        what = dice.choice(["BOUNDS", "COLUMNS", "ROWS"])
        i = dice.choice(where[what])
        words = lines[i].split()
        if what == "ROWS":
            words[0] = "N"  # a row that asks for nothing
        elif what == "BOUNDS":
            words[3] = scaled(words[3], dice.choice([0.5, 0.7, 1.5, 2.0]), whole=True)
        else:
            words[2] = scaled(words[2], dice.choice([0.5, 0.8, 0.9, 1.1, 1.25, 2.0]), whole=False)
        lines[i] = " " + "  ".join(words)
    return "\n".join(lines) + "\n"


def ratio(solve, path):
    times = {"cbc": [], "ours": []}
    for _ in range(3):
        for name, command in (("cbc", ["cbc", path, "solve"]), ("ours", [solve, "--quiet", path])):
            seconds, text = run(command)
            times[name].append((seconds, value(text)))
    theirs, ours = min(times["cbc"])[0], min(times["ours"])[0]
    a, b = times["cbc"][0][1], times["ours"][0][1]
    same = a == b or (a is not None and b is not None and math.isclose(a, b, rel_tol=1e-6))
    print(f"{path.stem:12} {ours / theirs:6.2f} x  ({theirs:.3f} s cbc)"
          f"{'' if same else f'  values differ: cbc {a}, ours {b}'}", flush=True)
    return theirs, ours


def main(argv):
    if len(argv) < 3:
        print(__doc__)
        return 2
    solve = pathlib.Path(argv[1]) / "engines" / "cbc" / "vorlane-solve"
    instances = sorted(pathlib.Path(argv[2]).glob("*.mps"))
    for path in instances:
        ratio(solve, path)
    lines = (pathlib.Path(argv[2]) / "gt2.mps").read_text().splitlines()
    with tempfile.TemporaryDirectory() as directory:
        times = []
        for seed in range(1, 1 + int(argv[3] if len(argv) > 3 else 20)):
            path = pathlib.Path(directory) / f"gt2_edit{seed}.mps"
            path.write_text(edited(lines, seed))
            times.append(ratio(solve, path))
    if times:
        mean = math.exp(sum(math.log(ours / theirs) for theirs, ours in times) / len(times))
        total = sum(ours for _, ours in times) / sum(theirs for theirs, _ in times)
        print(f"edits of gt2: {total:.2f} x in all, {mean:.2f} x in the geometric mean")
    return 0


sys.exit(main(sys.argv))
