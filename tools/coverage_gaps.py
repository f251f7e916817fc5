#!/usr/bin/env python3
"""Reads what llvm-cov exports, and prints where conditions stand that no test showed to change the outcome of their
decision alone, with the text of the condition's decision."""
import json
import os
import sys


def decision(lines, first, start, last, end):
    if first == last:
        return lines[first - 1][start - 1:end - 1].strip()
    return " ".join(line.strip() for line in
                    [lines[first - 1][start - 1:], *lines[first:last - 1], lines[last - 1][:end - 1]])


def main():
    gaps = total = 0
    for file in json.load(sys.stdin)["data"][0]["files"]:
        with open(file["filename"], encoding="utf-8") as source:
            lines = source.read().split("\n")
        # A template stands once in the source, whatever it is made for.
        decisions = {}
        for record in file.get("mcdc_records", []):
            known = decisions.setdefault(tuple(record[:4]), [False] * len(record[-1]))
            decisions[tuple(record[:4])] = [one or other for one, other in zip(known, record[-1])]
        for record, shown in sorted(decisions.items()):
            total += len(shown)
            gaps += shown.count(False)
            if not all(shown):
                numbers = ", ".join(str(i + 1) for i, is_shown in enumerate(shown) if not is_shown)
                print(f"{os.path.relpath(file['filename'])}:{record[0]}: condition {numbers} of "
                      f"{decision(lines, *record[:4])}")
    print(f"{total - gaps} of {total} conditions shown, {100 * (total - gaps) / total:.1f} %")


if __name__ == "__main__":
    main()
