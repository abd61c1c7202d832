#!/usr/bin/env python3
"""Makes a tree of AI packages of the size of a well filled simulator, for measuring the livery scan.

usage: bench/make_package_tree.py OUT [--files 15000] [--configs 3000] [--liveries 10000]

OUT/Community then holds one package of each kind, with --configs aircraft.cfg of 5 to 40 kB that name --liveries
liveries in all, among --files files. The same arguments make the same bytes.
"""

import argparse
import pathlib
import random
import re
import string
import sys

SMALLEST_CFG, LARGEST_CFG = 5_000, 40_000
# Share of the aircraft.cfg, and the folder that holds the aircraft.
PACKAGES = [
    (0.45, "aig-aitraffic-oci-beta/SimObjects/Airplanes"),
    (0.30, "fsltl-traffic-base/SimObjects/Airplanes"),
    (0.15, "justflight-aircraft-traffic-fleet/SimObjects/Airplanes"),
    (0.10, "IVAO_MTL/SimObjects/Airplanes"),
]
IVAO = 3

FILLER = [
    "[WEIGHT_AND_BALANCE]",
    "max_gross_weight = {n} ; (pounds)",
    "empty_weight = {n} ; (pounds)",
    "reference_datum_position = 0, 0, 0 ; (feet) distance from FlightSim reference position",
    "empty_weight_CG_position = -{n}.0, 0, 0 ; (feet) longitudinal, lateral, vertical",
    "station_load.{i} = {n}, 12.5, 0, -1.2, TT:MENU.PAYLOAD.PASSENGERS, 1",
    "[CONTACT_POINTS]",
    "point.{i} = 1, -{n}.25, -12.58, -10.2, 1600, 0, 1.855, 0, 0.5, 2.5, 0.9, 5.7, 6.3, 2, 0, 280",
    "// the values of the real aircraft aren't published; these are near enough for traffic",
    "[LIGHTS]",
    "light.{i} = 3, -{n}.8, -54.6, 4.34, fx_navredm",
    "; strobes, beacon and logo lights follow",
    "[EXITS]",
    "number_of_exits = {i}",
    "exit.{i} = 0.4, 41.40, -6.0, 2.0, 0 ; open/close rate per second",
    "",
]


def codes(section: str, attribute: str) -> list[str]:
    text = (pathlib.Path(__file__).parent.parent / "demo-data" / "dbase.xml").read_text(encoding="utf-8")
    part = re.search(rf"<{section}>(.*?)</{section}>", text, re.S).group(1)
    return [code for row in re.findall(rf'{attribute}="([^"]*)"', part) for code in row.split(",")]


def registration(rng: random.Random) -> str:
    return "PH-" + "".join(rng.choice(string.ascii_uppercase) for _ in range(3))


def section(rng: random.Random, number: int, package: int, kind: str, airline: str, serial: int) -> str:
    reg = registration(rng)
    title = f"{kind} {airline} {serial}" if package == IVAO else f"AI_{kind}_{airline}_{reg}_{serial}"
    lines = [
        f"[FLTSIM.{number}]",
        f'title = "{title}" ; Variation name',
        'model = "" ; model folder',
        'panel = "" ; panel folder',
        'sound = "" ; sound folder',
        f'texture = "{airline}" ; texture folder',
        f'atc_id = "{reg}" ; tail number',
        f'atc_airline = "{airline} AIR"',
        f'ui_manufacturer = "Traffic" ; e.g. Boeing, Cessna',
        f'ui_type = "{kind}"',
        f'ui_variation = "{airline} {serial}"',
        f"icao_airline = {airline}",
        f"atc_parking_codes = {airline}",
        "atc_parking_types = " + rng.choice(["GATE,RAMP", "RAMP", "CARGO", "GATE"]),
        "isAirTraffic = 1",
        "isUserSelectable = 0",
        "",
    ]
    return "\n".join(lines)


