#!/usr/bin/env python3
"""Checks climate.json against destinations.json beside it.

    python3 tripkit/resources/check_climate.py

Every destination has a place; every place is a destination and has twelve
months in order, each with a low below its high, values inside what weather
near a destination can be (highs -20..120 °F, lows -40..100 °F, 0..40 inches
of precipitation), and months that change by less than 30 °F from one to the
next. Prints one line per problem and exits 1 when there is any. Standard
library only.
"""

import json
import os
import sys


def check(catalog, destinations):
    problems = []
    for key in ("asOf", "period", "source", "places"):
        if key not in catalog:
            problems.append(f"missing key {key}")
    source = catalog.get("source", {})
    for key in ("name", "url", "note"):
        if not isinstance(source.get(key), str) or not source.get(key):
            problems.append(f"source.{key}: expected a text")
    places = catalog.get("places", {})
    codes = {d["id"] for d in destinations}
    for code in sorted(codes - places.keys()):
        problems.append(f"{code}: destination without a climate place")
    for code in sorted(places.keys() - codes):
        problems.append(f"{code}: climate place that is no destination")
    names = {d["id"]: d["name"] for d in destinations}
    for code, place in places.items():
        where = f"places.{code}"
        if code in names and place.get("name") != names[code]:
            problems.append(f"{where}.name: {place.get('name')!r}, destination says {names[code]!r}")
        if not place.get("stationName"):
            problems.append(f"{where}.stationName: empty")
        km = place.get("distanceKm")
        if not isinstance(km, (int, float)) or not 0 <= km <= 100:
            problems.append(f"{where}.distanceKm: {km!r} is not 0-100")
        months = place.get("months", [])
        if len(months) != 12:
            problems.append(f"{where}.months: {len(months)} months, not twelve")
        for i, m in enumerate(months):
            at = f"{where}.months[{i}]"
            if m.get("month") != i + 1:
                problems.append(f"{at}.month: {m.get('month')!r}, expected {i + 1}")
            high, low, rain = m.get("high"), m.get("low"), m.get("rain")
            if not all(isinstance(x, (int, float)) for x in (high, low, rain)):
                problems.append(f"{at}: high, low and rain must be numbers")
                continue
            if not low < high:
                problems.append(f"{at}: low {low} is not below high {high}")
            if not -20 <= high <= 120:
                problems.append(f"{at}.high: {high} °F is out of range")
            if not -40 <= low <= 100:
                problems.append(f"{at}.low: {low} °F is out of range")
            if not 0 <= rain <= 40:
                problems.append(f"{at}.rain: {rain} inches is out of range")
            if not 2 <= high - low <= 45:
                problems.append(f"{at}: a daily range of {high - low:.1f} °F is implausible")
        for i in range(1, len(months)):
            for key in ("high", "low"):
                a, b = months[i - 1].get(key), months[i].get(key)
                if isinstance(a, (int, float)) and isinstance(b, (int, float)) and abs(b - a) >= 30:
                    problems.append(f"{where}.months[{i}].{key}: jumps {b - a:+.1f} °F from the month before")
    return problems


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(here, "climate.json"), encoding="utf-8") as f:
        catalog = json.load(f)
    with open(os.path.join(here, "destinations.json"), encoding="utf-8") as f:
        destinations = json.load(f)
    problems = check(catalog, destinations)
    for p in problems:
        print(p)
    if problems:
        sys.exit(1)
    print(f"climate.json: {len(catalog['places'])} places, all good")


if __name__ == "__main__":
    main()
