#!/usr/bin/env python3
"""Writes packages/Community: AI packages as they stand in a simulator, for the livery scan to find.

Most titles are those of LiveriesScanned.xml, so that a scan gives the demo the liveries that it has without one. What
the reader of aircraft.cfg files can complain about is there too. The same sources give the same bytes on every system.
"""
import pathlib
import re
import shutil
import xml.etree.ElementTree as xml

HERE = pathlib.Path(__file__).resolve().parent
COMMUNITY = HERE / "packages" / "Community"

AIG, FSLTL = "aig-aitraffic-oci-beta", "fsltl-traffic-base"
JF, IVAO, USER = "justflight-aircraft-traffic-fleet", "IVAO_MTL", "user-aitraffic"

# The package in which an airline's liveries are; airlines that don't stand here are in none.
PACKAGE_OF = {
    **dict.fromkeys("KLM DLH BAW AFR SWR NJE AUA CLX ITY THY".split(), AIG),
    **dict.fromkeys("SAS FIN VLG UAL DAL UAE FDX AAL ICE".split(), FSLTL),
    **dict.fromkeys("EZY TRA LOT TAP IBE EIN EXS".split(), JF),
}
# Types of the demo's traffic and a few others that have a livery without an airline.
GENERIC_TYPES = """A139 A20N A21N A319 A320 A321 A332 A333 A359 A388 AT76 B737 B738 B744 B763 B772 B77W B788 B789 BE20 C130
C172 C56X DA40 DH8D E190 E195 E75L EC35 F16 GLF5 P28A PC12 SR22""".split()
PRIVATE_TYPES = """A139 BE20 C152 C172 C182 C208 C25A C56X CC19 DA40 DA62 DR40 EC35 EC45 GLEX GLF5 P28A PA46 PC12 R44 SR20 SR22
TBM9 VL3""".split()
# Wrong codes that the reference data puts right, and stock aircraft that stand for a type.
WRITTEN_AS = {(FSLTL, "A20N"): "A320NEO", (JF, "B738"): "B737-800", (AIG, "A20N"): "a20n"}
BASE_CONTAINER = {(USER, "C152"): r"..\Asobo_C152", (USER, "DA62"): "../Asobo_DA62", (JF, "A20N"): r"..\Asobo_A320_NEO"}

UTF8, UTF8_MARK, UTF16, UTF16_BIG, CODE_PAGE = "utf-8", "utf-8-sig", "utf-16-le", "utf-16-be", "cp1252"
MARKS = {UTF16: b"\xff\xfe", UTF16_BIG: b"\xfe\xff"}
# Of the ordinary files; nearly all packages write UTF-8.
CHARSETS = [UTF8] * 9 + [UTF8_MARK, UTF8_MARK, UTF16, UTF16_BIG, CODE_PAGE]


class Livery:
    def __init__(self, element):
        self.airline, self.type, self.title = (element.get(name) for name in ("airl", "type", "title"))
        self.registration = element.get("atcid", "")
        self.cargo = element.get("cargo") == "true"
        self.model = self.title.split(" - ")[0]
        self.variation = self.title.split(" - ")[-1]


def wanted(livery):
    if livery.airline == "ZZZ":
        return livery.type in GENERIC_TYPES
    if livery.airline == "PVT":
        return livery.type in PRIVATE_TYPES
    return livery.airline in PACKAGE_OF


def package_of(livery):
    if livery.airline == "PVT":
        return USER
    if livery.airline == "ZZZ":
        return FSLTL if livery.type in ("A320", "B738", "B77W", "A388", "EC35", "C172") else AIG
    return PACKAGE_OF[livery.airline]


def airline_lines(livery, number):
    """The key in the spellings of different packages; an owner's livery may lack it."""
    if livery.airline == "ZZZ":
        return ['icao_airline=""', "icao_airline=ZZZZ", 'icao_airline = "ZZZ"'][number % 3]
    if livery.airline == "PVT":
        return ["icao_airline=PVT", "// icao_airline= nobody's"][number % 2]
    return [f'icao_airline="{livery.airline}"', f"icao_airline = {livery.airline.lower()}",
            f"ICAO_AIRLINE={livery.airline}X"][number % 3]


def section(number, keys):
    return [f"[FLTSIM.{number}]", *keys, ""]


