#!/usr/bin/env python3
"""Writes the realistic three-airport data folder the benchmarks read.

    bench/make_input.py OUT_DIR

OUT_DIR gets calendars/, flights/ and history/ with JFK, EWR and LGA files
about the size the nightly job publishes for busy airports: 150
destinations, calendars of 330 departure days, 90 nights of history, fare
files with a year of Orlando day fares and a deal per destination (about
8.4 MB in all). The output depends only on the fixed seeds below, so every
run writes the same bytes. Run the commands with --today 2026-11-20.
"""

import datetime
import json
import os
import random
import sys

UPDATED = datetime.date(2026, 11, 20)
HOMES = ["JFK", "EWR", "LGA"]
AIRLINES = ["B6", "DL", "AA", "UA", "NK", "F9", "WN", "AS", "TP", "BA", "IB", "AF", "LH", "KL",
            "AM", "CM", "FI", "EI", "VS", "SY"]
DESTINATIONS = 150
CALENDAR_DAYS = 330
HISTORY_NIGHTS = 90


def day(d):
    return d.strftime("%Y-%m-%d")


def destination_codes():
    # Real-looking three-letter codes, the same list for every airport;
    # LIS, CUN and MIA are in it so the commands have a familiar target.
    rng = random.Random(7)
    codes = ["LIS", "CUN", "MIA", "SJU", "LAX"]
    letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
    while len(codes) < DESTINATIONS:
        code = "".join(rng.choice(letters) for _ in range(3))
        if code not in codes and code not in HOMES:
            codes.append(code)
    return codes


def dump(value):
    return json.dumps(value, separators=(",", ":"), ensure_ascii=False)


def calendar(origin, codes, rng):
    routes = {}
    for code in codes:
        base = rng.randint(90, 900)
        days = {}
        for ahead in range(CALENDAR_DAYS):
            if rng.random() < 0.05:  # no fare found for that day
                continue
            depart = UPDATED + datetime.timedelta(days=ahead)
            price = base + rng.randint(-60, 240)
            if rng.random() < 0.2:
                price += rng.choice([0.5, 0.99])
            cell = [price, rng.choice(AIRLINES), rng.choice([0, 0, 0, 1, 1, 2])]
            if rng.random() < 0.04:
                cell.append(None)  # one way
            else:
                cell.append(day(depart + datetime.timedelta(days=rng.randint(1, 14))))
            if rng.random() < 0.9:
                cell.append(day(UPDATED - datetime.timedelta(days=rng.randint(0, 9))))
            days[day(depart)] = cell
        routes[code] = days
    return {"origin": origin, "updated": day(UPDATED), "routes": routes}


def orlando_days(rng):
    out = {}
    for ahead in range(CALENDAR_DAYS):
        options = []
        for airline in rng.sample(AIRLINES[:12], 8):
            option = {"airline": airline, "price": rng.randint(39, 420),
                      "stops": rng.choice([0, 0, 1])}
            if rng.random() < 0.9:
                option["seen"] = day(UPDATED - datetime.timedelta(days=rng.randint(0, 6)))
            options.append(option)
        out[day(UPDATED + datetime.timedelta(days=ahead))] = options
    return out


def fares(origin, codes, rng):
    deals = []
    for code in codes:
        depart = UPDATED + datetime.timedelta(days=rng.randint(3, 300))
        deals.append({
            "destination": code,
            "city": "City of " + code,
            "country": rng.choice(["United States", "Mexico", "Portugal", "Spain", "Japan"]),
            "price": rng.randint(89, 1200),
            "depart": day(depart),
            "return": day(depart + datetime.timedelta(days=rng.randint(2, 14))),
            "airline": rng.choice(AIRLINES),
            "stops": rng.choice([0, 0, 1, 2]),
            "seen": day(UPDATED - datetime.timedelta(days=rng.randint(0, 6))),
        })
    return {"origin": origin, "updated": day(UPDATED), "toOrlando": orlando_days(rng),
            "fromOrlando": orlando_days(rng), "deals": deals}


def history(origin, codes, rng):
    first = UPDATED - datetime.timedelta(days=HISTORY_NIGHTS - 1)
    routes = {}
    for code in codes:
        base = rng.randint(90, 900)
        routes[code] = [None if rng.random() < 0.05 else base + rng.randint(-80, 80)
                        for _ in range(HISTORY_NIGHTS)]
    return {"origin": origin, "updated": day(UPDATED), "from": day(first), "routes": routes}


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: make_input.py OUT_DIR")
    out = sys.argv[1]
    codes = destination_codes()
    total = 0
    for index, origin in enumerate(HOMES):
        for folder, make in (("calendars", calendar), ("flights", fares), ("history", history)):
            rng = random.Random(f"{origin}/{folder}/{index}")
            os.makedirs(os.path.join(out, folder), exist_ok=True)
            path = os.path.join(out, folder, origin + ".json")
            text = dump(make(origin, codes, rng))
            with open(path, "w", encoding="utf-8") as f:
                f.write(text)
            total += len(text.encode("utf-8"))
    print(f"{out}: {total / 1e6:.1f} MB for {', '.join(HOMES)}")


if __name__ == "__main__":
    main()
