"""The five small converters: FC port security, NPIV, MAC address table,
VLAN-FCoE association and fabric extender.
"""

from engine import (FAILED, MARKER, OK, POINTER, Engine, byte_at, operation,
                    parse_release, saturated, shown, start_sequence)

K_2_1 = (4, 1, 3, 2, 1)
K_1_1 = (4, 1, 3, 1, 1)


def replace_all(engine, name, old, new, first_trace, second_trace):
    """Replace every occurrence of a text, going forward behind what was
    inserted."""
    if engine.buf is None:
        return OK
    position = 0
    while True:
        hit = engine.find(old, position)
        if hit is None:
            return OK
        engine.log(name, first_trace, hit)
        engine.delete_text(hit, len(old))
        if second_trace is not None:
            engine.log(name, second_trace, hit)
        engine.insert_text(hit, new)
        position = hit + len(new)


# ---------------------------------------------------------------- FC port security

class FcPortSec(Engine):
    """The engine of the FC port-security converter."""

    corrected_keeps_k = True
    pair_message = (b"from_major = %d, from_minor = %d, from_patch = %d, kesto = K%d(%d)"
                    b"to_major = %d, to_minor = %d, to_patch = %d, kesto = K%d(%d)\n")

    def __init__(self, world, switch):
        super().__init__(world, b"fcportsec", switch)


@operation
def fcportsec_remove_fc(engine):
    """Drop the prefix of every command word."""
    name = b"fcportsec_remove_fc"
    engine.log(name, b"Calling %s() ...\n", name)
    return replace_all(engine, name, b"fc-port-security", b"port-security",
                       b"found fc-port-security %d\n", b"found fc-port-security %d\n")


@operation
def fcportsec_add_fc(engine):
    """Prefix every command word, whatever stands before it."""
    name = b"fcportsec_add_fc"
    engine.log(name, b"Calling %s() ...\n", name)
    return replace_all(engine, name, b"port-security", b"fc-port-security",
                       b"found port-security %d\n", b"found fc-port-security %d\n")


@operation
def fcportsec_change_feature_to_enable(engine):
    """Turn feature lines back into enable lines."""
    name = b"fcportsec_change_feature_to_enable"
    engine.log(name, b"Calling %s() ...\n", name)
    return replace_all(engine, name, b"feature port-security", b"port-security enable",
                       b"found feature port-security %d\n", b"found port-security %d\n")


@operation
def fcportsec_change_enable_to_feature(engine):
    """Turn enable lines into feature lines."""
    name = b"fcportsec_change_enable_to_feature"
    engine.log(name, b"Calling %s() ...\n", name)
    return replace_all(engine, name, b"port-security enable", b"feature port-security",
                       b"found port-security enable %d\n", b"found port-security %d\n")


def fcportsec_convert_ascii_4_1_3_K_2_1_upgrade(engine):
    """Feature line first, so that it gets the prefix too."""
    name = b"fcportsec_convert_ascii_4_1_3_K_2_1_upgrade"
    engine.log(name, b"Calling %s() ...\n", name)
    status = fcportsec_change_enable_to_feature(engine)
    if status != OK:
        return status
    return fcportsec_add_fc(engine)


def fcportsec_convert_ascii_4_1_3_K_2_1_downgrade(engine, older_than_k_1_1):
    """Drop the prefix; the oldest targets also get the enable line back."""
    name = b"fcportsec_convert_ascii_4_1_3_K_2_1_downgrade"
    engine.log(name, b"Calling %s() ...\n", name)
    status = fcportsec_remove_fc(engine)
    if status != OK:
        return status
    if not older_than_k_1_1:
        return OK
    return fcportsec_change_feature_to_enable(engine)


def fcportsec_convert_ascii_4_1_3_K_2_1(engine):
    """Choose the step by all five numbers of both releases."""
    name = b"fcportsec_convert_ascii_4_1_3_K_2_1"
    engine.log(name, b"Calling %s() ...\n", name)
    status = OK
    source = engine.quintuple("from")
    target = engine.quintuple("to")
    if target >= K_2_1 and source < K_2_1:
        status = fcportsec_convert_ascii_4_1_3_K_2_1_upgrade(engine)
    if source >= K_2_1 and target < K_2_1:
        status = fcportsec_convert_ascii_4_1_3_K_2_1_downgrade(engine, target < K_1_1)
    return status