def livery_keys(livery, number):
    parking = "RAMP, CARGO" if livery.cargo else "RAMP" if livery.airline == "PVT" else "GATE,RAMP"
    keys = [f'title="{livery.title}"', 'model=""', 'panel=""', 'sound=""',
            f'texture="{re.sub("[^A-Za-z0-9]", "", livery.variation)}"', f'ui_manufacturer="{livery.model.split()[0]}"',
            f'ui_type="{livery.model}"', f'ui_variation="{livery.variation}"', 'ui_createdby="Société de démonstration"',
            "isAirTraffic=1", "isUserSelectable=0", f'atc_parking_types="{parking}"',
            f"atc_parking_codes={livery.airline}", airline_lines(livery, number), "atc_heavy=0"]
    if livery.registration:
        keys.append(f"atc_id={livery.registration} ; its own")
    elif number % 4 == 1:
        keys.append("atc_id=N101ZX,N102ZX")
    elif number % 4 == 2:
        keys.append('atc_id=""')
    return keys


def general(type_code, base=None):
    lines = ["[VERSION]", "major=1", "minor=0", ""]
    lines += ["[VARIATION]", f'base_container="{base}"', ""] if base else []
    lines += ["[GENERAL]", 'Category="Airplane"']
    lines += [f'icao_type_designator = "{type_code}" ; ICAO'] if type_code else []
    return lines + ["performance=0", "", "[SERVICES]", "FUELTRUCK=1", "", "//===== FLTSIM =====", ""]


def write_bytes(package, folder, data):
    path = COMMUNITY / package / "SimObjects" / "Airplanes" / folder / "aircraft.cfg"
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(data)


def write(package, folder, lines, charset=UTF8):
    write_bytes(package, folder, MARKS.get(charset, b"") + ("\r\n".join(lines) + "\r\n").encode(charset))


def write_ordinary(liveries):
    """One file for each model of a package."""
    files = {}
    for livery in liveries:
        files.setdefault((package_of(livery), livery.model), []).append(livery)
    prefixes = {AIG: "AIG", FSLTL: "FSLTL", JF: "JF", USER: "User"}
    for count, ((package, model), members) in enumerate(sorted(files.items())):
        type_code = members[0].type
        base = BASE_CONTAINER.get((package, type_code))
        lines = general(None if base else WRITTEN_AS.get((package, type_code), type_code), base)
        for number, livery in enumerate(members):
            lines += section(number, livery_keys(livery, number))
        lines += ["[VIEWS]", "eyepoint=0,0,0"]
        write(package, f"{prefixes[package]}_{re.sub('[^A-Za-z0-9]+', '_', model)}", lines,
              CHARSETS[count % len(CHARSETS)])


def write_ivao():
    """Models whose type stands in the folder's name and whose airline in the title."""
    models = {"A319": "AFR BAW DLH EZY SWR", "A320": "AFR BAW DLH EZY SAS VLG ZZZ", "A320wCFM": "AFR DLH SWR TAP",
              "A388": "BAW DLH UAE", "B738": "KLM TRA ZZZ", "B738WLfa": "KLM RYR SAS TRA", "B744": "BAW DLH KLM",
              "B77W": "AFR BAW KLM SWR UAE", "E190": "AFR KLM LOT"}
    for count, (model, airlines) in enumerate(models.items()):
        type_code, winglets = model[:4], "W" if len(model) > 4 else ""
        lines = general(type_code)
        folder = f"IVAO_{model}"
        for number, airline in enumerate(airlines.split()):
            blank = " " if number == 1 else ""
            lines += section(number, [f'title="{blank}IVAO {type_code}{winglets} {airline}"', f"texture={airline}",
                                      "atc_parking_types=GATE", f"atc_parking_codes={airline}"])
            write_texture(folder, airline)
        if type_code == "B744":
            lines += section(8, ["title=Retro colours of the IVAO B744", "texture=RETRO", "atc_id=G-CIVC"])
            write_texture(folder, "RETRO")
        write(IVAO, folder, lines, CHARSETS[(count + 6) % len(CHARSETS)])


def write_texture(folder, name):
    path = COMMUNITY / IVAO / "SimObjects" / "Airplanes" / folder / f"texture.{name}" / "texture.cfg"
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(b"[fltsim]\r\nfallback.1=..\\texture\r\n")


