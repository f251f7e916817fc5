#!/usr/bin/env python3
"""Fails where a room of the command includes from a room above it.

usage: arrows.py TOOL_FOLDER, whose README.md lists the rooms from top to bottom
"""
import re
import sys
from pathlib import Path

# Rooms that may look at these rooms below them only: what judges a conversion knows nothing of what converts.
JUDGES = {'meaning': {'meaning', 'base'}}


def rooms_of(readme):
    return re.findall(r'^    (\w+)/ ', readme.read_text(), re.MULTILINE)


def arrows_of(folder):
    for source in sorted(folder.glob('*/*.*')):
        for included in re.findall(r'^#include "(\w+)/', source.read_text(), re.MULTILINE):
            yield source.relative_to(folder), source.parent.name, included


def trouble_with(rooms, room, included):
    if room not in rooms:
        return f'{room}/ has no place in README.md'
    if included in rooms and rooms.index(included) < rooms.index(room):
        return f'{included}/ stands above {room}/'
    if included not in JUDGES.get(room, {included}):
        return f'{room}/ must not know {included}/'
    return None


def main():
    folder = Path(sys.argv[1])
    rooms = rooms_of(folder / 'README.md')
    arrows = list(arrows_of(folder))
    between = {(room, included) for _, room, included in arrows if included in rooms and room != included}
    troubles = [f'{source}: {trouble}' for source, room, included in arrows
                if (trouble := trouble_with(rooms, room, included))]
    print(*troubles, f'{len(rooms)} rooms, {len(between)} arrows', sep='\n')
    return 1 if troubles or not between else 0


sys.exit(main())
