#!/usr/bin/env python3
"""Changes one thing at a time in the sources, and asks whether the tests notice.

usage: mutants.py [--count N] [--seed S] [--jobs J] [--only AREA[,...]] [--tests REGEX] [--matrix FILE] [--build DIR]

Of all places where an operator, a constant or a condition can be changed, or a statement removed, N
are drawn by the seed, as many from each area as it has of them. One build, of a copy of the tree, holds
all of them, each as a choice that the environment makes (mutants.h); what does not compile does not
count. The tests run once to tell which changes they come by and how long they take; then each change is
tried by those that do, quickest first, until one notices. Printed are the changes that no test noticed,
and how many were noticed in each area.

With --matrix each change is tried by every test that comes by it. The file gets a line for each test: how
many changes it notices, how many of them nobody else does, how many it comes by, its seconds and its name;
those that notice nothing come first.
"""

import argparse
import concurrent.futures
import itertools
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import places

ROOT = pathlib.Path(__file__).resolve().parents[2]
AREAS = {
    "library": "infra",
    "meaning": "tools/infraconvert/meaning",
    "mending": "tools/infraconvert/mending",
    "audit": "tools/infraconvert/audit",
}
# Tests that read sources, and those of the pages and of automation, which bring much that is not ours.
NOT_ASKED = re.compile("infraconvert.arrows|install|abi.exports|page|engines|ansible")
# The library has tests of its own; that the command also shows what it does does not count.
NOT_THEIRS = {"library": re.compile("infraconvert|docs")}
# Tests save files by the thousand, and each save waits for the disk.
TEMPORARY = {"TMPDIR": "/dev/shm"} if os.path.isdir("/dev/shm") else {}
MEMORY = 4 << 30  # bytes for one process
# A change may replace the device that a test writes to; as root it could, for the whole machine.
CONFINED = ["unshare", "--mount", "sh", "-c",
            'mount --rbind /dev /dev && mount -o remount,bind,ro /dev && exec "$@"', "sh"] if os.geteuid() == 0 else []
SPARE = 1.4  # so many times the wanted changes are drawn, for some do not compile


def tell(text):
    print(text, file=sys.stderr, flush=True)


def write(path, content):
    """Leaves the file alone, and what was built of it, when it says so already."""
    if not path.exists() or path.read_bytes() != content:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


# ---- The changes


def drawn(areas, count, seed):
    """The changes of each area in the order of their drawing, and how many of them are wanted."""
    found = {area: [change for file in sorted((ROOT / AREAS[area]).rglob("*.cpp"))
                    for change in places.changes(str(file.relative_to(ROOT)), file.read_text())] for area in areas}
    wanted = {area: round(count * len(found[area]) / sum(map(len, found.values()))) for area in areas}
    for area in areas:
        random.Random(f"{seed} {area}").shuffle(found[area])
        apart = []
        for change in found[area][:int(wanted[area] * SPARE)]:
            if not any(change.overlaps(other) for other in apart):
                apart.append(change)
        found[area] = apart
    return [change for area in areas for change in found[area]], wanted


def with_changes(file, source, changes):
    """The source with these changes as choices, its lines where they were."""
    for number, change in sorted(changes.items(), key=lambda each: -each[1].start):
        text = change.text.replace("mutants::on(@)", f"mutants::on({number})")
        source = source[:change.start] + text + source[change.end:]
    return f'#include "{ROOT / "tests/mutants/mutants.h"}"\n#line 1\n{source}' if changes else source


def area_of(change):
    return next(area for area, folder in AREAS.items() if change.file.startswith(folder + "/"))


def first_of_each(changes, wanted):
    """As many of each area as are wanted."""
    taken = {area: [number for number, change in changes.items() if area_of(change) == area] for area in wanted}
    return {number: changes[number] for area in wanted for number in taken[area][:wanted[area]]}


def in_words(change):
    lines = (ROOT / change.file).read_text().split("\n")[change.lines.start - 1:change.lines.stop - 1]
    return (f"{change.file}:{change.lines.start}: {' '.join(line.strip() for line in lines)}\n"
            f"    {' '.join(change.old.split())}   ->   {' '.join(change.new.split())}")


# ---- The build


def copy_tree(tree, changes):
    listed = subprocess.run(["git", "-C", ROOT, "ls-files", "-z"], check=True, capture_output=True, text=True).stdout
    files = set(filter(None, listed.split("\0")))
    for folder, below, names in os.walk(tree):
        below[:] = [name for name in below if name != "build"]
        for path in (pathlib.Path(folder, name) for name in names):
            if str(path.relative_to(tree)) not in files:
                path.unlink()
    for file in sorted(files):
        mine = {number: change for number, change in changes.items() if change.file == file}
        content = (ROOT / file).read_bytes()
        write(tree / file, with_changes(file, content.decode(), mine).encode() if mine else content)
        shutil.copymode(ROOT / file, tree / file)


def failing(output, changes):
    """The changes on lines of which the compiler complains, or else those next before them."""
    wrong = set()
    for file, line in set(re.findall(r"^(\S+?):(\d+):\d+: +(?:error|required from)", output, re.M)):
        mine = {number: change.lines for number, change in changes.items() if file.endswith(change.file)}
        there = [number for number, lines in mine.items() if int(line) in lines]
        before = sorted((number for number, lines in mine.items() if lines.start < int(line)),
                        key=lambda number: mine[number].start)
        wrong.update(there or before[-1:] or mine)
    return wrong


