#!/usr/bin/env python3
"""Measures whole conversions, and prints them as the tables of docs/performance.md.

usage: run.py BUILD_DIRECTORY [--only WORD] [--most BYTES] [--in DIRECTORY] [--memory] [--write FILE]

Each conversion is one process that makes one installer call. In the same run, on the same file and
in turn with it, run one substitution by `sed -i` and a durable copy (read, write, sync, rename).
Every figure is a median of 11 runs, of 5 from 1 MB on. A conversion that takes more than the limit is
given up, and larger sizes of it are not tried.

The files stand in the build directory, or in the DIRECTORY given: in a file system in memory, where a
sync costs nothing, the tables show the work of the programs; on a disk they show its syncs, of which
`sed -i` makes none.

--memory measures the conversions in memory instead, with Google Benchmark. --write replaces the
tables in FILE, between its two marks; without --only and --most, docs/performance.md is written.
"""
import argparse
import math
import os
import statistics
import subprocess
import sys
import tempfile
import time

import generate

SIZES = {"10 KB": 10_000, "100 KB": 100_000, "1 MB": 1_000_000, "4 MB": 4_000_000,
         "16 MB": 16_000_000}
DENSE_QOS_LIMIT = 4_000_000
TIME_LIMIT = 20.0  # seconds
PAGE = f"{os.path.dirname(os.path.abspath(__file__))}/../docs/performance.md"
MARKS = "<!-- measured: begin -->\n", "<!-- measured: end -->\n"

QOS, PORT_SECURITY, NPIV, MAC, VLAN, FEX, ALL = 473, 139, 649, 652, 734, 678, 0


class Case:
    """One conversion: a service over a pair of releases, on a kind of configuration."""
    def __init__(self, name, service, releases, dense, typed=False, match_any=False):
        self.name, self.service, self.dense = name, service, dense
        self.releases = releases.split()
        self.typed, self.match_any = typed, match_any

    def kinds(self):
        return ["real"] + (["dense"] if self.dense else []) + (["attachments"] if self.dense == "qos" else [])

    def text(self, kind, size):
        if kind == "real":
            return generate.real(size, self.typed, self.match_any)
        return generate.dense(self.dense if kind == "dense" else kind, size)


CASES = [
    Case("QoS, untyped to typed", QOS, "4.0(1) 4.1(3)", "qos"),
    Case("QoS, typed to untyped", QOS, "5.0(2) 4.0(1)", "qos typed match-any", True, True),
    Case("QoS, MTU up", QOS, "4.1(3) 5.0(2)", "qos typed", True),
    Case("QoS, MTU down", QOS, "5.0(2) 4.1(3)", "qos typed match-any", True, True),
    Case("QoS, control plane", QOS, "5.0(3)U2(1) 5.0(3)U1(1)", "control-plane", True, True),
    Case("port security up", PORT_SECURITY, "4.0(1) 4.2(1)", "port-security"),
    Case("port security down", PORT_SECURITY, "4.2(1) 4.0(1)", "fc-port-security", True),
    Case("NPIV up", NPIV, "4.0(1) 4.2(1)", "npiv"),
    Case("NPIV down", NPIV, "4.2(1) 4.0(1)", "feature npiv", True),
    Case("MAC table down", MAC, "4.2(1) 4.1(3)", "mac", True),
    Case("VLAN-FCoE up", VLAN, "4.1(2) 5.0(3)", "vlan"),
    Case("fabric extender up", FEX, "5.0(2) 5.0(3)", "fex"),
    Case("all six, up", ALL, "4.1(2) 5.0(3)", None),
    Case("all six, down", ALL, "5.0(3) 3.1(1)", None, True, True),
]


def timed(command):
    """Runs a command; returns seconds and what it wrote on standard error, None when it took too long."""
    start = time.perf_counter()
    try:
        done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                              timeout=TIME_LIMIT, env={"PATH": os.environ["PATH"], "LC_ALL": "C"}, check=False)
    except subprocess.TimeoutExpired:
        return None
    elapsed = time.perf_counter() - start
    if done.returncode != 0 or "returned error" in done.stderr:
        sys.exit(f"{command} failed:\n{done.stderr}")
    return elapsed, done.stderr


