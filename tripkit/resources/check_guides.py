#!/usr/bin/env python3
"""Checks the shipped theme-park files before they are committed.

    python3 tripkit/resources/check_guides.py [DIR]

reads disney-guide.json, universal-guide.json and disney-events.json from DIR
(default: the folder of this script) and checks what the decoders cannot:
every key present, in its order and of its type, no key we do not know, the
Disney season calendar covering every day from 2026-01-01 to 2028-12-31 once,
and the prices in a sane order (child <= adult, low <= high, more days cost
more). Prints every problem found and exits 1, or prints a summary and
exits 0. Standard library only.
"""

import datetime
import json
import os
import re
import sys

CALENDAR_FIRST = datetime.date(2026, 1, 1)
CALENDAR_LAST = datetime.date(2028, 12, 31)
UNIVERSAL_PARKS = ["Universal Studios Florida", "Islands of Adventure", "Universal Epic Universe"]
KEBAB = re.compile(r"^[a-z0-9]+(-[a-z0-9]+)*$")


class Checker:
    def __init__(self, source):
        self.source = source
        self.errors = []

    def fail(self, path, message):
        self.errors.append(f"{self.source}: {path}: {message}")


# Type shapes: "string", "number", "int", "bool", "day", "strings" (array of
# strings), a dict (an object with exactly these keys in this order), or a
# one-element list [shape] (an array whose elements have that shape).
SOURCE = {"name": "string", "nameEs": "string", "url": "string"}
SPAN = {"low": "number", "high": "number"}

DISNEY = {
    "asOf": "string",
    "coverage": {"from": "day", "hotelsPublishedThrough": "day", "ticketsPublishedThrough": "day"},
    "sources": [SOURCE],
    "baseResort": "string",
    "calendar": [{"from": "day", "to": "day", "season": "string", "seasonEs": "string",
                  "rates": ["number"], "estimated": "bool"}],
    "resorts": [{"id": "string", "name": "string", "tier": "string", "room": "string",
                 "roomEs": "string", "low": "number", "high": "number", "getAround": "string",
                 "getAroundEs": "string", "parking": "number", "benefits": "strings"}],
    "tickets": {
        "adult": [{"days": "int", "low": "number", "high": "number"}],
        "child": [{"days": "int", "low": "number", "high": "number"}],
        "hopper": [{"fromDays": "int", "low": "number", "high": "number"}],
    },
    "lightningLane": {
        "taxRate": "number",
        "multiPass": SPAN,
        "singlePass": [{"park": "string", "low": "number", "high": "number"}],
        "premierPass": [{"park": "string", "low": "number", "high": "number"}],
    },
    "transport": {
        "mearsStandard": {"adult": "number", "child": "number"},
        "mearsExpress": {"roundTripUpTo4": "number", "perExtraPerson": "number"},
        "rideshare": SPAN,
        "rideshareXL": SPAN,
        "carService": SPAN,
        "rentalPerDay": SPAN,
    },
}

UNIVERSAL = {
    "asOf": "string",
    "coverage": {"from": "day", "to": "day"},
    "sources": [SOURCE],
    "taxes": {"tickets": "number", "hotel": "number"},
    "hotels": [{"id": "string", "name": "string", "tier": "string", "from": "number",
                "room": "string", "roomEs": "string", "getAround": "string",
                "getAroundEs": "string", "benefits": "strings"}],
    "tickets": {
        "oneDay": [{"park": "string", "price": "number"}],
        "threeDayOneParkEach": {"published": "number"},
        "threeDayParkToPark": {"published": "number"},
    },
    "express": "strings",
    "transport": {
        "shuttle": {"name": "string", "phone": "string", "published": "bool"},
        "rideshare": SPAN,
        "rideshareXL": SPAN,
        "carService": SPAN,
        "rentalPerDay": SPAN,
    },
}

EVENTS = {
    "asOf": "string",
    "sources": [SOURCE],
    "events": [{"name": "string", "nameEs": "string", "first": "day", "last": "day",
                "busy": "bool", "estimated": "bool"}],
}