def write_faults(unwanted):
    """What goes wrong in packages of strangers, a file for each kind."""
    klm = "icao_airline=KLM"

    def faulty(folder, sections, type_code="B738", package=USER, charset=UTF8):
        lines = general(type_code)
        for number, keys in enumerate(sections):
            lines += section(number, keys)
        write(package, folder, lines, charset)

    faulty("Faulty_titles", [["title=Faulty twice", "title=Faulty again", klm], ["texture=none", klm],
                             ["title=" + "Faulty and endless " * 14, klm], ["title=Boeing 737-800 - KLM", klm]])
    faulty("Faulty_doubles", [["title=Faulty A", klm, "icao_airline=DLH"],
                              ["title=Faulty B", klm, "atc_parking_types=GATE", "atc_parking_types=RAMP"],
                              ["title=Faulty C", klm, "atc_id=PH-BXA", "atc_id=PH-BXB"]])
    faulty("Faulty_registrations", [["title=Faulty D", klm, "atc_id=PH-*"],
                                    ["title=Faulty E", klm, "atc_id=1234567890123"],
                                    ["title=Faulty F", klm, "atc_id=PH-BXA,,PH-BXB"]], charset=UTF16)
    faulty("Faulty_airlines", [["title=Faulty G", "icao_airline=QQ"], ["title=Faulty H", "icao_airline=KLM DLH"],
                               ["title=Faulty I", "icao_airline=XX9X", klm], ["title=Refused", "icao_airline=RFO"]])
    faulty("Faulty_heavies", [["title=Faulty J"], ["title=Faulty K", "atc_id=Z9-ZZZ"],
                              ["title=Boeing 747 found by its registration", "atc_id=G-CIVD"]], "B744")
    faulty("Unwanted", [[f"title={title}", klm] for title in unwanted], charset=CODE_PAGE)
    faulty("Users_own", [["title=FenixA320 CFM"], [klm, "title=PMDG 737-800 KLM"]])
    faulty("Stubs", [["title=Boeing 737-800 of KLM-STUB", klm], ["title=Boeing 737-800 of Lufthansa-STUB",
                                                                 "icao_airline=DLHC"]])
    write(USER, "Named_x_section", general("A320") + ["[fltsim.x]", "title=Airbus A320 in a section x", klm])
    faulty("Unknown_type", [["title=Faulty L", klm]], "A399")
    faulty("Unknown_type_too", [["title=Faulty M", klm]], "TT:MODEL.ATC", package=AIG)
    write(USER, "Without_type", ["[FLTSIM.0]", "title=Faulty N", klm])
    write(USER, "Unknown_container", general(None, r"..\Somebodys_A320") + ["[FLTSIM.0]", "title=Faulty O", klm])
    write(USER, "pmdg-aircraft-738", ["[FLTSIM.0]", "title=Left out in silence", klm])
    write(USER, "Number_too_large", general("B738") + ["[FLTSIM.10001]", "title=Faulty P", klm])
    write(USER, "Number_no_number", general("B738") + ["[FLTSIM.99999999999]", "title=Faulty Q", klm])
    write(FSLTL, "Model_without_liveries", general("B738") + ["[MODELOPTIONS]", "withExteriorShowInterior=0"])
    write(FSLTL, "Sections_in_comments", general("A320") + ["//[FLTSIM.0]", "//title=Faulty R"], UTF8_MARK)
    write_bytes(USER, "Empty", b"")
    write_bytes(USER, "No_text", bytes(range(256)) * 4)
    write_bytes(USER, "Utf16_without_mark", "[FLTSIM.0]\r\n".encode("utf-16-le"))
    write_bytes(USER, "Utf16_broken", b"\xff\xfe" + "[FLTSIM.0]\r\n".encode("utf-16-le") + b"\x00\xd8")
    write_faults_of_ivao()


def write_faults_of_ivao():
    folder = "IVAO_B739"
    sections = [
        ["title=IVAO B739 KLM", "title=IVAO B739 KLM", "texture=A"],
        ["title=IVAO B739 KLM", "atc_parking_types=GATE", "atc_parking_types=GATE", "texture=A"],
        ["title=IVAO B739 KLM", "atc_id=PH-BXO", "atc_id=PH-BXP", "texture=A"],
        ["title=IVAO B739 KLM", "atc_id=***", "texture=A"],
        ["title=IVAO B739 KLM", "texture=A"],
        ["title=IVAO B739 DLH", "texture=GONE"],
        ["atc_parking_types=GATE", "texture=A"],
        ["title=IVAO B739 QQQ", "texture=A"],
        ["title=Faulty S", "atc_id=Z9-ZZZ", "texture=A"],
        ["title=Faulty T", "texture=A"],
    ]
    lines = general("B739")
    for number, keys in enumerate(sections):
        lines += section(number, keys)
    write(IVAO, folder, lines, UTF16_BIG)
    write_texture(folder, "A")
    write(IVAO, "IVAO_A399", general("A399"))
    write(IVAO, "IVAO_A332", general("A332"))
    write(IVAO, "IVAO_A343", general("A343") + ["[FLTSIM.10001]"])
    write(IVAO, "Shared_parts", general(None))


def main():
    shutil.rmtree(COMMUNITY, ignore_errors=True)
    scanned = xml.parse(HERE / "LiveriesScanned.xml").getroot().find("liveries")
    write_ordinary([livery for livery in map(Livery, scanned) if wanted(livery)])
    write_ivao()
    regcodes = xml.parse(HERE / "AIG-regcodes.xml").getroot().find("AIG-regcodes")
    write_faults([element.get("title") for element in regcodes if not element.get("reg")])


if __name__ == "__main__":
    main()
