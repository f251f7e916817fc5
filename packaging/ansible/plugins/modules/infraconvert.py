#!/usr/bin/python
# -*- coding: utf-8 -*-
"""Converts the saved configuration of a switch with the command infraconvert."""

DOCUMENTATION = r"""
module: infraconvert
short_description: Convert the saved configuration of a switch for another software release
version_added: "1.0.0"
description:
  - Rewrites the saved configuration of a data-centre switch as another software release reads it.
  - Nothing is written when a conversion fails, or when the switch would lose something that it does today.
    The message then says what, and C(mend) or C(accept) tell what to do about it.
  - The original is kept beside the file, under its name and C(backup). The file is converted when it holds what
    comes of that original, so a task that runs again is not C(changed).
options:
  path:
    description: The configuration, or a directory that holds C(ascii/system.cfg).
    type: path
    required: true
  to:
    description: The release that will read the configuration, such as C(5.0(3)).
    type: str
    required: true
  from:
    description: The release that wrote it. Without it, the one that its version line names.
    type: str
  via:
    description: The releases on the way, when the switch does not go straight to C(to).
    type: list
    elements: str
    default: []
  services:
    description: Convert for these services only. C(infraconvert plan) names them.
    type: list
    elements: str
    default: []
  mend:
    description:
      - Mend what would be lost, as far as there are fixes.
      - C(all), or the codes of the findings to mend.
    type: list
    elements: str
    default: []
  accept:
    description:
      - Convert in spite of these findings.
      - Codes such as C(IC041), or C(@FILE) with agreed exceptions.
    type: list
    elements: str
    default: []
  dest:
    description: Write the result to this file and leave C(path) as it is.
    type: path
  backup:
    description: Suffix of the file beside C(path) that keeps the original. It is not used with C(dest).
    type: str
    default: .bak
  state:
    description:
      - C(converted) converts.
      - C(original) takes a conversion in place back. The file must still hold what the conversion made of it.
    type: str
    choices: [converted, original]
    default: converted
  mask:
    description: Hide passwords, keys, community strings and whatever else may be secret in what is shown.
    type: bool
    default: true
  executable:
    description: The command, where it is not in PATH.
    type: path
    default: infraconvert
attributes:
  check_mode:
    description: Tells whether it would change something, and fails where it would fail.
    support: full
  diff_mode:
    description: Shows the lines that change, masked unless C(mask=false).
    support: full
requirements:
  - python >= 3.6
  - infraconvert
author: libconvertinfraascii maintainers (@infraconvert)
"""

EXAMPLES = r"""
- name: Convert for the release that is installed tonight
  infraconvert.switch.infraconvert:
    path: /srv/switches/{{ inventory_hostname }}/system.cfg
    from: 4.1(2)
    to: 5.0(3)
    mend: all
  delegate_to: localhost

- name: Take it back
  infraconvert.switch.infraconvert:
    path: /srv/switches/{{ inventory_hostname }}/system.cfg
    from: 4.1(2)
    to: 5.0(3)
    mend: all
    state: original
  delegate_to: localhost
"""

RETURN = r"""
findings:
  description: What the conversion loses or changes beyond its rules, as C(infraconvert convert --json) tells it.
  returned: when a conversion was tried
  type: list
  elements: dict
services:
  description: What became of each service, such as C(converted) or C(no rule).
  returned: when a conversion was tried
  type: dict
dest:
  description: The file that is, or in check mode would be, written.
  returned: when it changes
  type: str
backup_file:
  description: The file that keeps the original.
  returned: when there is one
  type: str
exit_status:
  description: What the command ended with, when it did not convert. Its manual page tells what each one means.
  returned: on failure
  type: int
"""

import json
import os
import shutil
import subprocess
import tempfile

from ansible.module_utils.basic import AnsibleModule

REFUSED = 4  # exit status of the command: something would be lost
NEXT_STEPS = {1: 'infraconvert preview shows what failed where',
              2: 'ansible-doc infraconvert.switch.infraconvert tells what the arguments mean',
              REFUSED: 'mend: all mends it where there are fixes; accept: [CODE] when the loss is all right',
              5: 'the file is no configuration that can be converted',
              6: 'another try may succeed'}

ARGUMENTS = {
    'path': {'type': 'path', 'required': True},
    'to': {'type': 'str', 'required': True},
    'from': {'type': 'str'},
    'via': {'type': 'list', 'elements': 'str', 'default': []},
    'services': {'type': 'list', 'elements': 'str', 'default': []},
    'mend': {'type': 'list', 'elements': 'str', 'default': []},
    'accept': {'type': 'list', 'elements': 'str', 'default': []},
    'dest': {'type': 'path'},
    'backup': {'type': 'str', 'default': '.bak'},
    'state': {'type': 'str', 'choices': ['converted', 'original'], 'default': 'converted'},
    'mask': {'type': 'bool', 'default': True},
    'executable': {'type': 'path', 'default': 'infraconvert'},
}


def contents(path):
    """Bytes of a file; None when there is none."""
    try:
        with open(path, 'rb') as file:
            return file.read()
    except FileNotFoundError:
        return None


