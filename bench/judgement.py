#!/usr/bin/env python3
"""Measures how long reading and judging one conversion takes, by size of the configuration.

usage: judgement.py BUILD_DIRECTORY

The configurations are those of run.py ("real"), converted by the library as it ships. The judgement has both texts in
memory and reads both.
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
    with tempfile.TemporaryDirectory() as place:
        os.mkdir(f"{place}/ascii")
        before, after = f"{place}/original.cfg", f"{place}/ascii/system.cfg"
        for size in SIZES:
            for path in before, after:
                with open(path, "w", encoding="ascii") as stream:
                    stream.write(generate.real(size, False, False))
            subprocess.run([f"{build}/bench/one_call", place, SOURCE, TARGET, "0"], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, check=True)
            subprocess.run([f"{build}/bench/judgement", SOURCE, TARGET, before, after], check=True)


if __name__ == "__main__":
    main()
