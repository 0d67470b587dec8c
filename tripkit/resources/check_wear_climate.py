#!/usr/bin/env python3
"""Checks the shipped wear-climate.json before it is committed.

    python3 tripkit/resources/check_wear_climate.py [DIR]

reads wear-climate.json and destinations.json from DIR (default: the folder
of this script) and checks what the decoder cannot: every place has twelve
months with every key, lows not above highs, cold nights not above lows and
hot days not below highs, chances between 0 and 1 (snow not above rain),
humidity a percentage, wind and UV in sane ranges, a known IANA time zone,
no place twice, and every destination of the catalog found by its name and
country. Prints every problem found and exits 1, or prints a summary and
exits 0. Standard library only.
"""

import json
import os
import sys

try:
    import zoneinfo
except ImportError:  # Python before 3.9: zones are not checked
    zoneinfo = None

MONTH_KEYS = ["high", "low", "hotDay", "coldNight", "rain", "snow", "humidity", "wind", "uv"]
PLACE_KEYS = {"name", "region", "country", "alias", "elevation", "lat", "lon", "timeZone", "months"}


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    with open(os.path.join(folder, "wear-climate.json"), encoding="utf-8") as f:
        doc = json.load(f)
    with open(os.path.join(folder, "destinations.json"), encoding="utf-8") as f:
        destinations = json.load(f)
    errors = []

    for key in ("asOf", "period", "source", "places"):
        if key not in doc:
            errors.append(f"missing {key}")
    for key in ("name", "url", "credit"):
        if not isinstance(doc.get("source", {}).get(key), str):
            errors.append(f"source.{key}: expected a string")
    if "NASA" in doc.get("source", {}).get("credit", ""):
        errors.append("source.credit: these values are not NASA POWER's")

    seen = set()
    for i, place in enumerate(doc.get("places", [])):
        where = f"places[{i}] ({place.get('name')})"
        unknown = set(place) - PLACE_KEYS
        if unknown:
            errors.append(f"{where}: unknown keys {sorted(unknown)}")
        for key in PLACE_KEYS - {"alias"}:
            if key not in place:
                errors.append(f"{where}: missing {key}")
        identity = (place.get("name"), place.get("country"))
        if identity in seen:
            errors.append(f"{where}: listed twice")
        seen.add(identity)
        if not (isinstance(place.get("country"), str) and len(place["country"]) == 2
                and place["country"].isupper()):
            errors.append(f"{where}: country must be a two-letter code")
        if not -90 <= place.get("lat", 0) <= 90 or not -180 <= place.get("lon", 0) <= 180:
            errors.append(f"{where}: coordinates out of range")
        if not -100 <= place.get("elevation", 0) <= 5000:
            errors.append(f"{where}: elevation out of range")
        if zoneinfo is not None:
            try:
                zoneinfo.ZoneInfo(place.get("timeZone", ""))
            except Exception:
                errors.append(f"{where}: unknown time zone {place.get('timeZone')!r}")
        months = place.get("months", [])
        if len(months) != 12:
            errors.append(f"{where}: {len(months)} months, expected twelve")
        for m, month in enumerate(months, start=1):
            at = f"{where} month {m}"
            if [k for k in MONTH_KEYS if k not in month] or set(month) - set(MONTH_KEYS):
                errors.append(f"{at}: keys {sorted(month)}")
                continue
            if not all(isinstance(month[k], (int, float)) for k in MONTH_KEYS):
                errors.append(f"{at}: every value must be a number")
                continue
            if not -60 <= month["low"] <= month["high"] <= 55:
                errors.append(f"{at}: low {month['low']} / high {month['high']}")
            if month["coldNight"] > month["low"] or month["hotDay"] < month["high"]:
                errors.append(f"{at}: cold night / hot day on the wrong side of low / high")
            if not 0 <= month["snow"] <= month["rain"] <= 1:
                errors.append(f"{at}: rain {month['rain']} / snow {month['snow']}")
            if not 0 <= month["humidity"] <= 100:
                errors.append(f"{at}: humidity {month['humidity']}")
            if not 0 <= month["wind"] <= 80:
                errors.append(f"{at}: wind {month['wind']}")
            if not 0 <= month["uv"] <= 20:
                errors.append(f"{at}: uv {month['uv']}")

    for d in destinations:
        if (d["name"], d.get("countryCode")) not in seen:
            errors.append(f"destination {d['id']} ({d['name']}, {d.get('countryCode')}) has no place")

    for error in errors:
        print("wear-climate.json: " + error)
    if errors:
        return 1
    print(f"wear-climate.json: {len(doc['places'])} places, all {len(destinations)} destinations covered")
    return 0


if __name__ == "__main__":
    sys.exit(main())
