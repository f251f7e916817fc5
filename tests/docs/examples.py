#!/usr/bin/env python3
"""Compares the examples of a document with what infraconvert really does.

A comment in front of an example says what it is:
    <!-- convert SERVICE FROM TO -->    a block with the configuration before, and one after;
                                        with "accept CODE,CODE" in front of the end it is refused
                                        until these findings are accepted
    <!-- unchanged SERVICE FROM TO -->  a block with a configuration that stays as it is
    <!-- fails SERVICE FROM TO -->      a block with a configuration, and one with the failure
    <!-- pairs SERVICE -->              a table of source release, target release and rule
    <!-- effects RELEASE -->            a block with a configuration, and one with its effects
    <!-- judged FROM TO -->             a block before a conversion, one after it, and one with what
                                        the audit says of the two
    <!-- session FILE -->               a block with commands and what they print, one after the
                                        other beside a copy of FILE
    <!-- finding ... -->                see finding_sections.py

usage: examples.py [--write] INFRACONVERT DOCUMENT
With --write the document is brought up to date instead.
"""
import difflib
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

import finding_sections

EXAMPLE = re.compile(r'<!-- (convert|unchanged|fails) (\S+) (\S+) (\S+)(?: accept (\S+))? -->\n+'
                     r'```\n(.*?)```\n'
                     r'(?:\n[^`\n]+\n\n```\n(.*?)```\n)?', re.S)
PAIRS = re.compile(r'<!-- pairs (\S+) -->\n\n(?:\|.*\n){2}((?:\|.*\n)+)')
SESSION = re.compile(r'<!-- session (\S+) -->\n+```\n(.*?)```\n', re.S)

BLOCK = r'```\n(.*?)```\n'
EFFECTS = re.compile(rf'<!-- effects (\S+) -->\n+{BLOCK}\n{BLOCK}', re.S)
JUDGED = re.compile(rf'<!-- judged (\S+) (\S+) -->\n+{BLOCK}\n{BLOCK}\n{BLOCK}', re.S)

FAILED, FINDINGS = 1, 4  # exit statuses of infraconvert


def call(infraconvert, command, service, source, target, *more, text=None):
    done = subprocess.run(
        [infraconvert, command, '--service', service, '--from', source, '--to', target, *more],
        input=text, capture_output=True, text=True, timeout=60)
    return done.returncode, done.stdout


def failure(infraconvert, service, source, target, text):
    _, report = call(infraconvert, 'preview', service, source, target, '--json', '-', text=text)
    told = json.loads(report)['services'][0]['failure']
    places = [f"line {line['number']}: {line['text']}\n" for line in told['lines']]
    return ''.join([told['reason'] + '\n', *places])


def example_as_it_is(infraconvert, example):
    kind, service, source, target, accepted, before, _ = example.groups()
    status, after = call(infraconvert, 'convert', service, source, target, '-', text=before)
    if status != (FAILED if kind == 'fails' else FINDINGS if accepted else 0):
        sys.exit(f'{example[0]}\nends with status {status}')
    if accepted:
        _, after = call(infraconvert, 'convert', service, source, target, '--accept', accepted, '-',
                        text=before)
    if kind == 'fails':
        after = failure(infraconvert, service, source, target, before)
    if (after == before) != (kind == 'unchanged'):
        sys.exit(f'{example[0]}\nis {kind}, but comes out as\n{after}')
    if kind == 'unchanged':
        return example[0]
    start, end = (place - example.start() for place in example.span(7))
    return example[0][:start] + after + example[0][end:]


def pairs_as_they_are(infraconvert, table):
    text = table[0][:table.start(2) - table.start()]
    for row in table[2].splitlines():
        source, target = (cell.strip() for cell in row.split('|')[1:3])
        _, plan = call(infraconvert, 'plan', table[1], source, target, '--json')
        rules = json.loads(plan)['services'][0]['rules']
        text += f"| {source} | {target} | {', '.join(rule['id'] for rule in rules) or 'none'} |\n"
    return text


def with_last_block(example, text):
    start, end = (place - example.start() for place in example.span(example.re.groups))
    return example[0][:start] + text + example[0][end:]


def effects_as_they_are(infraconvert, example):
    done = subprocess.run([infraconvert, 'effects', '--from', example[1], '-'], input=example[2],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=60)
    return with_last_block(example, done.stdout)


def judgement_as_it_is(infraconvert, example):
    source, target, before, after, _ = example.groups()
    with tempfile.NamedTemporaryFile('w') as result:
        result.write(after)
        result.flush()
        done = subprocess.run([infraconvert, 'audit', '--json', '--from', source, '--to', target,
                               '--result', result.name, '-'], input=before, capture_output=True,
                              text=True, timeout=60)
    findings = json.loads(done.stdout)['configurations'][0]['findings']
    told = [f"{found['severity']} {found['code']}: {found['detail']}\n" for found in findings]
    return with_last_block(example, ''.join(told) or 'no findings\n')


def session_as_it_is(infraconvert, directory, session):
    environment = os.environ | {'PATH': f"{os.path.dirname(infraconvert)}:{os.environ['PATH']}"}
    with tempfile.TemporaryDirectory() as place:
        shutil.copy(os.path.join(directory, session[1]), place)
        text = ''
        for command in re.findall(r'^\$ (.*)', session[2], re.M):
            done = subprocess.run(command, shell=True, cwd=place, env=environment, timeout=60,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            text += f'$ {command}\n{done.stdout}'
    start, end = (place - session.start() for place in session.span(2))
    return session[0][:start] + text + session[0][end:]


def main():
    infraconvert, document = map(os.path.abspath, sys.argv[-2:])
    with open(document) as file:
        text = file.read()
    found = sum(len(kind.findall(text)) for kind in (EXAMPLE, PAIRS, EFFECTS, JUDGED, SESSION, finding_sections.SECTION,
                                                        finding_sections.RETIRED))
    if found == 0 or found != text.count('\n<!-- '):
        sys.exit(f'{document}: a comment is not followed by what it announces')
    actual = EXAMPLE.sub(lambda example: example_as_it_is(infraconvert, example), text)
    actual = PAIRS.sub(lambda table: pairs_as_they_are(infraconvert, table), actual)
    actual = EFFECTS.sub(lambda example: effects_as_they_are(infraconvert, example), actual)
    actual = JUDGED.sub(lambda example: judgement_as_it_is(infraconvert, example), actual)
    actual = finding_sections.up_to_date(infraconvert, actual)
    directory = os.path.dirname(document)
    actual = SESSION.sub(lambda session: session_as_it_is(infraconvert, directory, session), actual)
    if '--write' in sys.argv:
        with open(document, 'w') as file:
            file.write(actual)
    elif actual != text:
        sys.exit('\n'.join(difflib.unified_diff(text.splitlines(), actual.splitlines(), document,
                                                'what infraconvert does', lineterm='')))


main()
