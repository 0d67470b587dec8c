#!/usr/bin/env python3
"""Regenerates airports.json, the home-airport catalog, from OurAirports data.

    python3 tripkit/resources/make_airports.py [SOURCE] > tripkit/resources/airports.json

SOURCE is the OurAirports extract of U.S. and Puerto Rico airports that have an
IATA code (default: shared/data/real/airports/ourairports-us-iata.json beside
the repository). The airports are chosen by the curated list of codes below:
the large airports with airline service plus the medium ones that people fly
from; the few that the extract lacks come from HAND_ROWS. Standard library only.
"""

import json
import os
import sys

# Every large airport of the extract with scheduled service (Joint Base
# Andrews, a military field, is left out), then the medium ones by state.
CODES = """
ATL AUS BNA BOS BUF BWI CLE CLT CMH CVG DCA DEN DFW DTW EWR FLL IAD IAH IND JAX
JFK LAS LAX LGA MCI MCO MDW MEM MIA MKE MSP MSY OAK ONT ORD PBI PDX PHL PHX PIT
PVD PWM RDU RIC RNO RSW SAN SAT SAV SDF SEA SFB SFO SJC SLC SMF SNA STL SYR TPA
TUL FAI ANC HNL SJU
BQN PSE
JNU KTN SIT BET
BHM HSV MGM MOB
LIT XNA
TUS AZA
BUR LGB FAT PSP SBA SBP MRY STS
COS ASE EGE GJT
BDL
DAB ECP EYW GNV MLB PGD PIE PNS SRQ TLH VPS
AGS
OGG KOA LIH ITO
CID DSM
BOI
BMI MLI PIA
EVV FWA SBN
ICT
LEX
BTR LFT SHV
BGR
AZO FNT GRR LAN TVC
DLH RST
SGF
GPT JAN
BIL BZN MSO FCA
AVL GSO ILM
FAR BIS
LNK OMA
MHT
ACY
ABQ
ALB HPN ISP ROC SWF
CAK DAY
OKC
EUG MFR RDM
ABE AVP MDT
CAE CHS GSP MYR
FSD RAP
CHA TRI TYS
AMA BRO CRP DAL ELP HOU HRL LBB LRD MAF MFE
PVU
CHO ORF PHF ROA
BTV
BLI GEG PAE PSC
GRB MSN
CRW
JAC
""".split()

# Airports people fly from that the extract does not hold: the U.S. Virgin
# Islands and Guam (not in its U.S./Puerto Rico filter) and Appleton, WI.
# Coordinates of STT, STX and GUM are OurAirports' (the worldwide table of
# the same npm package); Appleton's are its published reference point
# (44°15′29″N, 88°31′09″W).
HAND_ROWS = [
    {"code": "STT", "city": "Charlotte Amalie", "state": "VI",
     "name": "Cyril E. King Airport", "lat": 18.337091, "lon": -64.977251},
    {"code": "STX", "city": "Christiansted", "state": "VI",
     "name": "Henry E. Rohlsen Airport", "lat": 17.7019, "lon": -64.798599},
    {"code": "GUM", "city": "Hagåtña", "state": "GU",
     "name": "Antonio B. Won Pat International Airport", "lat": 13.4834, "lon": 144.796005},
    {"code": "ATW", "city": "Appleton", "state": "WI",
     "name": "Appleton International Airport", "lat": 44.258056, "lon": -88.519167},
]

# The city people name rather than the municipality the field sits in.
CITY = {
    "BMI": "Bloomington",
    "BTV": "Burlington",
    "CVG": "Cincinnati",
    "GSP": "Greenville",
    "IAD": "Washington",
    "PIE": "St. Petersburg",
    "PVD": "Providence",
    "SFB": "Sanford",
    "SRQ": "Sarasota",
    "STL": "St. Louis",
    "TRI": "Tri-Cities",
    "TYS": "Knoxville",
    "VPS": "Destin",
    "XNA": "Fayetteville",
}

# Official names where the extract drops accents or punctuation.
NAME = {
    "ATL": "Hartsfield–Jackson Atlanta International Airport",
    "BUR": "Hollywood Burbank Airport",
    "HNL": "Daniel K. Inouye International Airport",
    "ISP": "Long Island MacArthur Airport",
    "JFK": "John F. Kennedy International Airport",
    "MSP": "Minneapolis–Saint Paul International Airport",
    "SJU": "Luis Muñoz Marín International Airport",
    "TUS": "Tucson International Airport",
}


def state_of(row):
    region = row["iso_region"]  # "US-FL", or "PR-U-A" for Puerto Rico
    if row["iso_country"] == "PR":
        return "PR"
    prefix, _, state = region.partition("-")
    if prefix != "US" or len(state) != 2:
        raise SystemExit(f"{row['iata_code']}: unexpected region {region}")
    return state


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    default = os.path.join(here, "..", "..", "..", "shared", "data", "real", "airports",
                           "ourairports-us-iata.json")
    source = sys.argv[1] if len(sys.argv) > 1 else default
    with open(source, encoding="utf-8") as f:
        by_code = {row["iata_code"]: row for row in json.load(f)}

    hand = {row["code"]: row for row in HAND_ROWS}
    if len(set(CODES)) != len(CODES):
        raise SystemExit("a code is listed twice")
    rows = []
    for code in CODES:
        row = by_code.get(code)
        if row is None:
            raise SystemExit(f"{code}: not in {source}")
        rows.append({
            "code": code,
            "city": CITY.get(code, row["municipality"]),
            "state": state_of(row),
            "name": NAME.get(code, row["name"]),
            "lat": round(float(row["latitude_deg"]), 6),
            "lon": round(float(row["longitude_deg"]), 6),
        })
    for code, row in hand.items():
        if code in by_code or code in CODES:
            raise SystemExit(f"{code}: hand row duplicates the extract")
        rows.append(row)
    rows.sort(key=lambda r: r["code"])

    lines = [json.dumps(r, ensure_ascii=False) for r in rows]
    sys.stdout.write("[\n" + ",\n".join(lines) + "\n]\n")


if __name__ == "__main__":
    main()
