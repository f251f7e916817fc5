"""Random configurations and release pairs for comparing the library with the model.

`case(seed)` gives (service, config, from, to, switch) and depends on nothing but
the seed. The texts aim at the places where converters differ: mixed and split
classes, the special classes, maps without a body, texts around the sizes of the
areas, odd layouts and plain damage. About half of them convert.
"""

import random

SPECIALS = [b"class-default", b"class-fcoe", b"class-ip-multicast", b"class-all-flood"]

QOS_UPGRADE = [("4.0(1)", "4.1(3)"), ("4.0(1)", "4.1(3)"), ("4.0(1)", "4.2(1)"),
               ("4.1(2)", "5.0(2)"), ("3.9(9)", "4.1(3)"), ("4.0(1)", "5.0(3)U1(1)"),
               ("4.0(1a)", "4.3(1)")]
QOS_MTU = [("4.1(3)", "4.2(1)"), ("4.1(3)", "5.0(2)"), ("4.1(3)", "5.0(3)U2(1)"),
           ("4.1(3)", "4.3(1)"), ("4.1(3)", "5.0(1)")]
QOS_DOWN_4_1_3 = [("4.2(1)", "4.1(3)"), ("5.0(2)", "4.1(3)"), ("5.0(3)U2(1)", "4.1(3)"),
                  ("5.0(1)", "4.1(3)"), ("6.0(1)", "4.1(3)")]
QOS_DOWN_OLD = [("5.0(2)", "4.0(1)"), ("4.2(1)", "4.0(1)"), ("4.2(1)", "4.1(2)"),
                ("5.0(3)U2(1)", "3.1(1)")]
QOS_SUB = [("5.0(3)U2(1)", "5.0(3)U1(1)"), ("5.0(3)U2(9)", "5.0(3)U1(x)")]
ODD_PAIRS = [("4.1(3)", "4.0(1)"), ("4.0(1)", "4.0(2)"), ("4.2(1)", "5.0(2)"),
             ("4.0(1)", "4.1(4)"), ("5.0(2)", "4.2(1)"), ("4.1(3)", "4.1(3)"),
             ("5.0(3)U1(1)", "5.0(3)U2(1)"), ("5.0(3)N2(1)", "5.0(3)N1(1)"), ("", "4.1(3)"),
             ("4.0(1)", ""), ("4.0", "4.1(3)"), (" 4.0(1)", "4.1(3)"), ("4.0( 1)", "4.1(3)x"),
             ("-1.0(1)", "4.1(3)"), ("4294967300.0(1)", "4.1(3)"),
             ("99999999999999999999.0(1)", "4.1(3)"), ("4.+0(1)", "4.1(3)"), ("release", "4.1(3)"),
             ("4.1(3)", "release"), ("4.1(3", "5.0(2)"), ("4.1(3)K1(1)", "4.1(3)K2(1)"),
             ("4.0(1)" + "9" * 510, "4.1(3)")]
K_PAIRS = [("4.1(2)", "4.1(3)K2(1)"), ("4.0(1)", "5.0(2)"), ("4.1(3)K1(1)", "4.1(3)K2(1)"),
           ("4.1(2)", "4.1(3)K1(1)"), ("4.2(1)", "4.1(2)"), ("4.1(3)K2(1)", "4.1(3)K1(1)"),
           ("4.1(3)K3(1)", "4.0(1)"), ("4.1(3)K1(1)", "4.2(1)"), ("4.2(1)", "4.1(3)K1(1)"),
           ("4.1(3)K2(1)", "4.1(2)"), ("4.1(3)K2(1)", "4.1(3)K3(1)"), ("4.1(3)K1(1)", "4.1(2)"),
           ("4.2(1)", "4.1(3)"), ("4.1(3)", "4.1(3)K0(0)"), ("4.1(3)", "4.2(1)")]
FWM_PAIRS = [("4.2(1)", "4.1(3)"), ("4.2(1)", "4.1(3)"), ("5.0(2)", "3.1(1)"),
             ("4.2(1)", "4.1(2)"), ("4.1(3)", "4.2(1)"), ("4.2(1)K1(1)", "4.2(1)K2(1)"),
             ("4.2(0)", "4.1(3)"), ("5.0(0)", "4.1(3)K2(1)")]
