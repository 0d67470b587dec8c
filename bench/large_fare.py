#!/usr/bin/env python3
"""Peak memory and time of roamwise-cli reading one fare file near the read cap.

    bench/large_fare.py ROAMWISE_CLI [MEGABYTES]

Writes a valid fare file of about MEGABYTES (default 60; the reader refuses
files over 64 MiB) to a temporary folder: a year of Orlando day fares with
many options a day and many deals, from fixed seeds, so every run writes
the same bytes. Then runs `deals` and `plan` over it once each under /usr/bin/time -v and
prints their peak resident memory beside the file's size.
"""

import datetime
import json
import os
import random
import subprocess
import sys
import tempfile

UPDATED = datetime.date(2026, 11, 20)
AIRLINES = ["B6", "DL", "AA", "UA", "NK", "F9", "WN", "AS"]


def day(d):
    return d.strftime("%Y-%m-%d")


def orlando_days(rng, options_per_day):
    days = {}
    for offset in range(330):
        options = []
        for _ in range(options_per_day):
            option = {"airline": rng.choice(AIRLINES), "price": rng.randint(59, 420),
                      "stops": rng.randint(0, 1)}
            if rng.random() < 0.8:
                option["seen"] = day(UPDATED - datetime.timedelta(days=rng.randint(0, 6)))
            options.append(option)
        days[day(UPDATED + datetime.timedelta(days=offset))] = options
    return days


def deals(rng, count):
    out = []
    for i in range(count):
        depart = UPDATED + datetime.timedelta(days=rng.randint(1, 300))
        code = "".join(chr(65 + i // 26 ** k % 26) for k in range(3))
        out.append({"destination": code,
                    "city": f"City {i}", "country": "Portugal",
                    "price": rng.randint(120, 1400),
                    "depart": day(depart),
                    "return": day(depart + datetime.timedelta(days=rng.randint(2, 14))),
                    "airline": rng.choice(AIRLINES), "stops": rng.randint(0, 2),
                    "seen": day(UPDATED - datetime.timedelta(days=rng.randint(0, 6)))})
    return out


def write_file(path, megabytes):
    rng = random.Random(20261120)
    # About a third of the bytes in Orlando fares, the rest in deals.
    target = megabytes * 1_000_000
    options_per_day = max(1, target // 3 // (330 * 2 * 50))
    book = {"origin": "JFK", "updated": day(UPDATED),
            "toOrlando": orlando_days(rng, options_per_day),
            "fromOrlando": orlando_days(rng, options_per_day),
            "deals": deals(rng, max(1, target * 2 // 3 // 160))}
    with open(path, "w") as out:
        json.dump(book, out, separators=(",", ":"))
    return os.path.getsize(path)


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    cli = sys.argv[1]
    megabytes = int(sys.argv[2]) if len(sys.argv) == 3 else 60
    with tempfile.TemporaryDirectory() as folder:
        os.mkdir(os.path.join(folder, "flights"))
        size = write_file(os.path.join(folder, "flights", "JFK.json"), megabytes)
        print(f"fare file          {size / 1048576:8.1f} MB")
        # `deals` keeps only the deals it may list; `plan` only the Orlando fares.
        for name, args in (("deals", ["deals"]), ("plan", ["plan", "disney", "--top", "3"])):
            result = subprocess.run(["/usr/bin/time", "-v", cli, *args, "--home", "JFK", "--data",
                                     folder, "--today", day(UPDATED)],
                                    stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
            if result.returncode != 0:
                sys.exit(f"{name} failed:\n{result.stderr}")
            fields = dict(line.strip().split(": ", 1) for line in result.stderr.splitlines()
                          if ": " in line)
            peak = int(fields["Maximum resident set size (kbytes)"]) / 1024
            wall = fields["Elapsed (wall clock) time (h:mm:ss or m:ss)"]
            ratio = peak / (size / 1048576)
            print(f"peak RSS, {name:8} {peak:8.1f} MB  ({ratio:.2f}x the file; goal: near its size)"
                  f"  wall {wall}")

if __name__ == "__main__":
    main()
