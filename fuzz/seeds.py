#!/usr/bin/env python3
"""Writes the fuzzer's first inputs, and its dictionary.

usage: seeds.py DIRECTORY

DIRECTORY/<target>/ receives every golden configuration of that converter, DIRECTORY/keywords the
texts that the library's sources compare with.
"""
import json
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


def meaning_seeds(directory):
    """Every golden conversion: what was converted, and what came of it."""
    golden = f"{root}/tests/golden"
    for place, _, files in os.walk(golden):
        if "in.cfg" not in files or "out.cfg" not in files:
            continue
        texts = []
        for name in ("in.cfg", "out.cfg"):
            with open(f"{place}/{name}", "rb") as file:
                texts.append(file.read())
        service, pair, name = os.path.relpath(place, golden).split(os.sep)[:3]
        write_seed(directory, "meaning", f"{service}-{pair}-{name}", " ".join(pair.split("__")), b"\0".join(texts))


def engine_seeds(directory):
    """A few texts, each with every operation at some places."""
    for number, text in enumerate([b"a\nab\n  aba\nabab\n", b"abababab", b"\n\n\n\naa", b"a\0b\na"]):
        operations = bytes(byte for which in range(9) for where in (0, 3, 201, 240, 255)
                           for byte in (which, where, 7 * which + where % 11))
        os.makedirs(f"{directory}/engine", exist_ok=True)
        with open(f"{directory}/engine/text-{number}", "wb") as file:
            file.write(text + b"\x01" + bytes([number]) + operations)


def mask_seeds(directory):
    """Secrets that look like harmless values, each in a few entries of the lists."""
    secrets = [b"Zq7topXsecret", b"73915284", b"Ethernet7/77", b"10.66.77.88", b"2001:db8::77",
               b"20:01:00:05:9b:aa:bb:cc", b"0011.2233.aabb", b"4.1(3)", b"10-12,20", b"0x640000",
               b"255.255.255.0", b"class-voice", b"x_y()", b"'a'", b"a,b", b"--->"]
    os.makedirs(f"{directory}/mask", exist_ok=True)
    for number, secret in enumerate(secrets):
        for first in range(0, 800, 80):
            entries = b"".join(n.to_bytes(2, "big") for n in range(first, first + 80, 20))
            with open(f"{directory}/mask/secret-{number}-{first}", "wb") as file:
                file.write(b"\x03" + entries + secret)


def plan_seeds(directory):
    """Plans with configurations in every state, on one line, so that a change of one byte meets something."""
    count = {"errors": 1, "warnings": 2, "notes": 0, "agreed": 3}
    agreed = [{"code": "IC041", "findings": 3, "reason": "moved", "until": "2027-03-31"}]
    configurations = [
        {"path": "site/leaf-1.cfg", "state": state, "problem": "", "route": ["4.1(2)", "5.0(3)"], "rules": ["IC-QOS-04"],
         "failed_services": ["qos"], "findings": count, "agreed": agreed, "refused": ["IC030"], "mended": True,
         "input_digest": "ab12", "result_digest": "cd34"}
        for state in ("ready", "unchanged", "refused", "failed", "unusable")]
    configurations.append({**configurations[0], "path": "caf\ufffd", "path_base64": "Y2Fm6Q=="})
    os.makedirs(f"{directory}/plan", exist_ok=True)
    for number in range(len(configurations) + 1):
        plan = {"kind": "infraconvert plan", "format_version": 2, "services": ["qos", "npiv"], "keep_going": False,
                "mend": "all", "key_digest": "ef56", "configurations": configurations[:number]}
        with open(f"{directory}/plan/{number}", "w", encoding="ascii") as file:
            json.dump(plan, file, separators=(",", ":"))


def exceptions_seeds(directory):
    """Names, places and lines that hold what has a meaning in them."""
    names = ["site/leaf-1.cfg", " a b ", "a|b", "[x]*?\\", "a/../b", ""]
    places = ["interface Ethernet1/1", "policy-map type qos x|y", "vlan 10 <masked> ", "*", "", "system qos"]
    lines = ["IC041 | leaf-* | interface Ethernet1/* | moved | 2027-03-31", "# nothing\n\nic043 | a/b.cfg", "IC041",
             "IC999 | x", "IC041 | a | b | c | 2026-06-29", "IC041 | [!a]*.cfg | \\* | r | tomorrow"]
    os.makedirs(f"{directory}/exceptions", exist_ok=True)
    for number, texts in enumerate(zip(names, places, lines)):
        with open(f"{directory}/exceptions/{number}", "w", encoding="ascii") as file:
            file.write("\n".join(texts) + "\n")


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
    meaning_seeds(directory)
    mask_seeds(directory)
    plan_seeds(directory)
    exceptions_seeds(directory)
    keywords(directory)


if __name__ == "__main__":
    main()
