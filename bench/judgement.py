#!/usr/bin/env python3
"""Measures how long reading and judging one conversion takes, by size of the configuration.

usage: judgement.py BUILD_DIRECTORY
"""
import os
import subprocess
import sys
import tempfile

import generate

SIZES = 6_000, 60_000, 600_000
SOURCE, TARGET = "4.1(2)", "4.1(3)"


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as directory:
        for size in SIZES:
            before, after = f"{directory}/{size}.cfg", f"{directory}/{size}.converted"
            with open(before, "w", encoding="ascii") as stream:
                stream.write(generate.real(size, False, False))
            done = subprocess.run([f"{build}/tools/infraconvert/infraconvert", "preview", "--from", SOURCE, "--to", TARGET,
                                   "--json", before], capture_output=True, check=False)
            subprocess.run([f"{build}/tools/infraconvert/infraconvert", "convert", "--from", SOURCE, "--to", TARGET,
                            "--accept", "all", "--output", after, before], capture_output=True, check=False)
            if not os.path.exists(after):
                sys.exit(f"{size} bytes do not convert:\n{done.stdout.decode()}")
            subprocess.run([f"{build}/bench/judgement", SOURCE, TARGET, before, after], check=True)


if __name__ == "__main__":
    main()
