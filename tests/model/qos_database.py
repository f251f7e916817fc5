"""The QoS converter's engine, its map database and the builders that fill it."""

from engine import (AREA, FAILED, OK, POINTER, Engine, UnfitText, operation, scan_words)

TYPE_NONE = 0
TYPE_QOS = 1
TYPE_QUEUING = 2
TYPE_UF = 4

UNASSIGNED = 255


class ClassMap:
    """A class-map with its match lines."""

    def __init__(self, name):
        self.name = name
        self.matches = []
        self.qos_group = UNASSIGNED
        self.type = TYPE_QOS


class PolicyMap:
    """A policy-map with its classes."""

    def __init__(self, name):
        self.name = name
        self.classes = []
        self.type = TYPE_NONE
        self.sysqos = False


class Class:
    """A class of one policy-map with its actions."""

    def __init__(self, name, type_bits):
        self.name = name
        self.actions = []
        self.type = type_bits


class Action:
    """An action line, newline included."""

    def __init__(self, text):
        self.text = text
        self.type = TYPE_NONE


class Qos(Engine):
    """The engine of the QoS converter and its four lists."""

    fields = ("major", "minor", "patch", "product", "subversion")
    release_pattern = b"%d.%d(%d)%c%d"

    def __init__(self, world, switch):
        super().__init__(world, b"qoscnv", switch)
        self.db_init()

    def db_init(self):
        """Empty the four lists."""
        self.classmaps = []
        self.policymaps = []
        self.empty_classmaps = []
        self.empty_policymaps = []

    # ------------------------------------------------------------ engine differences

    def log_reading(self, name, path):
        """This converter names the directory."""
        self.log(name, b"Reading ASCII file %s...\n", path)

    def log_got_file(self, name, file_path):
        """This converter names the file it found."""
        self.log(name, b"got file %s\n", file_path)

    def log_writing_file(self, name, file_path):
        """This converter names the file it writes."""
        self.log(name, b"writing file %s\n", file_path)

    def print_ascii_file(self):
        """Every printed byte is a message of its own."""
        super().print_ascii_file()
        for byte in self.text_to_save():
            self.log(b"qoscnv_print_ascii_file", b"%c", byte)

    def log_pair(self, name):
        """Write the parsed pair; a product that was never set is a zero byte."""
        p = self.pair
        self.log(name, b"from_major = %d, from_minor = %d, from_patch = %d, "
                 b"from_product = %c from_subversion = %d to_major = %d, to_minor = %d, "
                 b"to_patch = %d to_product = %c to_subversion = %d\n",
                 p["from_major"], p["from_minor"], p["from_patch"], p["from_product"],
                 p["from_subversion"], p["to_major"], p["to_minor"], p["to_patch"],
                 p["to_product"], p["to_subversion"])

    def file_start_qossection(self):
        """Give the newline ahead of the first class-map line, or else of the
        first policy-map line, or None."""
        hit = self.find(b"\nclass-map", 0)
        if hit is None:
            hit = self.find(b"\npolicy-map", 0)
        if hit is None:
            return None
        self.log(b"qoscnv_file_start_qossection",
                 b"Found beginning of qos-related section at byte %d\n", hit)
        return hit

    # ------------------------------------------------------------ what passes share

    def trace_allocation(self, name):
        """Trace one record or work buffer."""
        self.log(name, b"Allocating block of memory at %s\n", POINTER)

    def trace_release(self, name):
        """Trace the release of one record or work buffer."""
        self.log(name, b"Freeing block of memory at %s\n", POINTER)

    def body_line(self, position):
        """Read a body line for a builder, which stores a newline behind it."""
        line = self.getline(position)
        if len(line) > AREA - 1:
            raise UnfitText(line)
        return line

    def attachment_line(self, position):
        """Copy an attachment line from its keyword on."""
        line = self.getline(position)
        if len(line) > AREA:
            raise UnfitText(line)
        return line

    def find_policymap(self, name):
        """Give the first policy-map record of a name, or None."""
        for policymap in self.policymaps:
            if policymap.name == name:
                return policymap
        return None


# ---------------------------------------------------------------- classification

def qoscnv_convert_action_to_pmap_type(qos, text):
    """Give the type of an action; the first keyword test that hits decides."""
    name = b"qoscnv_convert_action_to_pmap_type"
    if b"set qos-group" in text:
        qos.log(name, b"Action is of type qos\n")
        return TYPE_QOS
    for keyword in (b"pause", b"mtu", b"multicast-optimize", b"queue-limit", b"set cos"):
        if keyword in text:
            qos.log(name, b"Action is of type unified-fabric\n")
            return TYPE_UF
    for keyword in (b"bandwidth", b"priority"):
        if keyword in text:
            qos.log(name, b"Action %s is of type queuing\n", text)
            return TYPE_QUEUING
    qos.log(name, b"Unexpected action; ignoring\n")
    return TYPE_NONE