def parse_day(text):
    try:
        if len(text) != 10:
            raise ValueError
        return datetime.date.fromisoformat(text)
    except (TypeError, ValueError):
        return None


def check_shape(c, value, shape, path):
    """Checks `value` against `shape`; returns False when it does not fit."""
    where = path or "(root)"
    if isinstance(shape, dict):
        if not isinstance(value, list) or any(not isinstance(p, tuple) for p in value):
            c.fail(where, "expected an object")
            return False
        keys = [k for k, _ in value]
        if keys != list(shape):
            missing = [k for k in shape if k not in keys]
            extra = [k for k in keys if k not in shape]
            if missing:
                c.fail(where, "missing keys " + ", ".join(missing))
            if extra:
                c.fail(where, "unknown keys " + ", ".join(extra))
            if not missing and not extra:
                c.fail(where, "keys out of order: " + ", ".join(keys))
            return False
        ok = True
        for key, item in value:
            ok = check_shape(c, item, shape[key], f"{path}.{key}" if path else key) and ok
        return ok
    if isinstance(shape, list):
        if not isinstance(value, list) or any(isinstance(p, tuple) for p in value):
            c.fail(where, "expected an array")
            return False
        ok = True
        for i, item in enumerate(value):
            ok = check_shape(c, item, shape[0], f"{path}[{i}]") and ok
        return ok
    if shape == "strings":
        return check_shape(c, value, ["string"], path)
    fits = {
        "string": lambda v: isinstance(v, str) and v != "",
        "number": lambda v: isinstance(v, (int, float)) and not isinstance(v, bool) and v >= 0,
        "int": lambda v: isinstance(v, int) and not isinstance(v, bool),
        "bool": lambda v: isinstance(v, bool),
        "day": lambda v: isinstance(v, str) and parse_day(v) is not None,
    }[shape]
    if not fits(value):
        c.fail(where, f"expected {'a non-negative number' if shape == 'number' else 'a ' + shape}"
                      f"{' (non-empty)' if shape == 'string' else ''}, found {value!r}")
        return False
    return True


def load(path):
    """The document with every object as a list of (key, value) pairs, so that
    key order and repeated keys can be checked."""
    with open(path, encoding="utf-8") as f:
        return json.load(f, object_pairs_hook=lambda pairs: [tuple(p) for p in pairs])


def plain(value):
    """The pairs form turned back into dicts (after the shape has been checked)."""
    if isinstance(value, list) and value and all(isinstance(p, tuple) for p in value):
        return {k: plain(v) for k, v in value}
    if isinstance(value, list):
        return [plain(v) for v in value]
    return value


def check_span(c, span, path):
    if span["low"] > span["high"]:
        c.fail(path, f"low {span['low']} is above high {span['high']}")


def check_sources(c, sources):
    if not sources:
        c.fail("sources", "no source")
    for i, s in enumerate(sources):
        if not s["url"].startswith("https://"):
            c.fail(f"sources[{i}].url", "expected an https address")


def check_ticket_table(c, rows, path):
    if len(rows) != 10:
        c.fail(path, f"expected 10 rows, found {len(rows)}")
    for i, row in enumerate(rows):
        check_span(c, row, f"{path}[{i}]")
        if row["days"] != i + 1:
            c.fail(f"{path}[{i}].days", f"expected {i + 1}, found {row['days']}")
        if i > 0:
            before = rows[i - 1]
            if row["low"] <= before["low"] or row["high"] <= before["high"]:
                c.fail(f"{path}[{i}]", "a longer ticket must cost more than a shorter one")


