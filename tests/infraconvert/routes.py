#!/usr/bin/env python3
"""Ways between border releases over configurations: does any of them lose something in silence?

usage: routes.py INFRACONVERT [--every N] [--check N] CONFIGURATION...

Tries every pair of border releases, or every Nth of them, by every route with up to two stops. Of
each result that differs from that of the direct way in what the switch does, one of the two must
have a finding that the other has not, with the hop at which it happens, and no difference may be
left without one. With --check every Nth way is also previewed by itself, and must give the same
bytes. Prints the figures; ends with 1 when something passed in silence.
"""
import argparse
import collections
import itertools
import json
import subprocess
import sys


def call(infraconvert, *arguments):
    done = subprocess.run([infraconvert, *arguments], capture_output=True, text=True, timeout=600)
    answer = json.loads(done.stdout) if done.stdout else {'error': done.stderr}
    if 'error' in answer:
        sys.exit(f"{arguments}: {answer['error']}")
    return answer


def border_releases(infraconvert):
    return [border['release'] for border in call(infraconvert, 'plan', '--json')['releases']]


def told(way):
    return {(finding['code'], finding['detail'], *(line['text'] for line in finding['after']))
            for finding in way['findings'] if finding['severity'] != 'note'}


def troubles_of(way, direct):
    hops = {pair for route in way['routes'][:1] for pair in itertools.pairwise(route)}
    for finding in way['findings']:
        if tuple(finding['hop']) not in hops:
            yield f"{finding['code']} at no hop of its route: {finding.get('hop')}"
    for words in way['unexplained']:
        yield f'without a finding: {words}'
    if not way['as_direct'] and told(way) == told(direct):
        yield 'does something else than the direct way, with the same findings'


def preview_trouble(infraconvert, path, way):
    """A way is what its hops make, however it was found."""
    first, *stops, last = way['routes'][-1]
    via = ['--via', ','.join(stops)] if stops else []
    made = call(infraconvert, 'preview', '--json', '--from', first, '--to', last, *via, path)
    if made['failed'] != (way['failure'] is not None):
        yield 'fails otherwise when it is previewed'
    elif not made['failed'] and made['result'] != way['result']:
        yield 'other bytes when it is previewed'


def is_direct(way):
    return len(way['routes'][0]) == 2


def look_at(arguments, configuration, counts):
    ways = configuration['ways']
    if not ways:
        return
    direct = next(way for way in ways if is_direct(way))
    counts['configurations'] += 1
    counts['with ways that differ'] += not all(way['as_direct'] for way in ways)
    for way in ways:
        counts['routes'] += len(way['routes'])
        counts['results'] += 1
        counts['results that fail'] += way['failure'] is not None
        counts['results with other effects'] += not way['as_direct']
        counts['routes with other effects'] += 0 if way['as_direct'] else len(way['routes'])
        troubles = list(troubles_of(way, direct))
        if arguments.check and counts['results'] % arguments.check == 0:
            troubles += preview_trouble(arguments.infraconvert, configuration['path'], way)
            counts['previewed'] += 1
        counts['in silence'] += bool(troubles)
        for trouble in troubles:
            print(f"{configuration['path']}, {' to '.join(way['routes'][0])}: {trouble}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('infraconvert')
    parser.add_argument('configurations', nargs='+')
    parser.add_argument('--every', type=int, default=1)
    parser.add_argument('--check', type=int, default=0)
    arguments = parser.parse_args()
    pairs = list(itertools.permutations(border_releases(arguments.infraconvert), 2))
    counts = collections.Counter()
    for source, target in pairs[::arguments.every]:
        counts['pairs of releases'] += 1
        plan = call(arguments.infraconvert, 'plan', '--json', '--from', source, '--to', target,
                    *arguments.configurations)
        for configuration in plan['configurations']:
            look_at(arguments, configuration, counts)
    for name in ('pairs of releases', 'configurations', 'routes', 'results', 'results that fail',
                 'results with other effects', 'routes with other effects',
                 'with ways that differ', 'previewed', 'in silence'):
        print(f'{counts[name]:8} {name}')
    return 1 if counts['in silence'] or not counts['results with other effects'] else 0


sys.exit(main())
