"""The text engine of the model: one editable text per converter, and everything
a converter needs to walk it, edit it, log and read release strings.

The model is the yardstick for the library, so it is slow and obvious on purpose:
every step is a search or an edit on one bytearray.
"""

FAILED = 0xFFFFFFFF     # a failed status, all bits set
OK = 0
POINTER = b"<ptr>"      # stands for an address in a message
MARKER = 0xFF           # the byte that ends the text
AREA = 199              # characters that fit a 200-byte area
WHITE = b" \t\n\v\f\r"


class RefusedInsertion(Exception):
    """An insertion was refused; the operation at hand ends with a failure."""


class UnfitText(Exception):
    """A text does not fit its 200-byte area; the operation at hand fails."""

    def __init__(self, text):
        super().__init__(text)
        self.text = text


def as_bytes(text):
    """Give a text argument as bytes; None stays None."""
    if text is None or isinstance(text, bytes):
        return text
    return text.encode("utf-8", "surrogateescape")


def shown(text):
    """Give a text as a message shows it: a missing one as "(null)"."""
    return b"(null)" if text is None else text


def composed(pattern, *values):
    """Compose a text in a 200-byte area; one that does not fit is refused."""
    text = pattern % values
    if len(text) > AREA:
        raise UnfitText(text)
    return text


# ---------------------------------------------------------------- scanning

def byte_at(text, position):
    """Give the byte at a position; behind the stored bytes all is zero."""
    return text[position] if 0 <= position < len(text) else 0


def skip_white(text, position):
    """Give the first position at or after this one that is not white space."""
    while byte_at(text, position) in WHITE and byte_at(text, position) != 0:
        position += 1
    return position


def read_number(text, position):
    """Read an optional sign and decimal digits behind white space.

    Gives the number, unlimited, or None, and the position behind it."""
    position = skip_white(text, position)
    sign = 1
    if byte_at(text, position) in b"+-" and byte_at(text, position) != 0:
        if byte_at(text, position) == ord("-"):
            sign = -1
        position += 1
    digits = b""
    while ord("0") <= byte_at(text, position) <= ord("9"):
        digits += bytes([byte_at(text, position)])
        position += 1
    if digits == b"":
        return None, position
    number = 0
    for digit in digits:
        number = number * 10 + digit - ord("0")
        if number > 2 ** 70:        # far beyond every limit that callers cut at
            number = 2 ** 70
    return sign * number, position


def scan_words(text, position, pattern):
    """Read words as formatted scanning does and give the list of those read.

    A blank in the pattern skips any white space, "%s" reads one word, every
    other character must match exactly. A word ends at white space or at a zero
    byte. No word begins at a marker byte. A word that does not fit its area is
    refused."""
    words = []
    i = 0
    while i < len(pattern):
        if pattern[i:i + 2] == b"%s":
            position = skip_white(text, position)
            first = byte_at(text, position)
            if first == 0 or first == MARKER:
                return words
            end = position
            while byte_at(text, end) != 0 and byte_at(text, end) not in WHITE:
                end += 1
            word = bytes(text[position:end])
            if len(word) > AREA:
                raise UnfitText(word)
            words.append(word)
            position = end
            i += 2
        elif pattern[i] in WHITE:
            position = skip_white(text, position)
            i += 1
        else:
            if byte_at(text, position) != pattern[i]:
                return words
            position += 1
            i += 1
    return words


def saturated(number):
    """Bring a number into the range of a signed 32-bit integer."""
    return max(-2 ** 31, min(2 ** 31 - 1, number))


def release_number(number):
    """Give a release number as the C library stores it: read with 64 bits, the
    low 32 of them kept."""
    number = max(-2 ** 63, min(2 ** 63 - 1, number))
    number &= 0xFFFFFFFF
    return number - 2 ** 32 if number >= 2 ** 31 else number


def parse_release(text, pattern, fields, pair, side):
    """Read a release string into one side of a version pair.

    Fields are assigned from the left; the first character that does not fit
    ends the reading, and the fields behind it keep what they held. Gives the
    number of fields assigned."""
    names = list(fields)
    position = 0
    i = 0
    while i < len(pattern):
        if pattern[i:i + 2] == b"%d":
            number, position = read_number(text, position)
            if number is None:
                break
            pair[side + names.pop(0)] = release_number(number)
            i += 2
        elif pattern[i:i + 2] == b"%c":
            if position >= len(text):
                break
            pair[side + names.pop(0)] = text[position]
            position += 1
            i += 2
        else:
            if byte_at(text, position) != pattern[i]:
                break
            position += 1
            i += 1
    return len(fields) - len(names)