# ---------------------------------------------------------------- dumps

def print_types(qos, name, type_bits, indent):
    """Write the type lines of a record."""
    start = name + b"():" + b" " * indent
    if type_bits & TYPE_QOS:
        qos.write_log(start + b"Type: qos\n")
    if type_bits & TYPE_QUEUING:
        qos.write_log(start + b"Type: queuing\n")
    if type_bits & TYPE_UF:
        qos.write_log(start + b"Type: unified-fabric/network-qos\n")
    if type_bits == TYPE_NONE:
        qos.write_log(start + b"Type: none\n")


def qoscnv_db_print_policymaps(qos):
    """Dump the policy-maps."""
    name = b"qoscnv_db_print_policymaps"
    qos.write_log(name + b"(): Policy-maps:\n")
    for policymap in qos.policymaps:
        qos.write_log(name + b"():   Name: " + policymap.name + b"\n")
        print_types(qos, name, policymap.type, 3)
        for record in policymap.classes:
            qos.write_log(name + b"():     Name: " + record.name + b"\n")
            print_types(qos, name, record.type, 5)
            qos.write_log(name + b"():     Actions:\n")
            for action in record.actions:
                qos.write_log(name + b"():       " + action.text)
                print_types(qos, name, action.type, 7)


def qoscnv_db_print_classmaps(qos):
    """Dump the class-maps."""
    name = b"qoscnv_db_print_classmaps"
    qos.write_log(name + b"(): Class-maps:\n")
    for classmap in qos.classmaps:
        qos.write_log(name + b"():   Name: " + classmap.name + b"\n")
        if classmap.qos_group == UNASSIGNED:
            qos.write_log(name + b"():   Qos-group: invalid/unassigned\n")
        else:
            qos.write_log(name + b"():   Qos-group: %d\n" % classmap.qos_group)
        for match in classmap.matches:
            qos.write_log(name + b"():     " + match)


def qoscnv_db_print_empty_policymaps(qos):
    """Dump the names of policy-maps without a body."""
    name = b"qoscnv_db_print_empty_policymaps"
    qos.write_log(name + b"(): Empty policy-maps:\n")
    for empty in qos.empty_policymaps:
        qos.write_log(name + b"(): \t" + empty + b"\n")


def qoscnv_db_print_empty_classmaps(qos):
    """Dump the names of class-maps to keep."""
    name = b"qoscnv_db_print_empty_classmaps"
    qos.write_log(name + b"(): Empty class-maps:\n")
    for empty in qos.empty_classmaps:
        qos.write_log(name + b"(): \t" + empty + b"\n")


# ---------------------------------------------------------------- builders

@operation
def qoscnv_build_classmaps_db(qos):
    """Read the untyped class-maps."""
    name = b"qoscnv_build_classmaps_db"
    position = qos.file_start_qossection()
    if position is None:
        return OK
    while True:
        hit = qos.find(b"class-map", position)
        if hit is None:
            return OK
        qos.log(name, b"found class-map at byte %d\n", hit)
        words = qos.words(hit, b"class-map %s")
        if len(words) < 1:
            qos.log(name, b"Unexpected text: %s\n", qos.getline(hit)[:AREA])
            return FAILED
        qos.log(name, b"found class-map name %s\n", words[0])
        position = qos.nextline_or_end(hit)
        qos.trace_allocation(name)
        classmap = ClassMap(words[0])
        qos.classmaps.append(classmap)
        if qos.nextstanza(position):
            continue
        if classmap.name == b"class-fcoe":
            classmap.qos_group = 1
        if classmap.name == b"class-default":
            classmap.qos_group = 0
        while qos.in_body(position):
            line = qos.body_line(position)
            if line[:7] != b"  match":
                qos.log(name, b"Unexpected text: %s\n", line)
                return FAILED
            qos.log(name, b"\tfound match: %s\n", line)
            qos.trace_allocation(name)
            classmap.matches.append(line + b"\n")
            position = qos.nextline_or_end(position)
        if qos.at_end(position):
            return OK


