#!/usr/bin/env python3
"""compare_hashes.py FRAMES SEED PROGRAM...: the autoplayer plays the same run in every program; the hash of the whole game must be the
same at every 600th frame. A program that ends in .exe runs under Wine."""
import os
import subprocess
import sys
import tempfile


def start(program, frames, seed, hashes):
    emulator = ["wine"] if program.endswith(".exe") else []
    shown = "Z:" + hashes.replace("/", "\\") if emulator else hashes
    return subprocess.Popen(
        emulator + [program, "--headless", "--demo", "--seed", seed, "--frames", frames, "--hashes", shown],
        stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)


def main():
    frames, seed, *programs = sys.argv[1:]
    runs = []
    with tempfile.TemporaryDirectory() as folder:
        for number, program in enumerate(programs):
            if not os.path.exists(program):
                sys.exit(f"{program}: not built")
        started = [start(program, frames, seed, f"{folder}/{number}") for number, program in enumerate(programs)]
        for number, (program, process) in enumerate(zip(programs, started)):
            errors = process.communicate()[1]
            if process.returncode != 0:
                sys.exit(f"{program} ended with status {process.returncode}:\n{errors[-2000:]}")
            with open(f"{folder}/{number}", encoding="ascii") as file:
                runs.append(file.read().splitlines())
    if len(runs[0]) != int(frames) // 600:
        sys.exit(f"{programs[0]} wrote {len(runs[0])} hashes")
    for program, run in zip(programs, runs):
        for first, other in zip(runs[0], run):
            if first != other:
                sys.exit(f"{program} differs from {programs[0]}: {other}, not {first} (frame, hash)")
        if len(run) != len(runs[0]):
            sys.exit(f"{program} wrote {len(run)} hashes, not {len(runs[0])}")
        print(f"{program}: {len(run)} hashes, the last one {run[-1]}")


main()