def fcportsec_infra_convert_startup(engine, path, pkg_name, to_version, from_version):
    """Start function of the FC port-security converter."""
    return start_sequence(engine, b"fcportsec_infra_convert_startup", b"fcportsec",
                          lambda e: e.quintuple("from") == e.quintuple("to"),
                          b"ascii convertion not requred\n",
                          fcportsec_convert_ascii_4_1_3_K_2_1,
                          path, pkg_name, to_version, from_version)


# ---------------------------------------------------------------- NPIV

class Npiv(Engine):
    """The engine of the NPIV converter."""

    corrected_keeps_k = True
    pair_message = FcPortSec.pair_message

    def __init__(self, world, switch):
        super().__init__(world, b"npiv", switch)


@operation
def npiv_change_enable_to_feature(engine):
    """Turn the old line into the new one, everywhere."""
    return replace_all(engine, b"npiv_change_enable_to_feature", b"npiv enable", b"feature npiv",
                       b"found npiv enable %d\n", b"found npiv %d\n")


@operation
def npiv_change_feature_to_enable(engine):
    """Turn the new line back into the old one, everywhere."""
    return replace_all(engine, b"npiv_change_feature_to_enable", b"feature npiv", b"npiv enable",
                       b"found feature npiv %d\n", None)


def npiv_convert_ascii_4_1_3_K_2_1_upgrade(engine):
    """The upgrade step."""
    engine.log(b"npiv_convert_ascii_4_1_3_K_2_1_upgrade", b"entering npiv upgrade function...\n")
    return npiv_change_enable_to_feature(engine)


def npiv_convert_ascii_4_1_3_K_2_1_downgrade(engine):
    """The downgrade step."""
    engine.log(b"npiv_convert_ascii_4_1_3_K_2_1_downgrade",
               b"entering npiv downgrade function...\n")
    return npiv_change_feature_to_enable(engine)


def npiv_convert_ascii_4_1_3_K_2_1(engine):
    """Choose the step; "older" looks at three numbers only, "newer" at five."""
    name = b"npiv_convert_ascii_4_1_3_K_2_1"
    engine.log(name, b"Calling %s() ...\n", name)
    status = OK
    if engine.quintuple("to") >= K_2_1 and engine.triple("from") < (4, 1, 3):
        status = npiv_convert_ascii_4_1_3_K_2_1_upgrade(engine)
    if engine.quintuple("from") >= K_2_1 and engine.triple("to") < (4, 1, 3):
        status = npiv_convert_ascii_4_1_3_K_2_1_downgrade(engine)
    return status


def npiv_infra_convert_startup(engine, path, pkg_name, to_version, from_version):
    """Start function of the NPIV converter."""
    return start_sequence(engine, b"npiv_infra_convert_startup", b"npiv",
                          lambda e: e.quintuple("from") == e.quintuple("to"),
                          b"ascii convertion not requred\n",
                          npiv_convert_ascii_4_1_3_K_2_1,
                          path, pkg_name, to_version, from_version)


# ---------------------------------------------------------------- MAC address table

class Fwm(Engine):
    """The engine of the MAC address-table converter."""

    def __init__(self, world, switch):
        super().__init__(world, b"fwmcnv", switch, logs_edits=True)

    def file_start_fwmsection(self):
        """Give the newline ahead of the first address-table line, or None."""
        hit = self.find(b"\nmac address-table", 0)
        if hit is not None:
            self.log(b"fwmcnv_file_start_fwmsection",
                     b"Found beginning of fwm-related section at byte %d\n", hit)
        return hit


@operation
def fwmcnv_build_macaddr_tbl_config_downgrade_to_le_4_1_3(engine):
    """Hyphenate the keyword of every line that begins with it."""
    name = b"fwmcnv_build_macaddr_tbl_config_downgrade_to_le_4_1_3"
    position = engine.file_start_fwmsection()
    if position is None:
        return OK
    while True:
        hit = engine.find(b"\nmac address-table", position)
        if hit is None:
            return OK
        line = hit + 1
        engine.log(name, b"found mac address table entry  at byte %d\n", line)
        engine.delete_text(line, 17)
        engine.insert_text(line, b"mac-address-table")
        position = line