ASSOC_PAIRS = [("4.1(3)", "5.0(2)"), ("4.1(3)", "5.0(2)"), ("4.1(3).K2(1)", "5.1(1)"),
               ("4.1", "5"), ("4.2(1)", "5.0(2)"), ("4.1(3)", "4.2(1)"), ("4.1(1)", "6.0(1)")]
SAT_PAIRS = [("4.2(1)", "5.0(3)"), ("5.0(2)", "5.0(3)"), ("5.0(2u)K1(1u)", "5.0(3u)K1(2u)"),
             ("5.0(3)", "5.1(1)"), ("5.0(3)", "4.2(1)"), ("5.0(3)K1(1)", "5.0(3)K2(1)"),
             ("5.0(3)K1(1)", "5.0(3)K1(2)"), ("4.9(9)", "6.0(0)"), ("5.-1(9)", "5.0(3)"),
             ("5.0(2u)", "5.0(3)")]


def chance(rng, percent):
    """Throw a dice."""
    return rng.random() * 100 < percent


# ---------------------------------------------------------------- shared pieces

def name_pool(rng, letter):
    """Give the names that one text uses; now and then one near the area's size."""
    pool = [b"%s%d" % (letter, i) for i in range(1, rng.choice([2, 3, 4, 5, 6, 7]))]
    if chance(rng, 3):
        pool = [b"%s%d" % (letter, i) for i in range(1, 30)]
    if chance(rng, 8):
        pool.append(letter + b"x" * rng.choice([100, 160, 165, 170, 172, 174, 176, 178, 180, 183,
                                                185, 186, 187, 188, 190, 197, 198, 199, 220]))
    if chance(rng, 3):
        pool.append(rng.choice([b"class", b"type", b"policy-map", b"class-map", b"mtu", b"input",
                                b"qos", b"match-any", b"interface", b"a\xffb", b"%s", b"1"]))
    return pool


def filler(rng):
    """Give a stanza that no converter should look at."""
    choices = [
        [b"hostname switch%d" % rng.randrange(9)],
        [b"!"],
        [b"vlan %d" % rng.randrange(1, 99), b"  name v"],
        [b"snmp-server user admin"],
        [b"ip access-list acl1", b"  10 permit ip any any"],
        [b"spanning-tree mode rapid-pvst"],
        [b""],
        [b"feature lldp"],
    ]
    return rng.choice(choices)


def finish(rng, lines):
    """Join lines; now and then without the last newline."""
    text = b"\n".join(lines) + b"\n"
    if chance(rng, 7):
        text = text[:-1]
    return text


def mutate(rng, text):
    """Damage a text a little."""
    for _ in range(rng.choice([1, 1, 2, 3])):
        lines = text.split(b"\n")
        kind = rng.randrange(12)
        at = rng.randrange(len(lines))
        if kind == 0:
            del lines[at]
        elif kind == 1:
            lines.insert(at, lines[rng.randrange(len(lines))])
        elif kind == 2:
            other = rng.randrange(len(lines))
            lines[at], lines[other] = lines[other], lines[at]
        elif kind == 3:
            lines.insert(at, b"")
        elif kind == 4:
            lines[at] = b" " * rng.choice([0, 1, 2, 3, 4, 6]) + lines[at].strip()
        elif kind == 5 and at + 1 < len(lines):
            words = lines[at].split(b" ")
            cut = rng.randrange(len(words))
            lines[at:at + 1] = [b" ".join(words[:cut]), b" ".join(words[cut:])]
        elif kind == 6:
            lines[at] = lines[at] + rng.choice([b" ", b"\t", b"\r", b" x", b"  class c1",
                                                b" mtu 7"])
        elif kind == 7:
            lines[at] = lines[at] + b" " + b"y" * max(0, rng.choice([196, 197, 198, 199, 200, 210])
                                                      - len(lines[at]) - 1)
        elif kind == 8:
            lines = lines[:at]
        text = b"\n".join(lines)
        if kind >= 9 and len(text) > 0:
            at = rng.randrange(len(text))
            if kind == 9:
                text = text[:at] + bytes([rng.choice([0, 0xFF, 0x80, 9, 11, 32, 10])]) + text[at:]
            elif kind == 10:
                text = text[:at] + text[at + rng.choice([1, 1, 2, 5]):]
            else:
                word = rng.choice([b"policy-map", b"class-map ", b"\npolicy-map", b"  class ",
                                   b"service-policy ", b"\nsystem qos\n", b" type qos", b"mtu",
                                   b"\n  service-policy ", b"set qos-group 3\n", b"\ninterface e\n",
                                   b"vlan ", b"\n  fcoe", b"fex associate", b"port-security",
                                   b"npiv enable", b"\nmac address-table"])
                text = text[:at] + word + text[at:]
    return text