def check_disney(c, g):
    coverage = {k: parse_day(v) for k, v in g["coverage"].items()}
    if coverage["from"] > min(coverage["hotelsPublishedThrough"], coverage["ticketsPublishedThrough"]):
        c.fail("coverage", "from is after the published-through days")
    check_sources(c, g["sources"])

    # The calendar: consecutive seasons, no gap, no overlap, the whole range.
    calendar = g["calendar"]
    if not calendar:
        c.fail("calendar", "no season")
        return
    previous_to = None
    for i, s in enumerate(calendar):
        path = f"calendar[{i}]"
        first, last = parse_day(s["from"]), parse_day(s["to"])
        if first > last:
            c.fail(path, f"from {s['from']} is after to {s['to']}")
        if previous_to is not None and first != previous_to + datetime.timedelta(days=1):
            c.fail(path, f"from {s['from']} does not follow the previous season's last day {previous_to}")
        previous_to = last
        if not 1 <= len(s["rates"]) <= 3:
            c.fail(f"{path}.rates", f"expected 1 to 3 rates, found {len(s['rates'])}")
        elif min(s["rates"]) <= 0:
            c.fail(f"{path}.rates", "a rate must be above 0")
        if first > coverage["hotelsPublishedThrough"] and not s["estimated"]:
            c.fail(f"{path}.estimated", "a season after hotelsPublishedThrough must be estimated")
        if last <= coverage["hotelsPublishedThrough"] and s["estimated"]:
            c.fail(f"{path}.estimated", "a season inside the published range is marked estimated")
    if parse_day(calendar[0]["from"]) > CALENDAR_FIRST:
        c.fail("calendar[0].from", f"the calendar must begin by {CALENDAR_FIRST}")
    if previous_to < CALENDAR_LAST:
        c.fail(f"calendar[{len(calendar) - 1}].to", f"the calendar must reach {CALENDAR_LAST}")

    # Resorts.
    ids = set()
    for i, r in enumerate(g["resorts"]):
        path = f"resorts[{i}]"
        if not KEBAB.match(r["id"]):
            c.fail(f"{path}.id", f"{r['id']!r} is not kebab-case")
        if r["id"] in ids:
            c.fail(f"{path}.id", f"{r['id']} appears twice")
        ids.add(r["id"])
        if r["tier"] not in ("value", "moderate", "deluxe"):
            c.fail(f"{path}.tier", f"{r['tier']!r} is not a Disney tier")
        check_span(c, r, path)
        if r["low"] <= 0:
            c.fail(f"{path}.low", "a rate must be above 0")
        if not r["benefits"]:
            c.fail(f"{path}.benefits", "no benefit")
    base = [r for r in g["resorts"] if r["name"] == g["baseResort"]]
    if len(base) != 1:
        c.fail("baseResort", f"{g['baseResort']!r} names {len(base)} resorts, expected one")
    else:
        # Other resorts are scaled by where a season's first rate lies
        # between the base resort's low and high, so those must be the
        # calendar's cheapest and dearest first rates.
        firsts = [s["rates"][0] for s in calendar if s["rates"]]
        if firsts and (base[0]["low"], base[0]["high"]) != (min(firsts), max(firsts)):
            c.fail("baseResort", f"the base resort's low/high {base[0]['low']}/{base[0]['high']} "
                                 f"differ from the calendar's {min(firsts)}/{max(firsts)}")

    # Tickets.
    t = g["tickets"]
    check_ticket_table(c, t["adult"], "tickets.adult")
    check_ticket_table(c, t["child"], "tickets.child")
    for i, (a, k) in enumerate(zip(t["adult"], t["child"])):
        if k["low"] > a["low"] or k["high"] > a["high"]:
            c.fail(f"tickets.child[{i}]", "a child ticket costs more than the adult one")
    for i, h in enumerate(t["hopper"]):
        check_span(c, h, f"tickets.hopper[{i}]")
        if i == 0 and h["fromDays"] != 1:
            c.fail("tickets.hopper[0].fromDays", "the first hopper row must apply from 1 day")
        if i > 0 and h["fromDays"] <= t["hopper"][i - 1]["fromDays"]:
            c.fail(f"tickets.hopper[{i}].fromDays", "fromDays must increase")

    # Lightning Lane.
    ll = g["lightningLane"]
    if not 0 <= ll["taxRate"] < 0.2:
        c.fail("lightningLane.taxRate", f"{ll['taxRate']} is not a plausible tax fraction")
    check_span(c, ll["multiPass"], "lightningLane.multiPass")
    for key in ("singlePass", "premierPass"):
        if not ll[key]:
            c.fail(f"lightningLane.{key}", "no row")
        for i, row in enumerate(ll[key]):
            check_span(c, row, f"lightningLane.{key}[{i}]")

    # Transport.
    tr = g["transport"]
    if tr["mearsStandard"]["child"] > tr["mearsStandard"]["adult"]:
        c.fail("transport.mearsStandard", "the child fare is above the adult fare")
    for key in ("rideshare", "rideshareXL", "carService", "rentalPerDay"):
        check_span(c, tr[key], f"transport.{key}")
    if tr["rideshareXL"]["low"] < tr["rideshare"]["low"]:
        c.fail("transport.rideshareXL", "a large car is cheaper than a standard one")