def fwm_convert_ascii_4_2_1_downgrade(engine):
    """The downgrade step."""
    engine.log(b"fwm_convert_ascii_4_2_1_downgrade", b"entering ...\n")
    return fwmcnv_build_macaddr_tbl_config_downgrade_to_le_4_1_3(engine)


def fwm_convert_ascii_btw_diff_versions(engine):
    """Convert for targets of exactly 4.1(3) or with a major number below 4."""
    name = b"fwm_convert_ascii_btw_diff_versions"
    engine.log(name, b"Calling %s() ...\n", name)
    if not engine.pair["to_major"] < 4 and not engine.triple("to") == (4, 1, 3):
        return OK
    if engine.triple("from") >= (4, 2, 1):
        return fwm_convert_ascii_4_2_1_downgrade(engine)
    return OK


def fwm_infra_convert_startup(engine, path, pkg_name, to_version, from_version):
    """Start function of the MAC address-table converter."""
    return start_sequence(engine, b"fwm_infra_convert_startup", b"fwm",
                          lambda e: e.triple("from") == e.triple("to"),
                          b"from and to versions are exactly the same; no conversion required\n",
                          fwm_convert_ascii_btw_diff_versions,
                          path, pkg_name, to_version, from_version)


# ---------------------------------------------------------------- fabric extender

class Satmgr(Engine):
    """The engine of the fabric-extender converter."""

    def __init__(self, world, switch):
        super().__init__(world, b"satcnv", switch, logs_edits=True)

    def pattern_for(self, text):
        """Releases with a letter u have it behind patch and K-minor."""
        if b"u" in text:
            return b"%d.%d(%du)K%d(%du)"
        return b"%d.%d(%d)K%d(%d)"

    def line_from(self, position):
        """Give the bytes from a position up to the newline or a marker byte."""
        end = position
        while self.buf[end] != ord("\n") and self.buf[end] != MARKER:
            end += 1
        return bytes(self.buf[position:end])


@operation
def satcnv_swap_switchport_mode(engine):
    """Put the switchport line ahead of the fex line in every interface."""
    name = b"satcnv_swap_switchport_mode"
    engine.log(name, b"%s: entered\n", name)
    if engine.buf is None:
        return OK
    position = 0
    while True:
        hit = engine.find(b"interface ", position)
        if hit is None:
            return OK
        region = hit + 1
        region_end = engine.find(b"interface ", region)
        if region_end is None:
            region_end = engine.end_of_file()
        position = region
        fex = engine.find(b"fex associate", region)
        switchport = engine.find(b"switchport mode fex-fabric", region)
        if fex is None or switchport is None or fex >= region_end or switchport >= region_end:
            continue
        engine.log(name, b"found fex entry %d switchport mode %d bytes\n", fex, switchport)
        if not fex < switchport:
            continue
        fex_line = engine.line_from(fex)
        switchport_line = engine.line_from(switchport)
        if (len(fex_line) > 62 or len(switchport_line) > 62
                or 0 in fex_line or 0 in switchport_line):
            engine.log(name, b"line too long; interface left unchanged\n")
            continue
        engine.log(name, b"interchange fex associate and switchport mode\n")
        fex_line += b"\n"
        switchport_line += b"\n"
        engine.log(name, b"str :%s\nstr1 :%s\n", fex_line, switchport_line)
        engine.delete_text(fex, len(fex_line))
        engine.delete_text(switchport - len(fex_line), len(switchport_line))
        engine.insert_text(fex, switchport_line)
        engine.insert_text(fex + len(switchport_line) + 2, fex_line)


def satcnv_swithport_swap_needed(engine):
    """Tell whether the pair crosses 5.0(3) upwards."""
    return engine.triple("from") < (5, 0, 3) and engine.triple("to") >= (5, 0, 3)


def satmgr_convert_ascii_btw_diff_versions(engine):
    """Swap when the pair asks for it."""
    name = b"satmgr_convert_ascii_btw_diff_versions"
    engine.log(name, b"Calling %s() ...\n", name)
    if satcnv_swithport_swap_needed(engine):
        return satcnv_swap_switchport_mode(engine)
    return OK