# ---------------------------------------------------------------- untyped QoS

UNTYPED_ACTIONS = {
    1: [b"set qos-group 2", b"set qos-group 5", b"set qos-group 12"],
    2: [b"bandwidth percent 30", b"priority", b"bandwidth 5", b"priority level 1"],
    4: [b"pause no-drop", b"mtu 9216", b"mtu 9000", b"mtu 1500", b"mtu 1539", b"mtu 1538",
        b"mtu 1537", b"mtu   2240 ", b"mtu", b"mtu x", b"mtu 99999999999", b"mtu -5", b"mtux 7",
        b"multicast-optimize", b"queue-limit 20480", b"set cos 3", b"priority mtu 2000"],
    0: [b"police 5", b"shape", b"!"],
}


def untyped_actions(rng, kinds):
    """Give the action lines of a class."""
    lines = []
    for _ in range(rng.choice([0, 1, 1, 2, 2, 3])):
        kind = rng.choice(kinds)
        indent = b"    " if not chance(rng, 3) else b" " * rng.choice([1, 2, 3, 5, 6])
        lines.append(indent + rng.choice(UNTYPED_ACTIONS[kind]))
        if chance(rng, 3):
            lines.append(b"")
    return lines


def untyped_qos(rng):
    """Give an untyped QoS configuration."""
    classes = name_pool(rng, b"c")
    policies = name_pool(rng, b"p")
    policies = policies[:rng.choice([1, 2, 3, len(policies)])]
    specials = [s for s in SPECIALS if chance(rng, 40)]
    stanzas = []
    for _ in range(rng.choice([0, 1, 1, 2, 4, 8])):
        stanzas.append(filler(rng))
    if not stanzas and not chance(rng, 10):
        stanzas.append([b"version 4.0(1)"])
    kinds_of = {}
    classmaps = list(classes)
    for special in SPECIALS[:2]:
        if special in specials and chance(rng, 60):
            classmaps.append(special)
    if chance(rng, 10):
        classmaps.append(rng.choice(SPECIALS[2:]))
    if chance(rng, 5):
        classmaps.append(rng.choice(classmaps))
    if chance(rng, 4):
        classmaps = classmaps[:-1]
    if chance(rng, 15):
        rng.shuffle(classmaps)
    for name in classmaps:
        stanza = [b"class-map " + name]
        for _ in range(rng.choice([0, 1, 1, 1, 2])):
            stanza.append(b"  match " + rng.choice([b"cos 3", b"dscp 5", b"access-group acl1",
                                                    b"ip rtp 1 2"]))
        stanzas.append(stanza)
        if chance(rng, 2):
            stanzas.append(filler(rng))
    for name in policies:
        kinds = rng.choice([[1], [2], [4], [1, 2], [2, 4], [1, 2, 4], [1, 2, 4, 0], [0]])
        kinds_of[name] = kinds
        stanza = [b"policy-map " + name]
        members = rng.sample(classes, min(len(classes), rng.choice([0, 1, 2, 3, 4]))) + specials
        if chance(rng, 60):
            rng.shuffle(members)
        if chance(rng, 3) and members:
            members.append(members[0])
        for member in members:
            stanza.append(b"  class " + member)
            stanza += untyped_actions(rng, kinds)
        stanzas.append(stanza)
    if chance(rng, 5):
        stanzas.append(list(rng.choice(stanzas)))
    if chance(rng, 4):
        stanzas.append([rng.choice([b"snmp policy-map px",
                                    b"hello policy-map type unified-fabric pu",
                                    b"x policy-map " + rng.choice(policies),
                                    b"snmp class-map cx", b"xpolicy-map\tpz"]),
                        b"  class " + rng.choice(classes), b"    bandwidth percent 3"])
    system = rng.choice(policies)
    tail = []
    if not chance(rng, 8):
        stanza = [b"system qos"]
        if not chance(rng, 8):
            stanza.append(b"  service-policy " + system)
        if chance(rng, 4):
            stanza.append(b"  service-policy " + rng.choice(policies))
        tail.append(stanza)
    for i in range(rng.choice([0, 1, 2, 3])):
        stanza = [b"interface Ethernet1/%d" % i]
        fit = [p for p in policies if 4 not in kinds_of[p]] or ([] if not chance(rng, 10)
                                                                else policies)
        for direction in (b"input", b"output"):
            if fit and chance(rng, 50):
                stanza.append(b"  service-policy " + direction + b" " + rng.choice(fit))
        if chance(rng, 3):
            stanza.append(b"  service-policy " + rng.choice([b"input nosuch", b"inputoutput p1",
                                                             b"inputoutpu p1", b"", b"p1",
                                                             b"input p1 p2"]))
        stanza.append(b"  no shutdown")
        tail.append(stanza)
    if chance(rng, 10):
        rng.shuffle(tail)
    stanzas += tail
    if chance(rng, 3):
        rng.shuffle(stanzas)
    if chance(rng, 4):
        stanzas.append([rng.choice([b"class-map last", b"policy-map last", b"policy-map",
                                    b"class-map", b"class-map class-default"])])
    elif not chance(rng, 15):
        stanzas.append([b"line vty"])
    return finish(rng, [line for stanza in stanzas for line in stanza])


