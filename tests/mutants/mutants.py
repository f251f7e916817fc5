#!/usr/bin/env python3
"""Changes one thing at a time in the sources, and asks whether the tests notice.

usage: mutants.py [--count N] [--seed S] [--jobs J] [--only AREA[,...]] [--build DIR]

Of all places where an operator, a constant or a condition can be changed, or a statement removed, N
are drawn by the seed, as many from each area as it has of them. Each is compiled and tried by the tests of ./check, in a
copy of the last commit; a change that does not compile does not count. Printed are the changes that
no test noticed, and how many were noticed in each area.
"""

import argparse
import concurrent.futures
import os
import pathlib
import queue
import random
import re
import resource
import shutil
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
AREAS = {
    "library": "infra",
    "meaning": "tools/infraconvert/meaning",
    "mending": "tools/infraconvert/mending",
    "audit": "tools/infraconvert/audit",
}
# Tests that read sources or documents, and none of the code that they describe.
NOT_ASKED = "^(infraconvert.arrows|install|abi.exports)"
TOO_LONG = 120  # seconds for one test; what runs so long runs for ever
MEMORY = 4 << 30  # bytes for one process

OPERATORS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "&&": "||", "||": "&&", "++": "--", "--": "++",
             "+=": "-=", "-=": "+=", " < ": " <= ", " > ": " >= ", " + ": " - ", " - ": " + "}
OPERATOR = re.compile("|".join(re.escape(text) for text in sorted(OPERATORS, key=len, reverse=True)))
NUMBER = re.compile(r"(?<![\w.])(\d+)(?![\w.'])")
TRUTH = re.compile(r"\b(true|false)\b")
CONDITION = re.compile(r"\b(?:if|while) \((?=[^;]*\)(?: \{)?$)")
STATEMENT = re.compile(r"^\s+(?!return\b|using\b|const\b|auto\b|static\b|throw\b|case\b|break\b|}|friend\b)"
                       r"[\w:.\->\[\]()*]+(?:\(.*\)| [-+|&]?= .*);$")


def blanked(source):
    """The source with what is no code made blank, place for place."""
    no_code = re.compile(r'//[^\n]*|/\*.*?\*/|R"\((?:.|\n)*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|^\s*#[^\n]*',
                         re.S | re.M)
    return no_code.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), source)


def places_of_line(line, code):
    """(from, to, new text) of each change that the line allows."""
    if "static_assert" in code or "template" in code:
        return
    for found in OPERATOR.finditer(code):
        yield found.start(), found.end(), OPERATORS[found.group()]
    for found in NUMBER.finditer(code):
        yield found.start(), found.end(), str(int(found.group()) + 1)
    for found in TRUTH.finditer(code):
        yield found.start(), found.end(), "false" if found.group() == "true" else "true"
    for found in CONDITION.finditer(code):
        close = code.rindex(")")
        yield found.end(), close, "!(" + line[found.end():close] + ")"
    if STATEMENT.match(code) and code.count("(") == code.count(")"):
        start = len(code) - len(code.lstrip())
        yield start, len(line), ";"


def candidates(area):
    """(area, file, line number, from, to, new text) of every change in an area."""
    for file in sorted((ROOT / AREAS[area]).rglob("*.cpp")):
        source = file.read_text()
        lines = zip(source.split("\n"), blanked(source).split("\n"))
        for number, (line, code) in enumerate(lines, 1):
            for start, end, text in places_of_line(line, code):
                yield area, file.relative_to(ROOT), number, start, end, text


def limited():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


class Tree:
    """A copy of the last commit with a build of its own."""

    def __init__(self, where):
        self.source = where / "tree"
        self.build = where / "build"
        shutil.rmtree(self.source, ignore_errors=True)
        self.source.mkdir(parents=True)
        archive = subprocess.run(["git", "-C", ROOT, "archive", "HEAD"], check=True, capture_output=True).stdout
        subprocess.run(["tar", "-x", "-C", self.source], input=archive, check=True)
        subprocess.run(["cmake", "-G", "Ninja", "-S", self.source, "-B", self.build, "-DCMAKE_BUILD_TYPE=Debug",
                        "-DCMAKE_CXX_FLAGS=-O1 -g0", "-DINFRACONVERT_TOOLS=ON", "-DINFRACONVERT_TESTS=ON"],
                       check=True, capture_output=True)

    def compiles(self):
        return subprocess.run(["ninja", "-C", self.build], capture_output=True).returncode == 0

    def passes(self):
        run = subprocess.run(["ctest", "--test-dir", self.build, "--stop-on-failure", "-E", NOT_ASKED, "--timeout",
                              str(TOO_LONG)], capture_output=True, preexec_fn=limited)
        return run.returncode == 0

    def try_change(self, change):
        """None when it does not compile, else whether a test notices."""
        _, file, number, start, end, text = change
        path = self.source / file
        original = path.read_text()
        lines = original.split("\n")
        line = lines[number - 1]
        lines[number - 1] = line[:start] + text + line[end:]
        path.write_text("\n".join(lines))
        try:
            return not self.passes() if self.compiles() else None
        finally:
            path.write_text(original)


def in_words(change):
    _, file, number, start, end, text = change
    line = (ROOT / file).read_text().split("\n")[number - 1]
    return f"{file}:{number}: {line.strip()}\n    {(line[:start] + text + line[end:]).strip()}"


def drawn(areas, count, seed):
    """Changes in the order in which they are tried: from each area in proportion, more than are needed."""
    chance = random.Random(seed)
    found = [change for area in areas for change in candidates(area)]
    chance.shuffle(found)
    return found[:count * 2]


def main():
    options = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    options.add_argument("--count", type=int, default=300)
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--jobs", type=int, default=len(os.sched_getaffinity(0)))
    options.add_argument("--only", default=",".join(AREAS))
    options.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "mutants")
    given = options.parse_args()

    trees = queue.Queue()
    for job in range(given.jobs):
        tree = Tree(given.build.resolve() / str(job))
        if not tree.compiles() or not tree.passes():
            sys.exit("mutants: the tests fail without any change")
        trees.put(tree)

    results = {area: [0, 0] for area in given.only.split(",")}  # noticed, tried
    survivors = []

    def attempt(change):
        if sum(tried for _, tried in results.values()) >= given.count:
            return
        tree = trees.get()
        noticed = tree.try_change(change)
        trees.put(tree)
        if noticed is None:
            return
        results[change[0]][1] += 1
        results[change[0]][0] += noticed
        if not noticed:
            survivors.append(change)
            print(in_words(change), flush=True)
        print(f"\r{sum(tried for _, tried in results.values())} of {given.count}", end="", file=sys.stderr)

    with concurrent.futures.ThreadPoolExecutor(given.jobs) as pool:
        list(pool.map(attempt, drawn(results, given.count, given.seed)))
    print(file=sys.stderr)
    for area, (noticed, tried) in results.items():
        print(f"{area}: {noticed} of {tried} noticed")


main()
