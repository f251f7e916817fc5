#!/usr/bin/env python3
"""Measures an audit of many configurations, and the six conversions alone, as a table of docs/performance.md.

usage: fleet.py BUILD_DIRECTORY [--in DIRECTORY] [--sizes N...]

A fleet is made of variations of two switches of 6 KB: one that converts without loss, and, every fifth, one of
which a conversion would lose something and a fix is looked for. Processor time is that of the command and of every
process that it starts; memory is the peak of the command itself. The six conversions alone run in one process, with
the library as it ships, on the same files.
"""
import argparse
import ctypes
import multiprocessing
import os
import resource
import shutil
import subprocess
import tempfile

SOURCE, TARGET = "4.1(2)", "5.0(3)"
EXAMPLE = f"{os.path.dirname(os.path.abspath(__file__))}/../examples/switch.cfg"
PLAIN = "version 4.1(2)\nhostname sw{0}\nfeature lldp\nnpiv enable\nvlan 1\nvlan 10\n  fcoe\n  name servers\n" + "".join(
    f"interface Ethernet1/{port}\n  description port {port} of sw{{0}}\n  switchport mode trunk\n"
    f"  switchport trunk allowed vlan 10,20,30\n  spanning-tree port type edge trunk\n" for port in range(1, 41))


class Arguments(ctypes.Structure):
    _fields_ = [(name, ctypes.c_char_p) for name in ("path", "package", "to_release", "from_release")]


def write_fleet(place, count):
    with open(EXAMPLE, encoding="utf-8") as stream:
        example = stream.read()
    for i in range(count):
        os.makedirs(f"{place}/sw{i}/ascii")
        with open(f"{place}/sw{i}/ascii/system.cfg", "w", encoding="utf-8") as stream:
            stream.write(example.replace("uplink", f"uplink of sw{i}") if i % 5 == 0 else PLAIN.format(i))


def processor_time(who):
    usage = resource.getrusage(who)
    return usage.ru_utime + usage.ru_stime


def audit(build, place, count):
    """Processor time in ms for each configuration, and the peak memory in MB."""
    before = processor_time(resource.RUSAGE_CHILDREN)
    command = [f"{build}/tools/infraconvert/infraconvert", "audit", "--from", SOURCE, "--to", TARGET,
               "--format", "jsonl", "--files-from", "-"]
    paths = "".join(f"{place}/sw{i}\n" for i in range(count))
    with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as run:
        run.stdin.write(paths.encode())
        run.stdin.close()
        _, status, usage = os.wait4(run.pid, 0)
        run.returncode = os.waitstatus_to_exitcode(status)
    if run.returncode not in (0, 4):
        raise SystemExit(f"the audit ended with {run.returncode}")
    return (processor_time(resource.RUSAGE_CHILDREN) - before) * 1000 / count, usage.ru_maxrss / 1024


def conversions_alone(build, place, count):
    """Processor time in ms for each configuration, in a child, for the library tells what it does."""
    def convert():
        library = ctypes.CDLL(find(f"{build}/infra", "libconvertinfraascii.so"))
        null = os.open(os.devnull, os.O_WRONLY)
        os.dup2(null, 1)
        os.dup2(null, 2)
        for i in range(count):
            library.infraconvertascii_startup_all(
                ctypes.byref(Arguments(f"{place}/sw{i}".encode(), b"benchmark", TARGET.encode(), SOURCE.encode())))
    before = processor_time(resource.RUSAGE_CHILDREN)
    child = multiprocessing.Process(target=convert)
    child.start()
    child.join()
    if child.exitcode != 0:
        raise SystemExit(f"the conversions ended with {child.exitcode}")
    return (processor_time(resource.RUSAGE_CHILDREN) - before) * 1000 / count


def find(folder, name):
    for root, _, files in os.walk(folder):
        if name in files:
            return f"{root}/{name}"
    raise SystemExit(f"there is no {name} below {folder}")


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("build")
    options.add_argument("--in", dest="place")
    options.add_argument("--sizes", nargs="+", type=int, default=[100, 1000, 10000])
    arguments = options.parse_args()
    print("| configurations | audit, ms each | peak of the command, MB | the six conversions alone, ms each |\n"
          "|---:|---:|---:|---:|")
    for count in arguments.sizes:
        place = tempfile.mkdtemp(dir=arguments.place or arguments.build)
        try:
            write_fleet(place, count)
            time, peak = audit(arguments.build, place, count)
            print(f"| {count:,} | {time:.2f} | {peak:.1f} | {conversions_alone(arguments.build, place, count):.2f} |",
                  flush=True)
        finally:
            shutil.rmtree(place)


if __name__ == "__main__":
    main()