class Conversion:
    """One configuration, and what the command makes of it."""

    def __init__(self, module):
        self.module = module
        self.params = module.params
        path = self.params['path']
        self.file = os.path.join(path, 'ascii', 'system.cfg') if os.path.isdir(path) else path
        self.dest = self.params['dest'] or self.file
        self.in_place = os.path.realpath(self.dest) == os.path.realpath(self.file)
        self.backup = self.file + self.params['backup'] if self.in_place else None
        self.facts = {}

    def fail(self, message, **more):
        self.module.fail_json(msg='%s: %s' % (self.file, message), **dict(self.facts, **more))

    def options(self, *, previews=False):
        options = ['--to', self.params['to'], '--json']
        if self.params['from']:
            options += ['--from', self.params['from']]
        for name, values in (('--via', self.params['via']), ('--service', self.params['services']),
                             ('--accept', [] if previews else self.params['accept'])):
            for value in values:
                options += [name, value]
        if self.params['mend']:
            options += ['--mend=' + ','.join(self.params['mend'])]
        return options + (['--mask'] if self.params['mask'] else [])

    def run(self, command, options, original=None):
        """What the command tells; fails when it tells nothing, or what kept it from its work."""
        # Unlike the module's own way to run something, this bears a command that ends before it has read its input.
        done = subprocess.run([self.params['executable'], command] + options, input=original or b'',
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        status = done.returncode
        try:
            told = json.loads(done.stdout.decode())
        except ValueError:
            self.fail(done.stderr.decode(errors='replace').strip() or 'the command ended with status %d' % status,
                      exit_status=status)
        if 'error' in told:
            self.fail('%s; %s' % (told['error'], NEXT_STEPS.get(status, '')), exit_status=status)
        return status, told

    def refuse(self, status, told):
        """Fails with the first thing that stands against the conversion."""
        reasons = ['%s: %s' % (each['name'], each['failure']['reason'])
                   for each in told['services'] if each['failure']]
        reasons += ['%s %s: %s' % (each['code'], each['title'], each['detail'])
                    for each in told['findings'] if each['severity'] == 'error' and not each.get('accepted')
                    and each['code'] not in self.params['accept']]
        more = ' (and %d more)' % (len(reasons) - 1) if len(reasons) > 1 else ''
        first = reasons[0] if reasons else 'the conversion ended with status %d' % status
        self.fail('nothing is written. %s%s; %s' % (first, more, NEXT_STEPS.get(status, '')), exit_status=status)

    def convert(self, original):
        """The bytes that come of these. The file that they pass through is for this user alone."""
        place = tempfile.mkdtemp(prefix='infraconvert-', dir=self.module.tmpdir)
        try:
            output = os.path.join(place, 'result')
            status, told = self.run('convert', self.options() + ['--output', output, '-'], original)
            self.facts = {'findings': told['findings'],
                          'services': {each['name']: each['state'] for each in told['services']}}
            if status != 0:
                self.refuse(status, told)
            return contents(output)
        finally:
            shutil.rmtree(place)

    def difference(self, original):
        labels = ['--label', self.file, '--label', self.dest]
        return self.run('preview', self.options(previews=True) + labels + ['-'], original)[1]['diff']

    def original(self, current):
        """What was there before any conversion. Fails when nobody knows."""
        kept = contents(self.backup) if self.in_place else None
        return current if kept is None else kept

    def refuse_unknown(self, current, original, result):
        if current not in (original, result):
            self.fail('is neither the original kept in %s nor what comes of it; if it is a new configuration, '
                      'move that file away' % self.backup)

    def leave(self, changed, **more):
        if self.backup and os.path.exists(self.backup):
            more['backup_file'] = self.backup
        self.module.exit_json(changed=changed, **dict(self.facts, **more))

    def end_converted(self, current):
        original = self.original(current)
        result = self.convert(original)
        if self.in_place:
            self.refuse_unknown(current, original, result)
        if contents(self.dest) == result:
            self.leave(False)
        shown = {'dest': self.dest}
        if self.module._diff:  # pylint: disable=protected-access
            shown['diff'] = {'prepared': self.difference(original)}
        if not self.module.check_mode:
            where = ['--backup=' + self.params['backup']] if self.in_place else ['--output', self.dest]
            status, told = self.run('convert', self.options() + where + [self.file])
            if status != 0:
                self.refuse(status, told)
        self.leave(True, **shown)

    def end_original(self, current):
        original = self.original(current)
        if original == current:
            self.leave(False)
        self.refuse_unknown(current, original, self.convert(original))
        if not self.module.check_mode:
            copy = tempfile.NamedTemporaryFile(dir=self.module.tmpdir, delete=False)
            with copy:
                copy.write(original)
            self.module.atomic_move(copy.name, self.file)
        self.leave(True, dest=self.file)

    def end(self):
        current = contents(self.file)
        if current is None:
            self.fail('No such file')
        if self.params['state'] == 'original':
            self.end_original(current)
        self.end_converted(current)


def main():
    module = AnsibleModule(ARGUMENTS, supports_check_mode=True)
    try:
        Conversion(module).end()
    except OSError as error:
        module.fail_json(msg='%s: %s' % (error.filename or module.params['executable'], error.strerror))


if __name__ == '__main__':
    main()