# ---------------------------------------------------------------- the engine

class World:
    """What all converters of one process share: the files, the standard output
    and the platform's services."""

    def __init__(self, syserr2str=None, release_file_text=None, environment=None):
        self.files = {}
        self.stdout = bytearray()
        self.syserr2str = syserr2str or (lambda status: "syserr 0x%x" % status)
        self.release_file_text = release_file_text or (lambda path: b"")
        self.environment = environment or {}

    def status_text(self, status):
        """Give the platform's text for a status, as bytes."""
        return as_bytes(self.syserr2str(status))


class Engine:
    """One converter's instance: its text, its log, its release pair."""

    fields = ("major", "minor", "patch", "kesto_major", "kesto_minor")

    def __init__(self, world, prefix, switch, logs_edits=False):
        self.world = world
        self.prefix = prefix
        self.switch = switch
        self.logs_edits = logs_edits
        self.stream_open = False
        self.log_lines = []
        self.buf = None             # the text and its end marker
        self.filebuf_size = 0
        self.not_convertible = False
        self.pair = {}
        for side in ("from_", "to_"):
            for field in self.fields:
                self.pair[side + field] = 0

    # ------------------------------------------------------------ log

    def own(self, name):
        """Give the full name of an engine operation of this instance."""
        return self.prefix + b"_" + name

    def write_log(self, line):
        """Write one finished line, when the log is on and open."""
        if self.switch == 1 and self.stream_open:
            self.log_lines.append(line)

    def log(self, name, pattern, *values):
        """Write a message behind the name of the operation that writes it."""
        self.write_log(name + b"(): " + pattern % values)

    def log_init(self):
        """Open the log, once per process, when the switch is on."""
        if self.switch != 1:
            return
        if self.stream_open:
            self.log(self.own(b"log_init"), b"file already opened\n")
            return
        self.stream_open = True
        self.log_lines = []
        self.log(self.own(b"log_init"), b"file opened sucessfully\n")

    def log_cleanup(self):
        """The stream stays open for the rest of the process."""

    # ------------------------------------------------------------ load and save

    def path_to_asciicfg(self, path):
        """Build the path of the configuration file; it is cut at 199 bytes."""
        if path is None:
            self.log(self.own(b"path_to_asciicfg"),
                     b"failed to expand path into ASCII configuration location: %s\n",
                     b"Invalid argument")
            return None
        return (path + b"/ascii/system.cfg")[:AREA]

    def allocation_size(self, size):
        """Five times the file: rewrites grow a text to almost that much."""
        return 5 * size

    def log_reading(self, name, path):
        """Write the first message of a load."""
        self.log(name, b"Reading ASCII file ...\n")

    def log_got_file(self, name, file_path):
        """Only one converter says here which file it found."""

    def log_file_size(self, name, size):
        """Only one converter says here how long the file is."""

    def log_writing_file(self, name, file_path):
        """Only one converter says here which file it writes."""

    def read_ascii_file(self, path):
        """Load the configuration file into a new buffer."""
        name = self.own(b"read_ascii_file")
        self.log_reading(name, path)
        file_path = self.path_to_asciicfg(path)
        if file_path is None:
            self.log(name, b"failed to write out uncompress command: %s\n", b"Invalid argument")
            return FAILED
        if file_path not in self.world.files:
            self.log(name, b"failed to get file size for %s: %s\n", file_path,
                     b"No such file or directory")
            return FAILED
        self.log_got_file(name, file_path)
        content = self.world.files[file_path]
        if len(content) == 0:
            self.log(name, b"file size for %s unexpectedly %d\n", file_path, 0)
            return FAILED
        self.log_file_size(name, len(content))
        self.filebuf_size = self.allocation_size(len(content))
        self.log(name, b"Allocating block of memory at %s\n", POINTER)
        self.buf = bytearray(content) + bytes([MARKER])
        self.not_convertible = False
        return OK

    def text_to_save(self):
        """Give the text up to the first marker byte, which may lie inside it."""
        return bytes(self.buf[:self.buf.index(MARKER)])

    def write_ascii_file(self, path):
        """Save the text over the configuration file."""
        name = self.own(b"write_ascii_file")
        self.log(name, b"Writing ASCII file to %s ...\n", shown(path))
        file_path = self.path_to_asciicfg(path)
        if file_path is None:
            return FAILED
        self.log_writing_file(name, file_path)
        self.world.files[file_path] = self.text_to_save()
        self.log(name, b"Wrote ASCII file succesfully!\n")
        self.print_ascii_file()
        self.after_save(name)
        return OK

    def after_save(self, name):
        """The buffer is kept."""

    def print_ascii_file(self):
        """Print the saved text on standard output."""
        self.log(self.own(b"print_ascii_file"), b"Printing ASCII file ...\n")
        self.world.stdout += self.text_to_save()

    # ------------------------------------------------------------ positions

    def end_of_file(self):
        """Give the position of the end marker."""
        return len(self.buf) - 1

    def end_of_text(self, position):
        """Give the end of the text as seen from a position: the marker, or a
        zero byte that stands before it."""
        zero = self.buf.find(0, position)
        if zero < 0 or zero > self.end_of_file():
            return self.end_of_file()
        return zero

    def at_end(self, position):
        """Tell whether a position is the end of the text."""
        return position >= self.end_of_file() or self.buf[position] == 0

    def find(self, needle, position):
        """Find a text at or after a position, up to the first zero byte."""
        if position is None or position > self.end_of_file():
            return None
        zero = self.buf.find(0, position)
        if zero < 0:
            zero = len(self.buf)
        hit = self.buf.find(needle, position, zero)
        return None if hit < 0 else hit

    def nextline(self, position):
        """Give the start of the next line, or None."""
        newline = self.find(b"\n", position)
        return None if newline is None else newline + 1

    def nextline_or_end(self, position):
        """Give the start of the next line, or the end of the text."""
        following = self.nextline(position)
        return self.end_of_text(position) if following is None else following

    def nextstanza(self, position):
        """Tell whether the line at a position begins a stanza."""
        first = byte_at(self.buf, position)
        return ord("A") <= first <= ord("Z") or ord("a") <= first <= ord("z")

    def goto_nextstanza(self, position):
        """Give the first stanza start behind the line at hand, or None."""
        while True:
            position = self.nextline(position)
            if position is None:
                return None
            if self.nextstanza(position):
                return position

    def nextstanza_or_end(self, position):
        """Give the first stanza start behind the line at hand, or the end of
        the text."""
        following = self.goto_nextstanza(position)
        return self.end_of_text(position) if following is None else following

    def in_body(self, position):
        """Tell whether the line at a position belongs to the stanza at hand."""
        return not self.at_end(position) and not self.nextstanza(position)

    def skip_empty_lines(self, position):
        """Give the first line at or after this one that is not empty."""
        while byte_at(self.buf, position) == ord("\n"):
            position += 1
        return position

    def prevline(self, position):
        """Give the start of the line that holds a position."""
        while position > 0:
            position -= 1
            if byte_at(self.buf, position) == ord("\n"):
                return position + 1
        return 0

    def getline(self, position):
        """Copy the line at a position. The copy is a string, so it ends at a
        zero byte; it runs over the end marker."""
        newline = self.buf.find(b"\n", position)
        if newline < 0:
            newline = len(self.buf)
        line = bytes(self.buf[position:newline])
        return line.split(b"\0")[0]

    def words(self, position, pattern):
        """Read words from the text at a position."""
        return scan_words(self.buf, position, pattern)

    # ------------------------------------------------------------ edits

    def delete_text(self, position, size):
        """Delete bytes; the deletion is cut at the start and at the marker."""
        size %= 2 ** 32
        first = max(position, 0)
        last = min(position + size, self.end_of_file())
        if last > first:
            del self.buf[first:last]
        if self.logs_edits:
            self.log(self.own(b"delete_text"), b"deleting text of length %d\n", size)

    def insert_text(self, position, text):
        """Insert bytes, or refuse them when they would damage the text."""
        if (position < 0 or position > self.end_of_file()
                or self.end_of_file() + len(text) > self.filebuf_size - 2
                or MARKER in text):
            self.log(self.own(b"insert_text"), b"refusing to insert text of length %d\n", len(text))
            self.not_convertible = True
            raise RefusedInsertion()
        self.buf[position:position] = text
        if self.logs_edits:
            self.log(self.own(b"insert_text"), b"inserting text of length %d\n", len(text))

    def remove_regexp(self, text, before, after):
        """Remove every occurrence of a text with some bytes around it, in
        passes, until a whole pass finds nothing."""
        self.log(self.own(b"remove_regexp"), b"removing substring \"%s\" ...\n", text)
        if self.buf is None or text == b"":
            return OK
        size = (len(text) + before + after) % 2 ** 32
        found = True
        while found:
            found = False
            position = 0
            while True:
                hit = self.find(text, position)
                if hit is None:
                    break
                found = True
                length = len(self.buf)
                self.delete_text(hit - before, size)
                if len(self.buf) == length:
                    return OK
                position = hit
                if position > self.end_of_file():
                    break
        return OK

    # ------------------------------------------------------------ releases

    release_pattern = b"%d.%d(%d)K%d(%d)"
    corrected_keeps_k = False

    def pattern_for(self, text):
        """Give the format that a release string is read with."""
        return self.release_pattern

    def get_corrected_pkg_ver(self, variable):
        """Give the release of the platform's release file, in short form."""
        path = self.world.environment.get(variable)
        text = b"" if path is None else as_bytes(self.world.release_file_text(path))
        short = dict.fromkeys(("_major", "_minor", "_patch", "_kesto_major", "_kesto_minor"), 0)
        read = parse_release(text, b"%d.%d(%d", ("major", "minor", "patch"), short, "_")
        result = b"%d.%d(%d)" % (short["_major"], short["_minor"], short["_patch"])
        if self.corrected_keeps_k:
            close = text.find(b")", text.find(b"("))
            if read == 3 and close >= 0:
                parse_release(text[close:], b")K%d(%d)", ("kesto_major", "kesto_minor"),
                              short, "_")
            result += b"K%d(%d)" % (short["_kesto_major"], short["_kesto_minor"])
        return result

    def log_pair(self, name):
        """Write the parsed pair."""
        p = self.pair
        self.log(name, self.pair_message,
                 p["from_major"], p["from_minor"], p["from_patch"],
                 p["from_kesto_major"], p["from_kesto_minor"],
                 p["to_major"], p["to_minor"], p["to_patch"],
                 p["to_kesto_major"], p["to_kesto_minor"])

    pair_message = (b"from_major = %d, from_minor = %d, from_patch = %d, kesto = K%d(%d) "
                    b"to_major = %d, to_minor = %d, to_patch = %d, kesto = K%d(%d)\n")

    def read_versions(self, from_version, to_version):
        """Parse both releases; tell whether their texts differ."""
        name = self.own(b"read_versions")
        if to_version is not None:
            to_text = to_version[:511]
        else:
            to_text = self.get_corrected_pkg_ver("SYSMGR_TO_SRG_PATH")[:511]
        if from_version is not None:
            from_text = from_version[:511]
        else:
            from_text = self.get_corrected_pkg_ver("SYSMGR_FROM_SRG_PATH")[:511]
        self.log(name, b"to_ver = %s, from_ver = %s\n", to_text, from_text)
        parse_release(from_text, self.pattern_for(from_text), self.fields, self.pair, "from_")
        parse_release(to_text, self.pattern_for(to_text), self.fields, self.pair, "to_")
        self.log_pair(name)
        return from_text != to_text

    def triple(self, side):
        """Give major, minor and patch of one side."""
        p = self.pair
        return (p[side + "_major"], p[side + "_minor"], p[side + "_patch"])

    def quintuple(self, side):
        """Give all five numbers of one side."""
        p = self.pair
        return self.triple(side) + (p[side + "_kesto_major"], p[side + "_kesto_minor"])