class Measurement:
    """Medians over some repetitions of one case on one file."""
    def __init__(self, binaries, case, text, directory):
        os.makedirs(f"{directory}/ascii", exist_ok=True)
        file, original = f"{directory}/ascii/system.cfg", text.encode()
        commands = {
            "sed": ["sed", "-i", "s/switchport mode fex-fabric/switchport mode fex/", file],
            "copy": [f"{binaries}/durable_copy", file],
            "call": [f"{binaries}/one_call", directory, *case.releases, str(case.service)]}
        times = {name: [] for name in commands}
        self.memory = 0.0
        for _ in range(11 if len(text) < 1_000_000 else 5):
            for name, command in commands.items():
                with open(file, "wb") as stream:
                    stream.write(original)
                    stream.flush()
                    os.fsync(stream.fileno())
                result = timed(command)
                if result is None:
                    self.sed = self.copy = self.call = None
                    return
                times[name].append(result[0])
                if name == "call":
                    self.memory = float(result[1].split("VmHWM:")[1].split()[0]) * 1024 / len(original)
        with open(file, "rb") as stream:
            if stream.read() == original:
                sys.exit(f"{case.name} changed nothing")
        self.sed, self.copy, self.call = (statistics.median(times[name]) for name in ("sed", "copy", "call"))


def tables(binaries, place, cases, most):
    """Yields the lines of one table for each kind of configuration."""
    for kind in ("real", "dense", "attachments"):
        yield f"\n### {kind.capitalize()} configurations\n"
        yield "| conversion | size | time ms | x sed -i | x durable copy | growth per doubling | memory / file |"
        yield "|---|---|---:|---:|---:|---:|---:|"
        for case in cases:
            if kind not in case.kinds():
                continue
            before = None
            for name, size in SIZES.items():
                wanted = size <= (DENSE_QOS_LIMIT if kind == "dense" and case.service == QOS else most)
                if not wanted or size > most:
                    continue
                with tempfile.TemporaryDirectory(dir=place) as directory:
                    m = Measurement(binaries, case, case.text(kind, size), directory)
                if m.call is None:
                    yield f"| {case.name} | {name} | over {TIME_LIMIT * 1000:.0f} | | | | |"
                    break
                growth = f"{(m.call / before[1]) ** (1 / math.log2(size / before[0])):.2f}" if before else ""
                before = size, m.call
                yield (f"| {case.name} | {name} | {m.call * 1000:.1f} | {m.call / m.sed:.2f} | "
                       f"{m.call / m.copy:.2f} | {growth} | {m.memory:.2f} |")


def in_memory(binaries, cases, most):
    """Runs Google Benchmark over the same configurations."""
    with tempfile.TemporaryDirectory(dir=binaries) as directory:
        lines = []
        for case in cases:
            for kind in case.kinds():
                for name, size in SIZES.items():
                    if case.service == ALL or size > (DENSE_QOS_LIMIT if kind == "dense" and case.service == QOS else most):
                        continue
                    place = f"{directory}/{len(lines)}"
                    os.makedirs(f"{place}/ascii")
                    with open(f"{place}/ascii/system.cfg", "w", encoding="ascii") as stream:
                        stream.write(case.text(kind, size))
                    lines.append("\t".join([f"{case.name}/{kind}/{name}", str(case.service), *case.releases, place]))
        with open(f"{directory}/cases", "w", encoding="ascii") as stream:
            stream.write("\n".join(lines) + "\n")
        subprocess.run([f"{binaries}/in_memory", f"{directory}/cases", "--benchmark_min_time=0.2"], check=True)


def write_into(path, text):
    with open(path, encoding="utf-8") as stream:
        page = stream.read()
    head, rest = page.split(MARKS[0])
    tail = rest.split(MARKS[1])[1]
    with open(path, "w", encoding="utf-8") as stream:
        stream.write(head + MARKS[0] + text + MARKS[1] + tail)


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("build")
    options.add_argument("--only", default="")
    options.add_argument("--most", type=int, default=max(SIZES.values()))
    options.add_argument("--in", dest="place")
    options.add_argument("--memory", action="store_true")
    options.add_argument("--write")
    arguments = options.parse_args()
    binaries = f"{os.path.abspath(arguments.build)}/bench"
    cases = [case for case in CASES if arguments.only in case.name]
    if arguments.memory:
        return in_memory(binaries, cases, arguments.most)
    lines = []
    for line in tables(binaries, arguments.place or binaries, cases, arguments.most):
        print(line, flush=True)
        lines.append(line)
    everything = not arguments.only and arguments.most == max(SIZES.values())
    page = arguments.write or (PAGE if everything else None)
    if page:
        write_into(page, "\n".join(lines) + "\n\n")


if __name__ == "__main__":
    main()
