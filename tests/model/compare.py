#!/usr/bin/env python3
"""Compares the library with the model over generated configurations.

usage: compare.py WORKER FIRST_SEED COUNT [SERVICE]

Every difference in file, status, standard output or log is printed with its seed; the exit status is
1 when there was one.
"""
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import generate
import model


def first_difference(name, ours, theirs):
    """Lines around the first place where library and model differ."""
    a, b = ours.split(b"\n"), theirs.split(b"\n")
    for i in range(max(len(a), len(b))):
        x = a[i] if i < len(a) else b"<end>"
        y = b[i] if i < len(b) else b"<end>"
        if x != y:
            return f"  {name} line {i + 1}\n    before  {a[i - 1][:300] if i else b''}\n    library {x[:300]}\n    model   {y[:300]}"
    return ""


def differences(worker, seed, only):
    """Runs one case through both; returns the differences as texts, None where it was skipped."""
    service, config, from_version, to_version, switch = generate.case(seed)
    if only and service != only:
        return None
    place = tempfile.mkdtemp(dir="/dev/shm" if os.path.isdir("/dev/shm") else None)
    try:
        os.mkdir(f"{place}/ascii")
        with open(f"{place}/ascii/system.cfg", "wb") as file:
            file.write(config)
        worker.stdin.write("\t".join([service, str(switch), place, from_version, to_version]) + "\n")
        worker.stdin.flush()
        status = int(worker.stdout.readline())
        expected = model.convert(service, config, from_version, to_version, switch, path=place, pkg_name="package")
        found = []
        if status != (-1 if expected.status else 0):
            found.append(f"  status: library {status}, model {expected.status}")
        for name, path, theirs in [("log", "log", expected.log_bytes),
                                   ("file", "ascii/system.cfg", expected.file_bytes),
                                   ("output", "output", expected.stdout_bytes)]:
            with open(f"{place}/{path}", "rb") as file:
                ours = file.read()
            if ours != theirs:
                found.append(first_difference(name, ours, theirs))
        if found:
            found.insert(0, f"seed {seed}: {service} {from_version} -> {to_version} switch {switch}")
        return found
    finally:
        shutil.rmtree(place)


def main():
    worker_path, first, count = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
    only = sys.argv[4] if len(sys.argv) > 4 else None
    worker = subprocess.Popen([worker_path], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    compared = differing = 0
    for seed in range(first, first + count):
        found = differences(worker, seed, only)
        if found is None:
            continue
        compared += 1
        if found:
            differing += 1
            print("\n".join(found), flush=True)
    print(f"{compared} cases compared, {differing} differ")
    sys.exit(1 if differing or not compared else 0)


if __name__ == "__main__":
    main()
