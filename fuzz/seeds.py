#!/usr/bin/env python3
"""Writes the fuzzer's first inputs, and its dictionary.

usage: seeds.py DIRECTORY

DIRECTORY/<target>/ receives every golden configuration of that converter, DIRECTORY/keywords the
texts that the library's sources compare with.
"""
import os
import re
import sys

root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def write_seed(directory, target, name, request, configuration):
    os.makedirs(f"{directory}/{target}", exist_ok=True)
    with open(f"{directory}/{target}/{name}", "wb") as file:
        file.write(request.encode() + b"\n" + configuration)


def golden_seeds(directory):
    golden = f"{root}/tests/golden"
    for place, _, files in os.walk(golden):
        if "in.cfg" not in files:
            continue
        target, pair, name = os.path.relpath(place, golden).split(os.sep)[:3]
        with open(f"{place}/in.cfg", "rb") as file:
            configuration = file.read()
        request = " ".join(pair.split("__")) + " 1"
        write_seed(directory, target, f"golden-{pair}-{name}", request, configuration)


def engine_seeds(directory):
    """A few texts, each with every operation at some places."""
    for number, text in enumerate([b"a\nab\n  aba\nabab\n", b"abababab", b"\n\n\n\naa", b"a\0b\na"]):
        operations = bytes(byte for which in range(9) for where in (0, 3, 201, 240, 255)
                           for byte in (which, where, 7 * which + where % 11))
        os.makedirs(f"{directory}/engine", exist_ok=True)
        with open(f"{directory}/engine/text-{number}", "wb") as file:
            file.write(text + b"\x01" + bytes([number]) + operations)


def keywords(directory):
    found = set()
    library = f"{root}/infra/convert_libs/comps/libinfraconvert_ascii"
    for place, _, files in os.walk(library):
        for name in files:
            if name.endswith(".cpp") and "engine" not in name:
                with open(f"{place}/{name}", encoding="ascii") as file:
                    found.update(re.findall(r'"((?:[^"\\%\n]|\\n){2,40})"', file.read()))
    with open(f"{directory}/keywords", "w", encoding="ascii") as file:
        for text in sorted(found):
            file.write('"' + text.replace("\\n", "\\x0a") + '"\n')


def main():
    directory = sys.argv[1]
    os.makedirs(directory, exist_ok=True)
    golden_seeds(directory)
    engine_seeds(directory)
    keywords(directory)


if __name__ == "__main__":
    main()