def build(tree, changes, jobs):
    """Builds the tree with those of the changes that compile, and takes out the others."""
    while True:
        copy_tree(tree, changes)
        subprocess.run(["cmake", "--preset", "release"], cwd=tree, check=True, capture_output=True)
        made = subprocess.run(["ninja", "-k", "0", "-j", str(jobs)], cwd=tree / "build/release", capture_output=True,
                              text=True)
        if made.returncode == 0:
            return
        wrong = failing(made.stdout, changes)
        if not wrong:
            sys.exit(made.stdout + "\nmutants: the build fails")
        for number in wrong:
            del changes[number]
        tell(f"{len(wrong)} changes that do not compile are taken out, {len(changes)} are left")


# ---- The tests


class Test:
    def __init__(self, told):
        properties = {each["name"]: each["value"] for each in told.get("properties", [])}
        self.name, self.command = told["name"], told["command"]
        self.folder = properties["WORKING_DIRECTORY"]
        self.environment = dict(each.split("=", 1) for each in properties.get("ENVIRONMENT", []))
        self.seconds = 60
        self.reaches = set()

    def passes(self, change=0, **environment):
        """Whether it passes with a change; what takes far longer than without does not."""
        limits = CONFINED + ["prlimit", f"--as={MEMORY}", f"--cpu={int(5 * self.seconds) + 5}"]
        environment = {**os.environ, **TEMPORARY, **self.environment, "MUTANT": str(change), **environment}
        process = subprocess.Popen(limits + self.command, cwd=self.folder, env=environment, start_new_session=True,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            return process.wait(20 * self.seconds + 300) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()

    def look(self, changes):
        """Runs it without a change; notes its time, and which changes it comes by."""
        with tempfile.NamedTemporaryFile() as reached:
            reached.truncate(max(changes, default=0) + 1)
            start = time.monotonic()
            passed = self.passes(MUTANTS_REACHED=reached.name)
            self.seconds = time.monotonic() - start
            self.reaches = {number for number, byte in enumerate(reached.read()) if byte}
        if not passed:
            tell(f"{self.name} fails without a change, and is not asked")
        return passed


def asks(area, test):
    """Whether an area's changes are tried by a test."""
    return not (area in NOT_THEIRS and NOT_THEIRS[area].match(test.name))


def tests_of(tree, pattern, areas):
    listed = subprocess.run(["ctest", "--show-only=json-v1"], cwd=tree / "build/release", check=True,
                            capture_output=True).stdout
    tests = [Test(told) for told in json.loads(listed)["tests"] if "command" in told]
    return [test for test in tests if not NOT_ASKED.match(test.name) and re.search(pattern, test.name)
            and any(asks(area, test) for area in areas)]


def noticing(number, change, tests):
    """The tests that notice a change, the quickest first. One that fails without it too is not believed."""
    asked = (test for test in tests if number in test.reaches and asks(area_of(change), test))
    return (test for test in asked if not test.passes(number) and test.passes())


def write_matrix(file, tests, noticed):
    """A line for each test, of what `noticed` says of each change: the tests that notice it."""
    lines = []
    for test in tests:
        mine = [others for others in noticed if test in others]
        lines.append((len(mine), sum(len(others) == 1 for others in mine), len(test.reaches), test))
    lines.sort(key=lambda line: line[:2])
    file.write_text("".join(f"{mine:4} {alone:4} {reached:4} {test.seconds:7.1f} s  {test.name}\n"
                            for mine, alone, reached, test in lines))


def main():
    options = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    options.add_argument("--count", type=int, default=300)
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--jobs", type=int, default=len(os.sched_getaffinity(0)))
    options.add_argument("--only", default=",".join(AREAS), help="areas, with commas between")
    options.add_argument("--tests", default="", help="only the tests whose names this finds")
    options.add_argument("--matrix", type=pathlib.Path, metavar="FILE", help="which test notices how many changes")
    options.add_argument("--build", type=pathlib.Path, default=ROOT / "build/mutants")
    given = options.parse_args()

    if subprocess.run(CONFINED + ["true"], check=False).returncode != 0:
        sys.exit("mutants: as root only where mounts may be made: a changed program could damage /dev")
    changes, wanted = drawn(given.only.split(","), given.count, given.seed)
    changes = dict(enumerate(changes, 1))
    build(given.build.resolve(), changes, given.jobs)
    changes = first_of_each(changes, wanted)

    with concurrent.futures.ThreadPoolExecutor(given.jobs) as pool:
        tests = tests_of(given.build.resolve(), given.tests, wanted)
        tests = [test for test, passed in zip(tests, pool.map(lambda test: test.look(changes), tests)) if passed]
        tests.sort(key=lambda test: test.seconds)
        tell("".join(f"{test.seconds:6.1f} s, {len(test.reaches):3} changes: {test.name}\n" for test in tests))
        most = None if given.matrix else 1
        tried = pool.map(lambda each: list(itertools.islice(noticing(*each, tests), most)), changes.items())
        counts = {area: [0, 0] for area in wanted}
        all_noticed = []
        for at, (change, noticed) in enumerate(zip(changes.values(), tried), 1):
            all_noticed.append(noticed)
            counts[area_of(change)][0] += bool(noticed)
            counts[area_of(change)][1] += 1
            tell(f"{at} of {len(changes)}: {', '.join(test.name for test in noticed) or 'nobody'}")
            if not noticed:
                print(in_words(change), flush=True)
    if given.matrix:
        write_matrix(given.matrix, tests, all_noticed)
    for area, (noticed, count) in counts.items():
        print(f"{area}: {noticed} of {count} noticed")
    noticed = sum(noticed for noticed, _ in counts.values())
    print(f"{noticed} of {len(changes)} noticed, {100 * noticed / max(len(changes), 1):.0f} %")


if __name__ == "__main__":
    main()