# ---------------------------------------------------------------- typed QoS

def typed_class_maps(rng, type_word, names):
    """Give class-map stanzas of one type."""
    stanzas = []
    for name in names:
        match_any = b"match-any " if type_word == b"qos" and chance(rng, 40) else b""
        stanza = [b"class-map type " + type_word + b" " + match_any + name]
        if chance(rng, 2):
            stanza = [rng.choice([b"class-map type  " + type_word + b" match-any " + name,
                                  b"class-map\ttype " + type_word + b" match-any " + name,
                                  b"class-map " + name, b"class-map type qosx " + name,
                                  b"class-map type qos", b"class-map type",
                                  b"class-map type qos match-all " + name])]
        if chance(rng, 12):
            stanza.append(b"  description d of " + name)
        if type_word == b"qos":
            if chance(rng, 70):
                stanza.append(b"  match cos %d" % rng.randrange(8))
        elif chance(rng, 85):
            indent = b"  " if not chance(rng, 6) else rng.choice([b"", b" ", b"    "])
            stanza.append(indent + b"match qos-group %d" % rng.choice([2, 3, 4, 5, 12]))
        if chance(rng, 5):
            stanza.append(b"")
        if chance(rng, 3):
            stanza.append(b"  description late")
        stanzas.append(stanza)
    return stanzas


def typed_policy_map(rng, type_word, name, names):
    """Give a policy-map stanza of one type."""
    stanza = [b"policy-map type " + type_word + b" " + name]
    if chance(rng, 8):
        return stanza
    if chance(rng, 10):
        stanza.append(b"  description policy of " + name)
    actions = {b"qos": UNTYPED_ACTIONS[1], b"queuing": UNTYPED_ACTIONS[2],
               b"network-qos": UNTYPED_ACTIONS[4]}[type_word]
    for member in rng.sample(names, rng.randrange(len(names) + 1)):
        if type_word == b"qos" and chance(rng, 70):
            stanza.append(b"  class " + member)
        else:
            stanza.append(b"  class type " + type_word + b" " + member)
        for _ in range(rng.choice([0, 1, 1, 2])):
            stanza.append(b"    " + rng.choice(actions if not chance(rng, 4)
                                               else UNTYPED_ACTIONS[rng.choice([0, 1, 2, 4])]))
            if chance(rng, 3):
                stanza.append(b"")
    return stanza