def satmgr_infra_convert_startup(engine, path, pkg_name, to_version, from_version):
    """Start function of the fabric-extender converter."""
    return start_sequence(engine, b"satmgr_infra_convert_startup", b"satmgr",
                          lambda e: e.quintuple("from")[:4] == e.quintuple("to")[:4],
                          b"from and to versions are exactly the same; no conversion required\n",
                          satmgr_convert_ascii_btw_diff_versions,
                          path, pkg_name, to_version, from_version)


# ---------------------------------------------------------------- VLAN-FCoE association

class Assoc(Engine):
    """The engine of the association converter: no switch, no names in the log,
    a log of its own for every call, and a buffer that is released."""

    LINE_AREA = 2047

    def __init__(self, world):
        super().__init__(world, b"assoc", 1)

    def log(self, name, pattern, *values):
        """Write a bare message, without the name of its writer."""
        self.write_log(pattern % values)

    def say(self, pattern, *values):
        """Write a bare message."""
        self.write_log(pattern % values)

    def log_init(self):
        """Open the log afresh."""
        if self.stream_open:
            return
        self.stream_open = True
        self.log_lines = []
        self.say(b"file opened sucessfully\n")

    def log_cleanup(self):
        """Close the log."""
        self.stream_open = False

    def allocation_size(self, size):
        """A fixed headroom, independent of the file."""
        return size + 76000

    def log_file_size(self, name, size):
        """This converter tells the size of the file."""
        self.say(b"file size %d\n", size)

    def print_ascii_file(self):
        """Write the text to the log, marker included, up to a zero byte."""
        self.say(b"Printing ASCII file ...\n")
        self.write_log(bytes(self.buf).split(b"\0")[0])

    def after_save(self, name):
        """Release the buffer."""
        self.say(b"Freeing block of memory at %s\n", POINTER)
        self.buf = None

    def line_at(self, position):
        """Read the next line that is not empty.

        Gives the line, or None, and the numbers of newlines skipped and of bytes
        copied. The copy goes on across zero bytes of the text, is cut when its
        area is full, and includes the end marker of a text whose last line has
        no newline."""
        skipped = 0
        while byte_at(self.buf, position + skipped) == ord("\n"):
            skipped += 1
        start = position + skipped
        if byte_at(self.buf, start) == 0:
            return None, skipped, 0
        end = start
        while (end < len(self.buf) and self.buf[end] != ord("\n")
               and end - start < self.LINE_AREA):
            end += 1
        return bytes(self.buf[start:end]), skipped, end - start


def as_string(line):
    """Give a line as a string, which ends at a zero byte."""
    return line.split(b"\0")[0]


def assoc_vlan_fcoe_enabled(engine, vlan):
    """Look for the fcoe line of a vlan stanza and remove it."""
    line, skipped, copied = engine.line_at(vlan)
    if line is not None:
        engine.say(b"\n <%s> \n", as_string(line))
    position = vlan + skipped + copied
    while True:
        line, skipped, copied = engine.line_at(position)
        if line is None:
            return False
        if byte_at(line, 0) != ord(" ") and byte_at(line, 1) != ord(" "):
            return False
        text = as_string(line)
        engine.say(b"    %s \n", text)
        if text == b"  fcoe " or text == b"  fcoe":
            line_start = position + skipped
            if skipped > 0:
                engine.delete_text(line_start - 1, 1 + len(text))
            else:
                engine.delete_text(line_start, len(text))
            return True
        position += skipped + copied


def assoc_get_value(engine, text, position):
    """Read the decimal number at a position; give it and its count of digits."""
    rest = text[position:]
    if rest == b"":
        engine.say(b"  ERROR: Missing input for integer value\n")
        return 0, 0
    engine.say(b"->%s \n", rest)
    value = 0
    digits = 0
    while ord("0") <= byte_at(rest, digits) <= ord("9"):
        value = saturated(value * 10 + rest[digits] - ord("0"))
        digits += 1
    engine.say(b" Read value %d with bytes %d\n", value, digits)
    return value, digits