def check_universal(c, g):
    first, last = parse_day(g["coverage"]["from"]), parse_day(g["coverage"]["to"])
    if first > last:
        c.fail("coverage", "from is after to")
    check_sources(c, g["sources"])
    for key, rate in g["taxes"].items():
        if not 0 <= rate < 0.3:
            c.fail(f"taxes.{key}", f"{rate} is not a plausible tax fraction")
    ids = set()
    for i, h in enumerate(g["hotels"]):
        path = f"hotels[{i}]"
        if not KEBAB.match(h["id"]):
            c.fail(f"{path}.id", f"{h['id']!r} is not kebab-case")
        if h["id"] in ids:
            c.fail(f"{path}.id", f"{h['id']} appears twice")
        ids.add(h["id"])
        if h["tier"] not in ("primeValue", "signature"):
            c.fail(f"{path}.tier", f"{h['tier']!r} is not a Universal tier")
        if h["from"] <= 0:
            c.fail(f"{path}.from", "a rate must be above 0")
        if not h["benefits"]:
            c.fail(f"{path}.benefits", "no benefit")
    parks = [p["park"] for p in g["tickets"]["oneDay"]]
    for park in UNIVERSAL_PARKS:
        if parks.count(park) != 1:
            c.fail("tickets.oneDay", f"{park!r} appears {parks.count(park)} times, expected once")
    for i, p in enumerate(g["tickets"]["oneDay"]):
        if p["price"] <= 0:
            c.fail(f"tickets.oneDay[{i}].price", "a price must be above 0")
    one_each = g["tickets"]["threeDayOneParkEach"]["published"]
    hopping = g["tickets"]["threeDayParkToPark"]["published"]
    if hopping < one_each:
        c.fail("tickets.threeDayParkToPark", "park-to-park costs less than one park a day")
    for i, hotel_id in enumerate(g["express"]):
        if hotel_id not in ids:
            c.fail(f"express[{i}]", f"{hotel_id!r} is not a hotel id")
    for key in ("rideshare", "rideshareXL", "carService", "rentalPerDay"):
        check_span(c, g["transport"][key], f"transport.{key}")


def check_events(c, e):
    check_sources(c, e["sources"])
    previous = None
    for i, ev in enumerate(e["events"]):
        first, last = parse_day(ev["first"]), parse_day(ev["last"])
        if first > last:
            c.fail(f"events[{i}]", f"first {ev['first']} is after last {ev['last']}")
        if previous is not None and first < previous:
            c.fail(f"events[{i}].first", "events must be in order of their first day")
        previous = first
    years = {parse_day(ev["first"]).year for ev in e["events"]}
    for year in range(CALENDAR_FIRST.year, CALENDAR_LAST.year + 1):
        if year not in years:
            c.fail("events", f"no event in {year}")


def main(argv):
    folder = argv[1] if len(argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    files = [("disney-guide.json", DISNEY, check_disney),
             ("universal-guide.json", UNIVERSAL, check_universal),
             ("disney-events.json", EVENTS, check_events)]
    errors = []
    for name, shape, check in files:
        c = Checker(name)
        try:
            document = load(os.path.join(folder, name))
        except (OSError, ValueError) as e:
            errors.append(f"{name}: {e}")
            continue
        if check_shape(c, document, shape, ""):
            check(c, plain(document))
        errors += c.errors
    for line in errors:
        print(line)
    if errors:
        print(f"{len(errors)} problem(s)")
        return 1
    print("ok: disney-guide.json, universal-guide.json and disney-events.json")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