def typed_qos(rng):
    """Give a typed QoS configuration."""
    names = name_pool(rng, b"c") + [s for s in SPECIALS if chance(rng, 40)]
    policies = name_pool(rng, b"p")
    policies = policies[:rng.choice([1, 2, 3, len(policies)])]
    stanzas = [filler(rng) for _ in range(rng.choice([1, 1, 2, 5]))]
    two_groups = chance(rng, 50)
    for type_word in (b"qos", b"queuing"):
        stanzas += typed_class_maps(rng, type_word, names[:rng.randrange(1, len(names) + 1)])
    network = typed_class_maps(rng, b"network-qos", names[:rng.randrange(1, len(names) + 1)])
    if not two_groups:
        stanzas += network
    for type_word in (b"qos", b"queuing"):
        for name in policies:
            if chance(rng, 75):
                stanzas.append(typed_policy_map(rng, type_word, name, names))
    if two_groups:
        stanzas += network
    for name in policies:
        if not chance(rng, 15):
            stanzas.append(typed_policy_map(rng, b"network-qos", name, names))
    if chance(rng, 4):
        stanzas.append([b"policy-map untyped", b"  class c1"])
    tail = []
    if not chance(rng, 10):
        stanza = [b"system qos"]
        name = rng.choice(policies)
        stanza.append(b"  service-policy type qos input " + name)
        if chance(rng, 80):
            stanza.append(b"  service-policy type queuing input " + name)
            stanza.append(b"  service-policy type queuing output " + name)
        if chance(rng, 80):
            stanza.append(b"  service-policy type network-qos " + name)
        tail.append(stanza)
    for i in range(rng.choice([0, 1, 2, 3])):
        stanza = [b"interface Ethernet1/%d" % i]
        name = rng.choice(policies)
        if chance(rng, 50):
            stanza.append(b"  service-policy type qos input " + name)
        for direction in (b"input", b"output"):
            for _ in range(rng.choice([0, 1, 1, 2])):
                attached = name if not chance(rng, 10) else rng.choice(policies)
                stanza.append(b"  service-policy type queuing " + direction + b" " + attached)
        if chance(rng, 3):
            stanza.append(b"  service-policy " + rng.choice([b"type queuing p1", b"sideways p1",
                                                             b"", b"averylongdirection p1"]))
        if chance(rng, 5):
            stanza.append(b"  description port")
        tail.append(stanza)
    if chance(rng, 6):
        rng.shuffle(tail)
    stanzas += tail
    if chance(rng, 2):
        stanzas.insert(rng.randrange(len(stanzas)), [b"system qos"])
    if chance(rng, 3):
        rng.shuffle(stanzas)
    if chance(rng, 4):
        stanzas.append([rng.choice([b"class-map type qos last", b"policy-map type qos last",
                                    b"policy-map type", b"class-map"])])
    elif not chance(rng, 15):
        stanzas.append([b"line vty"])
    return finish(rng, [line for stanza in stanzas for line in stanza])


def control_plane(rng):
    """Give a configuration with control-plane maps."""
    lines = []
    if chance(rng, 15):
        lines.append(rng.choice([b"class-map type control-plane match-any copp-x",
                                 b"  class copp-x", b"x  class copp-x"]))
    for _ in range(rng.choice([1, 2, 3, 5])):
        kind = rng.randrange(6)
        if kind == 0:
            lines += [b"class-map type control-plane match-any copp-a", b"  match protocol arp"]
        elif kind == 1:
            lines.append(b"policy-map type control-plane copp-policy")
            for _ in range(rng.randrange(4)):
                lines.append(b" " * rng.choice([2, 2, 2, 1, 4, 6]) + b"class copp-a")
                lines.append(b" " * rng.choice([4, 4, 4, 2, 8]) + b"police pps 100")
        elif kind == 2:
            lines += [b"control-plane", b"  service-policy input copp-policy"]
        elif kind == 3:
            lines.append(b"  class copp  class copp-b    police pps 3")
        else:
            lines += filler(rng)
    return finish(rng, lines)


UNTYPED_SOUP = [
    b"class-map c1", b"class-map c1", b"  match cos 3", b"policy-map p1", b"policy-map p1",
    b"  class c1", b"  class c1", b"    bandwidth 5", b"    mtu 9000", b"    set qos-group 2",
    b"system qos", b"  service-policy p1", b"interface e1", b"  service-policy input p1",
    b"class-map", b"policy-map", b"class-map\tc1", b"  class class-fcoe", b"  class",
    b"  class class-all-flood", b"x policy-map p2", b"", b"!", b"hostname h",
    b"    description   class", b" service-policy p1", b"  service-policy",
]

