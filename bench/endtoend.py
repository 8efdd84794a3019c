"""Times the tool as a whole process on generated products, beside bare parsing by toml++ and a script that merges
dictionaries by Python's tomllib. Prints a table of ratios.

  endtoend.py ZYNCONFIG TOMLPARSE FOLDER

ZYNCONFIG and TOMLPARSE are the built programs, FOLDER takes the generated files. hyperfine does the measuring.
"""

import json
import math
import os
import pathlib
import subprocess
import sys

STORES = [("otp", 1), ("mtp", 1), ("smem", 1), ("eeprom", 1)]   # from the bottom to the top
SUBSYSTEMS = ["bt", "wlan", "audio", "app"]
SIZES = [100, 1000, 10000, 100000]
TYPES = ["uint8", "uint16", "int32", "octet_string", "string"]


def value_of(kind, number):
    return {
        "uint8": str(number % 256),
        "uint16": f"0x{number % 65536:04x}",
        "int32": str(-number),
        "octet_string": f'"{number % 256:02x} 5a 3c"',
        "string": f'"value {number}"',
    }[kind]


def generate(folder, count):
    """Four files with `count` keys in all: each store has a quarter, and every second of them overrides the store below."""
    paths = []
    for layer, (device, store) in enumerate(STORES):
        share = count // len(STORES)
        first = layer * (share // 2)
        lines = ['chip = "trindle7"']
        for place, subsystem in enumerate(SUBSYSTEMS):
            lines += ["", "[[subsystem]]", f'type = "{subsystem}"', f'device = "{device}"', f"store = {store}"]
            for number in range(first + place, first + share, len(SUBSYSTEMS)):
                kind = TYPES[number % len(TYPES)]
                lines += ["", "[[subsystem.key]]", f"id = {number + 1}", f'name = "GeneratedKey{number + 1}"',
                          f'type = "{kind}"', f"value = {value_of(kind, number + layer)}"]
        path = folder / f"{layer + 1}-{device}.toml"
        path.write_text("\n".join(lines) + "\n")
        paths.append(str(path))
    return paths


def measure(commands, folder, runs):
    report = folder / "hyperfine.json"
    subprocess.run(["hyperfine", "--shell=none", "--warmup=1", f"--runs={runs}", "--style=none",
                    f"--export-json={report}", *[subprocess.list2cmdline(command) for command in commands]],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return [result["median"] for result in json.loads(report.read_text())["results"]]


def main():
    zynconfig, tomlparse, folder = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    merge = os.path.join(os.path.dirname(os.path.abspath(__file__)), "mergetoml.py")
    rows = ["toml++, parsing alone", "tomllib, merged by a script", "zynconfig show", "zynconfig convert",
            "zynconfig convert --layer-filter 15"]
    medians = {row: [] for row in rows}
    for count in SIZES:
        place = folder / str(count)
        place.mkdir(parents=True, exist_ok=True)
        files = generate(place, count)
        out = str(place / "out.toml")
        commands = [[tomlparse, *files], ["python3", merge, *files], [zynconfig, "show", *files],
                    [zynconfig, "convert", *files, "-o", out],
                    [zynconfig, "convert", *files, "-o", out, "--layer-filter", "15"]]
        for row, median in zip(rows, measure(commands, place, 3 if count >= 100000 else 9)):
            medians[row].append(median)

    print("| | " + " | ".join(f"{count} keys" for count in SIZES) + " | growth |")
    print("|---" * (len(SIZES) + 2) + "|")
    for row in rows:
        cells = [f"{median / bare:.2f} ({median * 1000:.1f} ms)" for median, bare in zip(medians[row], medians[rows[0]])]
        growth = math.log(medians[row][-1] / medians[row][1]) / math.log(SIZES[-1] / SIZES[1])
        print(f"| {row} | " + " | ".join(cells) + f" | {growth:.2f} |")


main()
