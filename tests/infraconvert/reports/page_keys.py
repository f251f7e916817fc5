#!/usr/bin/env python3
"""Uses the page of an audit in a browser with nothing but the keyboard.

usage: page_keys.py INFRACONVERT; status 77: there is no browser here
"""
import fcntl
import json
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

NO_BROWSER = 77
KEYS = {'Tab': (9, ''), 'Enter': (13, '\r'), 'Escape': (27, ''), ' ': (32, ' ')}
FOCUSED = '''(e => e.matches('summary') ? e.querySelector('.name').textContent
             : e.name || e.textContent)(document.activeElement)'''


class Browser:
    """A browser that is told what to do through pipes: its descriptors 3 and 4."""

    def __init__(self, program, profile):
        ends = [fcntl.fcntl(end, fcntl.F_DUPFD, 10) for end in (*os.pipe(), *os.pipe())]
        commands, self.commands, self.answers, answers = ends
        self.process = subprocess.Popen(
            [program, '--headless', '--no-sandbox', '--disable-gpu', '--remote-debugging-pipe',
             '--user-data-dir=' + profile, 'about:blank'],
            preexec_fn=lambda: (os.dup2(commands, 3), os.dup2(answers, 4)), close_fds=False,
            start_new_session=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(answers)  # so that reading ends when the browser does
        self.number, self.pending, self.session = 0, b'', {}
        pages = self.do('Target.getTargets')['targetInfos']
        page = next(target['targetId'] for target in pages if target['type'] == 'page')
        session = self.do('Target.attachToTarget', targetId=page, flatten=True)['sessionId']
        self.session = {'sessionId': session}

    def end(self):
        os.killpg(self.process.pid, signal.SIGKILL)  # what is called may be a script around it
        self.process.wait()

    def do(self, method, **parameters):
        self.number += 1
        command = {'id': self.number, 'method': method, 'params': parameters, **self.session}
        os.write(self.commands, json.dumps(command).encode() + b'\0')
        while True:
            while b'\0' not in self.pending:
                piece = os.read(self.answers, 1 << 16)
                if not piece:
                    sys.exit('the browser ended')
                self.pending += piece
            message, self.pending = self.pending.split(b'\0', 1)
            answer = json.loads(message)
            if answer.get('id') == self.number:
                return answer['result']

    def ask(self, expression):
        return self.do('Runtime.evaluate', expression=expression,
                       returnByValue=True)['result'].get('value')

    def open(self, file):
        self.do('Page.navigate', url='file://' + file)
        self.until('document.readyState', 'complete')

    def press(self, *keys):
        for key in keys:
            code, text = KEYS.get(key, (ord(key[0].upper()), key))
            self.do('Input.dispatchKeyEvent', type='keyDown' if text else 'rawKeyDown', key=key,
                    text=text, windowsVirtualKeyCode=code)
            self.do('Input.dispatchKeyEvent', type='keyUp', key=key, windowsVirtualKeyCode=code)

    def until(self, expression, wanted):
        for _ in range(100):
            if (found := self.ask(expression)) == wanted:
                return
            time.sleep(0.05)
        sys.exit(f'{expression}\nis {found!r}, not {wanted!r}')

    def picture_of_focus(self):
        box = self.ask('(r => ({x: r.x, y: r.y + scrollY, width: r.width, height: r.height, scale: 1}))'
                       '(document.activeElement.getBoundingClientRect())')
        shown = self.do('Page.captureScreenshot', clip=box, captureBeyondViewport=True)['data']
        self.ask('window.was = document.activeElement; was.blur()')
        hidden = self.do('Page.captureScreenshot', clip=box, captureBeyondViewport=True)['data']
        self.ask('was.focus()')
        return shown, hidden


def write_page(infraconvert):
    for name, text in {'a': 'npiv enable\n', 'b': 'feature lldp\n', 'c': 'npiv enable'}.items():
        with open(name + '.cfg', 'w', encoding='ascii') as file:
            file.write(text)
    subprocess.run([infraconvert, 'audit', '--from', '4.1(2)', '--to', '5.0(2)', '--report',
                    'page.html', 'a.cfg', 'b.cfg', 'c.cfg'], check=True, capture_output=True)


def use_page(browser):
    opened = "[...document.querySelectorAll('details[open] .name')].map(e => e.textContent).join()"
    count = "document.getElementById('count').textContent"
    names = ['a.cfg', 'b.cfg', 'c.cfg']
    stops = ['IC065', 'IC080', 'name', 'code', 'severity', 'service', 'state', 'Show all', *names]
    for stop in stops:
        browser.press('Tab')
        browser.until(FOCUSED, stop)
        if stop in names:
            focused, other = browser.picture_of_focus()
            if focused == other:
                sys.exit(f'{stop} looks the same with the focus and without')
    browser.press('Enter')
    browser.until(opened, 'c.cfg')
    browser.press('k', ' ')
    browser.until(opened, 'b.cfg,c.cfg')
    browser.press('/', 'A', '.')
    browser.until(count, '1 of 3')
    browser.press('Escape')
    browser.until(count, '3 of 3')
    browser.ask("document.querySelector('button.code').focus()")
    browser.press('Enter')
    browser.until(count, '1 of 3')
    browser.until(FOCUSED, 'code')


def main(infraconvert):
    program = shutil.which('chromium-headless-shell') or shutil.which('chromium')
    if not program:
        sys.exit(NO_BROWSER)
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as place:
        os.chdir(place)
        write_page(infraconvert)
        browser = Browser(program, place + '/profile')
        try:
            browser.open(place + '/page.html')
            use_page(browser)
        finally:
            browser.end()


main(os.path.abspath(sys.argv[1]))