TYPED_SOUP = [
    b"class-map type qos match-any c1", b"class-map type  qos match-any c1", b"class-map type",
    b"class-map type qos c1", b"  match cos 3", b"policy-map type network-qos p1",
    b"policy-map type qos p1", b"policy-map type network-qos", b"  class type network-qos c1",
    b"  class c1", b"  class type", b"    mtu 9000", b"    mtu", b"    set qos-group 3",
    b"  match qos-group 2", b"match qos-group 2", b"  description d", b"  description",
    b"system qos", b"  service-policy type queuing input p1",
    b"  service-policy type network-qos p1", b" service-policy input p1",
    b"  service-policy type qos input p1", b"interface e1", b"", b"!", b"hostname h",
    b"policy-map type queuing type qos p1", b"  class type queuing type qos c1",
    b"    bandwidth type type qos qos 3",
]


def soup(rng, pool):
    """Give lines of a pool in no order at all, behind a line of their own."""
    lines = [b"hostname switch"]
    for _ in range(rng.choice([1, 2, 3, 4, 6, 9])):
        lines.append(rng.choice(pool))
    if chance(rng, 50):
        lines.append(b"line vty")
    return finish(rng, lines)


# ---------------------------------------------------------------- feature lines

def vlan_list(rng):
    """Give a VLAN list of some shape."""
    kind = rng.randrange(20)
    if kind == 0:
        return rng.choice([b",", b",,", b"1,,3", b"1-3,", b"-", b"0-", b"5-", b"5-,6", b"1-2-3",
                           b"1-2 3", b" 5", b"5 ,6", b"20-10", b"0", b",5", b",,5", b"", b"x",
                           b"1-3,x", b"1-3x,5", b"-5", b"1-3\t,4"])
    if kind == 1:
        return rng.choice([b"1-4294967295", b"4294967295", b"2147483640-2147483647", b"1-3967",
                           b"99999999999999", b"1-4094", b"1-5000", b"2147483640-99999999999"])
    if kind == 2:
        return b",".join(b"%d" % i for i in range(1, rng.choice([400, 450, 511, 512, 513, 520])))
    if kind == 3:
        return b",".join(b"%d-%d" % (i, i + 1) for i in range(1, rng.choice([200, 400])))
    parts = []
    for _ in range(rng.choice([1, 1, 2, 3, 10, 40])):
        low = rng.randrange(1, 4095)
        parts.append(b"%d" % low if chance(rng, 60) else b"%d-%d" % (low, low + rng.randrange(40)))
    return b",".join(parts)


def assoc_text(rng):
    """Give vlan stanzas with and without fcoe lines."""
    lines = []
    for _ in range(rng.choice([1, 1, 2, 3, 6])):
        kind = rng.randrange(12)
        if kind == 0:
            lines += filler(rng)
            continue
        if kind == 1:
            lines += [b"interface Ethernet1/1", b"  switchport access vlan %d" % rng.randrange(99)]
            if chance(rng, 50):
                lines.append(b"  fcoe")
            continue
        if kind == 2:
            lines.append(b"vlan " + b"1" * rng.choice([2030, 2041, 2042, 2043, 2050, 4090]))
            lines.append(rng.choice([b"  fcoe", b"  name x"]))
            continue
        if kind == 3 and chance(rng, 40):
            lines.append((b"vlan 5" + b" " * 2047)[:rng.choice([2046, 2047])] + b"  fcoe")
            continue
        lines.append(b"vlan " + vlan_list(rng))
        for _ in range(rng.choice([0, 0, 1, 2])):
            lines.append(rng.choice([b"  name servers", b"", b" x", b"\tx", b"   fcoe",
                                     b"  fcoe vsan 5", b" fcoe", b"x fcoe", b"!", b"",
                                     b"  n" + b"z" * rng.choice([2043, 2044, 2045, 2050])]))
        if chance(rng, 75):
            lines.append(rng.choice([b"  fcoe", b"  fcoe", b"  fcoe", b"  fcoe ", b"  fcoe\t"]))
        if chance(rng, 20):
            lines.append(b"  fcoe")
    return finish(rng, lines)


