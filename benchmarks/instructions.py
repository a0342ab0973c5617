#!/usr/bin/env python3
"""Counts the instructions that one event costs on its way through the router.

usage: benchmarks/instructions.py [BUILD_FOLDER]      (build/bench)

Runs the router's benchmarks under callgrind with two numbers of events; the difference is what the
events themselves cost, whatever else the machine does.
"""
import os
import re
import subprocess
import sys

EVENTS = 20_000


def instructions(program, name, events):
    environment = dict(os.environ, VELMORA_BENCH_EVENTS=str(events))
    run = subprocess.run(
        ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", program,
         f"--benchmark_filter=^router/{name}(/|$)"],
        env=environment, capture_output=True, text=True, check=True)
    return int(re.search(r"Collected : (\d+)", run.stderr).group(1))


def main():
    if len(sys.argv) > 2:
        sys.exit(__doc__)
    folder = sys.argv[1] if len(sys.argv) == 2 else "build/bench"
    program = os.path.join(folder, "velmora_bench")
    bare = None
    for name in ("bare", "press", "motion", "key"):
        cost = (instructions(program, name, 2 * EVENTS) - instructions(program, name, EVENTS)) / EVENTS
        bare = bare or cost
        print(f"router/{name:8} {cost:8.1f} instructions an event, {cost - bare:+8.1f} over the bare "
              f"dispatch, ratio {cost / bare:.2f}")


if __name__ == "__main__":
    main()