def assoc_get_vlan_mrange(engine, vlan):
    """Parse the list of a vlan line into ranges, or None without a line.

    Each range has its bounds and whether stanzas are written for it."""
    line, _, _ = engine.line_at(vlan)
    if line is None:
        engine.say(b"Failed to read the line \n")
        return None
    text = as_string(line)[5:]
    engine.say(b"\n Updating <%s> \n", text)
    ranges = []
    position = 0
    if byte_at(text, position) == ord(","):
        position += 1
        at_first = True
    else:
        at_first = False
    while True:
        if position >= len(text) and not at_first:
            return ranges
        at_first = False
        lower, digits = assoc_get_value(engine, text, position)
        position += digits
        follower = byte_at(text, position)
        if follower == ord(","):
            ranges.append((lower, lower, True))
            position += 1
        elif follower == ord("-"):
            position += 1
            upper, digits = assoc_get_value(engine, text, position)
            position += digits
            ranges.append((lower, upper, digits > 0))
            if digits == 0 or byte_at(text, position) != ord(","):
                return ranges
            position += 1
        else:
            ranges.append((lower, lower, True))
            return ranges
        if len(ranges) == 512:
            return ranges


def assoc_update_ascii_vlan(engine, vlan):
    """Write one stanza per VLAN ahead of the vlan line; give the bytes written."""
    ranges = assoc_get_vlan_mrange(engine, vlan)
    if ranges is None:
        engine.say(b"Failed to get the vrange !!! \n")
        return 0
    total = 0
    stanzas = b""
    position = vlan
    for i, (lower, upper, writes) in enumerate(ranges):
        engine.say(b"  Proc range %d  [%d-%d] \n", i, lower, upper)
        number = lower
        while writes and number <= upper:
            stanzas += b"vlan  %d\n  fcoe\n" % number
            if len(stanzas) > 1000:
                total += len(stanzas)
                engine.say(b"To write size [%d] total[%d]  buf \n%s", len(stanzas), total, stanzas)
                engine.insert_text(position, stanzas)
                position += len(stanzas)
                stanzas = b""
            number += 1
    if stanzas != b"":
        total += len(stanzas)
        engine.say(b"To write size [%d] total[%d]  buf \n%s", len(stanzas), total, stanzas)
        engine.insert_text(position, stanzas)
    return total


@operation
def assoc_convert_ascii(engine):
    """Examine every "vlan " of the text."""
    engine.say(b"Calling %s() ...\n", b"assoc_convert_ascii")
    position = 0
    while True:
        vlan = engine.find(b"vlan ", position)
        if vlan is None:
            return OK
        if assoc_vlan_fcoe_enabled(engine, vlan):
            engine.say(b"     -->fcoe enabled\n")
            vlan += assoc_update_ascii_vlan(engine, vlan)
        else:
            engine.say(b"     -->not fcoe enabled \n")
        position = vlan + 5


def assoc_conversion_needed(engine, from_version, to_version):
    """Tell whether the pair goes from 4.1 to a release with major number 5."""
    if from_version is None or to_version is None:
        return False
    engine.say(b"to_ver = %s, from_ver = %s\n", to_version, from_version)
    pair = {}
    for side in ("from_", "to_"):
        for field in engine.fields:
            pair[side + field] = 0
    parse_release(from_version, b"%d.%d(%d).K%d(%d)", engine.fields, pair, "from_")
    parse_release(to_version, b"%d.%d(%d).K%d(%d)", engine.fields, pair, "to_")
    engine.say(b"from_major = %d, from_minor = %d, to_major = %d, to_minor = %d\n",
               pair["from_major"], pair["from_minor"], pair["to_major"], pair["to_minor"])
    return pair["from_major"] == 4 and pair["from_minor"] == 1 and pair["to_major"] == 5


def assoc_infra_convert_startup(engine, path, pkg_name, to_version, from_version):
    """Start function of the association converter."""
    engine.log_init()
    engine.say(b"assoc_infra_convert_startup:;  convert_startup invoked\n")
    engine.say(b"pkg_name: %s\npath: %s\n", shown(pkg_name), shown(path))
    if from_version is None or to_version is None:
        engine.say(b"release missing\n")
        engine.log_cleanup()
        return FAILED
    if not assoc_conversion_needed(engine, from_version, to_version):
        engine.say(b"ascii convertion not requred\n")
        engine.log_cleanup()
        return OK
    status = engine.read_ascii_file(path)
    if status == OK:
        status = assoc_convert_ascii(engine)
        if status == OK:
            status = engine.write_ascii_file(path)
            if status == OK:
                engine.say(b"Exit ascii convertion \n")
    engine.log_cleanup()
    return status
