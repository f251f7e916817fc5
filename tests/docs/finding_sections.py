"""The sections of docs/findings.md: what is written by hand in one is its heading, its comment and the
configuration below; everything else is what infraconvert says of it.

    <!-- finding FROM TO -->             a conversion
    <!-- finding FROM TO and back -->    the way there and back
    <!-- finding FROM TO of a result --> a block with another result, and no conversion
    <!-- finding RELEASE -->             the configuration as it is
    <!-- retired codes -->               the table of the codes that are not found any more

<CR> stands for a carriage return, <END> for a last line without a newline.
"""
import json
import re
import subprocess
import sys
import tempfile
import textwrap

SECTION = re.compile(r'^## (IC\d{3})\n.*?(<!-- finding (\S+)(?: (\S+))?( and back| of a result)? -->)\n+'
                     r'```\n(.*?)```\n(.*?)(?=^## |\Z)', re.S | re.M)
SECOND_BLOCK = re.compile(r'[^`]*```\n(.*?)```\n', re.S)
RETIRED = re.compile(r'<!-- retired codes -->\n\n(?:\|.*\n)+')


class Example:
    def __init__(self, infraconvert, section):
        self.infraconvert = infraconvert
        self.code, self.comment, self.source, self.target, self.kind, self.before, rest = section.groups()
        self.kind = (self.kind or '').strip()
        self.result = SECOND_BLOCK.match(rest)[1] if self.kind == 'of a result' else None

    def call(self, command, *arguments, text=None):
        releases = ['--from', self.source] + (['--to', self.target] if self.target else [])
        done = subprocess.run([self.infraconvert, command, *releases, *arguments, '-'], timeout=60,
                              input=real(self.before if text is None else text).encode(), capture_output=True)
        return shown(done.stdout.decode())

    def audit(self, *arguments):
        if self.result is None:
            back = ['--rollback'] if self.kind == 'and back' else []
            return self.call('audit', *back, *arguments)
        with tempfile.NamedTemporaryFile('w') as file:
            file.write(self.result)
            file.flush()
            return self.call('audit', '--result', file.name, *arguments)

    def said(self):
        """What the audit says about the code, fixes included."""
        text = self.audit()
        about = re.search(rf'^  \w+ +{self.code}  .*\n(?:    .*\n)+', text, re.M)
        if not about:
            sys.exit(f'{self.code} is not found in its example:\n{text}')
        return about[0]

    def is_mended(self):
        findings = json.loads(self.audit('--json'))['configurations'][0]['findings']
        return any(finding['fixes'] for finding in findings if finding['code'] == self.code)

    def converted(self, *arguments):
        findings = json.loads(self.call('audit', '--json'))['configurations'][0]['findings']
        accepted = {finding['code'] for finding in findings if finding['severity'] == 'error'}
        accept = ['--accept', ','.join(sorted(accepted))] if accepted else []
        text = self.call('convert', *accept, *arguments)
        if self.kind != 'and back':
            return text
        self.source, self.target = self.target, self.source
        text = self.call('convert', text=text)
        self.source, self.target = self.target, self.source
        return text

    def blocks(self):
        """Words, and the block that they announce."""
        yield '', self.before
        if self.result is not None:
            yield 'A result:', self.result
        elif self.target and (made := self.converted()):
            way = f'to {self.target} and back' if self.kind else f'to {self.target}'
            yield f'The conversion {way} makes of it:', made
        elif self.target:
            yield 'The conversion fails.', None
        yield 'The audit says:', self.said()
        if self.result is None and self.kind == '' and self.is_mended():
            yield 'Mended:', self.converted('--mend')


def real(text):
    return text.replace('<CR>\n', '\r\n').replace('<END>\n', '')


def shown(text):
    ended = text if not text or text.endswith('\n') else text + '<END>\n'
    return ended.replace('\r\n', '<CR>\n')


def explained(infraconvert, code):
    done = subprocess.run([infraconvert, 'explain', '--json', code], capture_output=True, text=True, timeout=60)
    return json.loads(done.stdout)['finding'] if done.returncode == 0 else None


def section_as_it_is(infraconvert, section):
    example = Example(infraconvert, section)
    kind = explained(infraconvert, example.code)
    text = f"## {example.code}\n\n**{kind['title']}** ({kind['severity']}). "
    text = textwrap.fill(text.split('\n')[-1] + kind['explanation'], 110, break_on_hyphens=False)
    parts = [f'## {example.code}', text, example.comment]
    for words, block in example.blocks():
        parts += ([words] if words else []) + ([f'```\n{block}```'] if block is not None else [])
    return '\n\n'.join(parts) + '\n\n'


def retired_codes(infraconvert):
    table = '<!-- retired codes -->\n\n| code | was | why it is not found any more |\n|---|---|---|\n'
    for number in range(100):
        kind = explained(infraconvert, f'IC{number:03}')
        if kind and not kind['severity']:
            table += f"| {kind['code']} | {kind['title']} | {kind['explanation']} |\n"
    return table


def codes(infraconvert):
    """Every code that is found today."""
    listed = subprocess.run([infraconvert, 'explain'], capture_output=True, text=True, timeout=60).stdout
    return set(re.findall(r'^(IC\d{3}) ', listed, re.M))


def up_to_date(infraconvert, text):
    """The document as it should be. A code without a section ends the program."""
    there = {section[1] for section in SECTION.finditer(text)}
    if there and there != codes(infraconvert):
        sys.exit(f'sections and codes differ: {sorted(there ^ codes(infraconvert))}')
    text = SECTION.sub(lambda section: section_as_it_is(infraconvert, section), text)
    return RETIRED.sub(lambda table: retired_codes(infraconvert), text)