def config(rng: random.Random, package: int, kind: str, airlines: list[str], first: int, count: int) -> str:
    head = ["[VERSION]", "major = 1", "minor = 0", "", "[GENERAL]", f'icao_type_designator = "{kind}"',
            'icao_manufacturer = "TRAFFIC"', 'icao_WTC = "M" ; wake turbulence', 'Category = "airplane"', "",
            "[VARIATION]", "", ""]
    parts = ["\n".join(head)]
    parts += [section(rng, i, package, kind, rng.choice(airlines), first + i) for i in range(count)]
    size = sum(map(len, parts))
    wanted = rng.randint(SMALLEST_CFG, LARGEST_CFG)
    number = 0
    while size < wanted:
        line = FILLER[number % len(FILLER)].format(i=number // len(FILLER), n=rng.randint(10, 99_999)) + "\n"
        parts.append(line)
        size += len(line)
        number += 1
    return "".join(parts)


def shares(total: int) -> list[int]:
    counts = [round(total * share) for share, _ in PACKAGES]
    counts[0] += total - sum(counts)
    return counts


def liveries_of_each(rng: random.Random, configs: int, liveries: int) -> list[int]:
    """At least one for each file; most hold a few, some hold many."""
    weights = [rng.expovariate(1.0) for _ in range(configs)]
    spare = liveries - configs
    counts = [1 + int(spare * weight / sum(weights)) for weight in weights]
    for i in range(liveries - sum(counts)):
        counts[i % configs] += 1
    return counts


def write(path: pathlib.Path, text: str) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(text.replace("\n", "\r\n").encode())


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("out", type=pathlib.Path)
    parser.add_argument("--files", type=int, default=15_000)
    parser.add_argument("--configs", type=int, default=3_000)
    parser.add_argument("--liveries", type=int, default=10_000)
    options = parser.parse_args()
    if not 4 <= options.configs <= min(options.files, options.liveries):
        sys.exit("every aircraft.cfg needs a livery and counts as a file; four are the least")
    community = options.out / "Community"
    if community.exists():
        sys.exit(f"{community} exists already")

    rng = random.Random(20240511)
    kinds, airlines = codes("aircrafts", "types"), codes("ICAO_airlines", "codes")
    kinds = [kind for kind in kinds if len(kind) == 4]
    counts = liveries_of_each(rng, options.configs, options.liveries)
    folders = []
    serial = 0
    for package, share in enumerate(shares(options.configs)):
        for i in range(share):
            kind = rng.choice(kinds)
            # The IVAO package has one folder for a type, which alone tells it.
            name = f"IVAO_{kind}_{i}" if package == IVAO else f"AI_{kind}_{i:04}"
            if package == IVAO and not re.fullmatch(r"\w+", name):
                sys.exit(f"{name} is no folder of that package")
            folder = community / PACKAGES[package][1] / name
            count = counts[len(folders)]
            text = config(rng, package, kind, airlines, serial, count)
            write(folder / "aircraft.cfg", text)
            for airline in re.findall(r'^texture = "(\w+)"', text, re.M) if package == IVAO else []:
                (folder / f"texture.{airline}").mkdir(exist_ok=True)
            folders.append(folder)
            serial += count
    others = ["model/model.cfg", "sound/sound.cfg", "texture/texture.cfg", "model/model.xml", "flight_model.cfg",
              "engines.cfg", "systems.cfg", "target_performance.cfg", "ai.cfg"]
    for i in range(options.files - options.configs):
        name = others[i // len(folders) % len(others)]
        again = i // (len(folders) * len(others))
        path = folders[i % len(folders)] / name
        write(path.with_stem(f"{path.stem}{again}") if again else path, "[GENERAL]\nvalue = 1\n" * rng.randint(5, 60))
    print(f"{options.files} files, {options.configs} aircraft.cfg, {options.liveries} liveries in {community}")


if __name__ == "__main__":
    main()