def operation(function):
    """Make a function an operation that ends with a failure when an insertion
    is refused or a text does not fit; the latter is logged in its name."""
    name = function.__name__.encode()

    def run(engine, *values):
        try:
            return function(engine, *values)
        except UnfitText as unfit:
            engine.log(name, b"Unexpected text: %s\n", unfit.text[:AREA])
            return FAILED
        except RefusedInsertion:
            return FAILED

    run.__name__ = function.__name__
    run.__doc__ = function.__doc__
    return run


def start_sequence(engine, name, service, same, same_message, routing, path, pkg_name,
                   to_version, from_version):
    """Run the start sequence that five converters share."""
    engine.log_init()
    engine.log(name, b"%s convert_startup invoked\n", service)
    engine.log(name, b"pkg_name: %s\npath: %s\n", shown(pkg_name), shown(path))
    if not engine.read_versions(from_version, to_version):
        engine.log_cleanup()
        return OK
    if same(engine):
        engine.log(name, same_message)
        return OK
    status = engine.read_ascii_file(path)
    if status != OK:
        engine.log_cleanup()
        return status
    status = routing(engine)
    engine.log(name, b"Called %s(): returned 0x%x\n", routing.__name__.encode(), status)
    if status == OK and not engine.not_convertible:
        status = engine.write_ascii_file(path)
    engine.log_cleanup()
    return status
