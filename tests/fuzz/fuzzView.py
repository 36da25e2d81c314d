#!/usr/bin/env python3
"""Feeds damaged files and odd arguments to zylview and keeps what makes it crash.

    fuzzView.py ZYLVIEW SEEDS KEEP SECONDS [RANDOM SEED]

ZYLVIEW is the program (best built with sanitizers), SEEDS a folder of good files, KEEP the folder for
what crashed. A run that ends by a signal, with a sanitizer's report or not at all is a finding; an
error message and an exit code are what is wanted. Exits 1 when there are findings.
"""
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time

LARGEST_SEED = 2_000_000
LONGEST_RUN = 120  # seconds
REPORTS = (b"AddressSanitizer", b"runtime error:", b"terminate called")
ODD = ["", "-1", "0", "1e400", "nan", "99999999999", ":", ",", "x" * 5000, "\u00e4\u20ac", "%s%n", "a:b:c",
       "plane:0,0,0,0,0,0", "box:1,0,1,0,1,0", "sphere:nan,0,0,1", "Velocity:0", "Velocity:-5", "0:Color=1"]
OPTIONS = ["--reader", "--array", "--range", "--colormap", "--opacity", "--contours", "--glyphs", "--clip",
           "--block", "--time", "--view", "--size", "--background"]


def damage(data, chance):
    data = bytearray(data)
    for _ in range(chance.randint(1, 4)):
        if not data:
            break
        at = chance.randrange(len(data))
        length = chance.randint(1, min(400, len(data)))
        kind = chance.randrange(6)
        if kind == 0:
            del data[at:]
        elif kind == 1:
            del data[at:at + length]
        elif kind == 2:
            data[at:at] = data[chance.randrange(len(data)):][:length]
        elif kind == 3:
            data[at:at + length] = bytes(chance.randrange(256) for _ in range(length))
        elif kind == 4:
            data[at] ^= 1 << chance.randrange(8)
        else:  # another number where one stands
            digits = [i for i, c in enumerate(data[:4000]) if 48 <= c <= 57]
            if digits:
                i = chance.choice(digits)
                data[i:i + 1] = chance.choice([b"-1", b"0", b"99999999999", b"4294967296", b"nan"])
    return bytes(data)


def main():
    program, seeds, keep, seconds = sys.argv[1:5]
    number = int(sys.argv[5]) if len(sys.argv) > 5 else random.randrange(1 << 32)
    chance = random.Random(number)
    seeds = pathlib.Path(seeds)
    files = sorted(f for f in seeds.rglob("*") if f.is_file() and f.stat().st_size < LARGEST_SEED)
    tops = [f for f in files if f.suffix in (".vtm", ".pvd", ".vtu", ".vts", ".vti", ".case", ".json")]
    keep = pathlib.Path(keep)
    end = time.monotonic() + float(seconds)
    runs = findings = 0
    print(f"random seed {number}, {len(files)} files", flush=True)
    while time.monotonic() < end:
        with tempfile.TemporaryDirectory() as scratch:
            copy = pathlib.Path(scratch) / "data"
            shutil.copytree(seeds, copy)
            top = copy / chance.choice(tops).relative_to(seeds)
            if chance.random() < 0.8:
                near = [f for f in files if f.parent.is_relative_to(seeds / top.parent.relative_to(copy))]
                victim = top if chance.random() < 0.5 else copy / chance.choice(near).relative_to(seeds)
                victim.write_bytes(damage(victim.read_bytes(), chance))
            arguments = ["--list"] if chance.random() < 0.5 else ["--output", scratch + "/p.png"]
            while chance.random() < 0.5:
                arguments += [chance.choice(OPTIONS), chance.choice(ODD)]
            command = [program, *arguments, str(top)]
            try:
                run = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                     stderr=subprocess.STDOUT, timeout=LONGEST_RUN)
                output, bad = run.stdout, run.returncode < 0 or any(r in run.stdout for r in REPORTS)
                why = f"exit code {run.returncode}"
            except subprocess.TimeoutExpired as late:
                output, bad, why = late.stdout or b"", True, f"no end within {LONGEST_RUN} s"
            runs += 1
            if bad:
                findings += 1
                place = keep / f"{number}-{runs}"
                shutil.copytree(copy, place / "data")
                (place / "command").write_text(repr(command) + "\n" + why + "\n")
                (place / "output").write_bytes(output)
                print(f"   run {runs}: {why}, kept in {place}", flush=True)
            elif runs % 20 == 0:
                print(f"   {runs} runs, {findings} findings", flush=True)
    print(f"{runs} runs, {findings} findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
