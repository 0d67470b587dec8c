#!/usr/bin/env python3
"""Peak memory and start-to-exit time of roamwise-cli over three home airports.

    bench/cli_figures.py ROAMWISE_CLI INPUT_DIR [RUNS]

INPUT_DIR is a folder written by bench/make_input.py. Peak resident memory
comes from /usr/bin/time -v; the time of a fresh process is the median wall
time of RUNS runs (default 15). Each figure is printed with its goal.
"""

import statistics
import subprocess
import sys
import time

HOMES = "JFK,EWR,LGA"
TODAY = "2026-11-20"


def peak_rss_mb(command):
    result = subprocess.run(["/usr/bin/time", "-v"] + command, capture_output=True, text=True)
    if result.returncode != 0:
        sys.exit(f"{' '.join(command)} failed:\n{result.stderr}")
    for line in result.stderr.splitlines():
        if "Maximum resident set size" in line:
            return int(line.split(":")[1]) / 1024
    sys.exit("no peak memory in /usr/bin/time output")


def median_ms(command, runs):
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        times.append((time.perf_counter() - start) * 1000)
    return statistics.median(times)


def main():
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    cli, data = sys.argv[1], sys.argv[2]
    runs = int(sys.argv[3]) if len(sys.argv) == 4 else 15
    common = ["--data", data, "--home", HOMES, "--today", TODAY]
    calendar = [cli, "calendar", "LIS"] + common
    getaways = [cli, "getaways", "--timing", "weekends"] + common
    print(f"peak RSS  calendar LIS          {peak_rss_mb(calendar):6.1f} MB   (goal <= 30 MB)")
    print(f"peak RSS  getaways --timing weekends {peak_rss_mb(getaways):6.1f} MB   (goal <= 30 MB)")
    print(f"fresh process  calendar LIS     {median_ms(calendar, runs):6.1f} ms   (goal <= 60 ms)")
    print(f"fresh process  getaways weekends {median_ms(getaways, runs):6.1f} ms")


if __name__ == "__main__":
    main()