def fex_text(rng):
    """Give interfaces of fabric extenders in all layouts."""
    lines = []
    for i in range(rng.choice([1, 2, 3, 5])):
        lines.append(b"interface " + (b"Ethernet1/%d" % i if not chance(rng, 5) else b""))
        fex = b"fex associate %d" % rng.randrange(100, 200)
        switchport = b"switchport mode fex-fabric"
        if chance(rng, 12):
            fex += b" " + b"f" * max(0, rng.choice([60, 61, 62, 63, 64]) - len(fex) - 1)
        if chance(rng, 12):
            switchport += b" " + b"s" * max(0, rng.choice([60, 61, 62, 63, 64])
                                            - len(switchport) - 1)
        indent = b"  " if not chance(rng, 10) else b" " * rng.randrange(5)
        kind = rng.randrange(10)
        if kind < 5:
            body = [indent + fex, indent + switchport]
        elif kind == 5:
            body = [indent + switchport, indent + fex]
        elif kind == 6:
            body = [indent + fex, b"  description x", indent + switchport]
        elif kind == 7:
            body = [indent + fex + b" " + switchport]
        elif kind == 8:
            body = [rng.choice([indent + fex, indent + switchport])]
        else:
            body = [indent + fex, indent + switchport, indent + fex, indent + switchport]
        lines += body
        if chance(rng, 60):
            lines.append(b"  no shutdown")
        if chance(rng, 15):
            lines += filler(rng)
    return finish(rng, lines)


def word_text(rng, words):
    """Give lines that hold some words anywhere."""
    lines = []
    for _ in range(rng.choice([1, 2, 5, 12])):
        kind = rng.randrange(8)
        word = rng.choice(words)
        if kind < 3:
            lines.append(word + rng.choice([b"", b" x", b" enable"]))
        elif kind == 3:
            lines.append(b"  " + word)
        elif kind == 4:
            lines.append(b"no " + word + rng.choice(words))
        elif kind == 5:
            lines.append(b"x" + word + b"y " + rng.choice(words) + b" " + rng.choice(words))
        elif kind == 6:
            lines.append(word[:rng.randrange(len(word))])
        else:
            lines += filler(rng)
    return finish(rng, lines)


# ---------------------------------------------------------------- cases

def qos_case(rng):
    """Give a QoS configuration and a pair."""
    kind = rng.randrange(100)
    if kind < 45:
        text, pairs = untyped_qos(rng), QOS_UPGRADE
    elif kind < 60:
        text, pairs = typed_qos(rng), QOS_MTU
    elif kind < 72:
        text, pairs = typed_qos(rng), QOS_DOWN_4_1_3
    elif kind < 92:
        text, pairs = typed_qos(rng), QOS_DOWN_OLD
    else:
        text, pairs = control_plane(rng), QOS_SUB
    if kind < 92 and chance(rng, 12):
        text = soup(rng, UNTYPED_SOUP if kind < 45 else TYPED_SOUP)
    if chance(rng, 3):
        pairs = QOS_UPGRADE + QOS_MTU + QOS_DOWN_4_1_3 + QOS_DOWN_OLD + QOS_SUB
    return text, pairs


def case(seed):
    """Give (service, config, from, to, switch) for a seed."""
    rng = random.Random(seed)
    kind = rng.randrange(100)
    if kind < 60:
        service = "qos"
        text, pairs = qos_case(rng)
    elif kind < 68:
        service = "fcportsec"
        text = word_text(rng, [b"port-security", b"port-security enable", b"feature port-security",
                               b"fc-port-security", b"feature fc-port-security"])
        pairs = K_PAIRS
    elif kind < 74:
        service = "npiv"
        text = word_text(rng, [b"npiv enable", b"feature npiv", b"npiv"])
        pairs = K_PAIRS
    elif kind < 80:
        service = "fwm"
        text = word_text(rng, [b"mac address-table", b"mac address-table static 0000.0000.0001",
                               b"mac-address-table"])
        pairs = FWM_PAIRS
    elif kind < 91:
        service = "assoc"
        text, pairs = assoc_text(rng), ASSOC_PAIRS
    else:
        service = "satmgr"
        text, pairs = fex_text(rng), SAT_PAIRS
    from_ver, to_ver = rng.choice(pairs)
    if chance(rng, 3):
        from_ver, to_ver = rng.choice(ODD_PAIRS)
    if chance(rng, 25):
        text = mutate(rng, text)
    if chance(rng, 1):
        text = b""
    switch = rng.choice([1] * 18 + [0, 2])
    return service, text, from_ver, to_ver, switch