@operation
def qoscnv_build_policymaps_db_upgrade(qos):
    """Read the untyped policy-maps; a class becomes one record per action type."""
    name = b"qoscnv_build_policymaps_db_upgrade"
    specials_seen = {b"class-ip-multicast": False, b"class-all-flood": False}
    position = qos.file_start_qossection()
    while position is not None:
        hit = qos.find(b"policy-map", position)
        if hit is None:
            break
        qos.log(name, b"found policy-map at byte %d\n", hit)
        words = qos.words(hit, b"policy-map %s")
        if len(words) < 1:
            qos.log(name, b"Unexpected text: %s\n", qos.getline(hit)[:AREA])
            return FAILED
        qos.log(name, b"found policy-map name %s\n", words[0])
        position = qos.nextline_or_end(hit)
        if qos.nextstanza(position):
            continue
        policymap = qos.find_policymap(words[0])
        if policymap is None:
            qos.trace_allocation(name)
            policymap = PolicyMap(words[0])
            qos.policymaps.append(policymap)

        while qos.in_body(position):
            line = qos.body_line(position)
            if line[:7] != b"  class":
                qos.log(name, b"Unexpected text: %s\n", line)
                return FAILED
            qos.log(name, b"\tfound class: %s\n", line)
            words = scan_words(line, 0, b"  class %s")
            if len(words) < 1:
                qos.log(name, b"unexpected class format; aborting\n")
                return FAILED
            class_name = words[0]
            if class_name in specials_seen:
                specials_seen[class_name] = True
            known = False
            for record in policymap.classes:
                if record.name == class_name:
                    known = True
            if not known:
                qos.trace_allocation(name)
                policymap.classes.append(Class(class_name, TYPE_NONE))
            position = qos.nextline_or_end(position)

            while qos.in_body(position):
                line = qos.body_line(position)
                if line == b"":
                    position = qos.nextline_or_end(position)
                    continue
                if len(scan_words(line, 0, b"  class %s")) == 1:
                    qos.log(name, b"hit next class\n")
                    break
                qos.log(name, b"\tfound action: %s\n", line)
                qos.trace_allocation(name)
                action = Action(line + b"\n")
                action.type = qoscnv_convert_action_to_pmap_type(qos, action.text)
                policymap.type |= action.type
                taker = None
                for record in policymap.classes:
                    if record.name == class_name and record.type in (TYPE_NONE, action.type):
                        taker = record
                        break
                if taker is None:
                    qos.trace_allocation(name)
                    taker = Class(class_name, action.type)
                    policymap.classes.append(taker)
                elif taker.type == TYPE_NONE:
                    taker.type = action.type
                taker.actions.append(action)
                position = qos.nextline_or_end(position)

    for special in (b"class-ip-multicast", b"class-all-flood"):
        if specials_seen[special]:
            qos.trace_allocation(name)
            qos.classmaps.append(ClassMap(special))
    qoscnv_db_print_classmaps(qos)
    return OK


@operation
def qoscnv_build_policymaps_db_downgrade(qos):
    """Read the typed policy-maps; a class is one record per name."""
    name = b"qoscnv_build_policymaps_db_downgrade"
    position = qos.file_start_qossection()
    while position is not None:
        hit = qos.find(b"\npolicy-map", position)
        if hit is None:
            break
        header = hit + 1
        qos.log(name, b"found policy-map at byte %d\n", header)
        words = qos.words(header, b"policy-map type %s %s")
        if len(words) < 2:
            qos.log(name, b"unexpected policy-map format; aborting\n")
            return FAILED
        qos.log(name, b"found policy-map name %s\n", words[1])
        line_start = qos.nextline_or_end(header)
        if qos.nextstanza(line_start):
            position = line_start - 1
            continue
        policymap = qos.find_policymap(words[1])
        if policymap is None:
            qos.trace_allocation(name)
            policymap = PolicyMap(words[1])
            qos.policymaps.append(policymap)

        while qos.in_body(line_start):
            line = qos.body_line(line_start)
            if line[:7] != b"  class":
                qos.log(name, b"Unexpected text: %s\n", line)
                return FAILED
            qos.log(name, b"\tfound class: %s\n", line)
            words = scan_words(line, 0, b"  class type %s %s")
            if len(words) == 2:
                class_name = words[1]
            else:
                qos.log(name, b"\ttrying to find class of type qos\n")
                words = scan_words(line, 0, b"  class %s")
                if len(words) < 1:
                    qos.log(name, b"unexpected class format; aborting\n")
                    return FAILED
                class_name = words[0]
            current = None
            for record in policymap.classes:
                if record.name == class_name:
                    current = record
                    break
            if current is None:
                qos.trace_allocation(name)
                current = Class(class_name, TYPE_NONE)
                policymap.classes.append(current)
            line_start = qos.nextline_or_end(line_start)

            while qos.in_body(line_start):
                line = qos.body_line(line_start)
                if line == b"":
                    line_start = qos.nextline_or_end(line_start)
                    continue
                if len(scan_words(line, 0, b"  class %s")) == 1:
                    qos.log(name, b"hit next class\n")
                    break
                qos.log(name, b"\tfound action: %s\n", line)
                qos.trace_allocation(name)
                action = Action(line + b"\n")
                current.actions.append(action)
                action.type = qoscnv_convert_action_to_pmap_type(qos, action.text)
                current.type |= action.type
                policymap.type |= action.type
                line_start = qos.nextline_or_end(line_start)
        position = line_start - 1
    qoscnv_db_print_policymaps(qos)
    return OK
