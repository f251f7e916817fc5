"""Configurations to measure with: a realistic mix, or nothing but what a converter rewrites.

`real(size, typed)` is mostly interfaces, with the other features between them and a QoS section of
at most 64 KB in the middle. `dense(kind, size)` is filled with the stanzas of one converter.
"""
import itertools

MOST_QOS = 64 * 1024
ROOM_FOR_VLANS = 7000  # stanzas that the association converter has room to add to any file


def fill(size, stanzas):
    """Takes stanzas until `size` bytes are reached."""
    taken, length = [], 0
    for stanza in stanzas:
        if length >= size:
            break
        taken.append(stanza)
        length += len(stanza)
    return "".join(taken)


# ---- Features ----

def npiv(new):
    return (f"{'feature npiv' if new else 'npiv enable'}\n" for _ in itertools.count())


def port_security(new):
    word = "fc-port-security" if new else "port-security"
    yield "feature fc-port-security\n" if new else "port-security enable\n"
    for i in itertools.count(1):
        yield f"{word} database vsan {i % 4000}\n  pwwn 20:00:00:25:b5:{i % 256:02x}:00:0f\n"


def mac_addresses(_):
    for i in itertools.count(1):
        yield f"mac address-table static 0018.bad8.{i % 65536:04x} vlan {i % 4000} drop\n"


def vlans(_):
    for i in itertools.count(1):
        fcoe = "  fcoe\n" if i <= ROOM_FOR_VLANS else ""
        yield f"vlan {i % 4000 + 1}\n{fcoe}  name storage-{i}\n"


def fabric_extenders(_):
    for i in itertools.count(1):
        yield (f"interface Ethernet1/{i}\n  fex associate {i % 99 + 100}\n"
               "  switchport mode fex-fabric\n  channel-group 7\n")


def interfaces(_):
    for i in itertools.count(1):
        yield (f"interface Ethernet{i // 48 + 100}/1/{i % 48 + 1}\n  description host-{i} rack {i // 40}\n"
               f"  switchport mode trunk\n  switchport access vlan {i % 4000 + 1}\n"
               "  spanning-tree port type edge trunk\n  no shutdown\n\n")


# ---- QoS ----

CLASSES = 4  # of a policy-map


def untyped_maps(first, count):
    for p in range(first, first + count):
        names = [f"class-{p}-{c}" for c in range(CLASSES)]
        classmaps = "".join(f"class-map {name}\n  match cos {c}\n" for c, name in enumerate(names))
        body = "".join(f"  class {name}\n    bandwidth percent {10 + c}\n" for c, name in enumerate(names))
        yield classmaps, f"policy-map policy-{p}\n{body}"


def typed_maps(first, count, match_any):
    word = "match-any " if match_any else ""
    for p in range(first, first + count):
        names = [f"class-{p}-{c}" for c in range(CLASSES)]
        classmaps = policymaps = ""
        for kind in ("qos", "queuing", "network-qos"):
            for c, name in enumerate(names):
                match = f"match cos {c}" if kind == "qos" else f"match qos-group {c + 2}"
                any_word = word if kind == "qos" else ""
                description = "  description voice\n" if c == 0 and match_any else ""
                classmaps += f"class-map type {kind} {any_word}{name}\n{description}  {match}\n"
        actions = {"qos": "    set qos-group {}\n", "queuing": "    bandwidth percent {}\n",
                   "network-qos": "    mtu 22{}0\n"}
        for kind, action in actions.items():
            policymaps += f"policy-map type {kind} policy-{p}\n"
            for c, name in enumerate(names):
                words = name if kind == "qos" else f"type {kind} {name}"
                policymaps += f"  class {words}\n" + action.format(c + 2)
        yield classmaps, policymaps


def attachments(first, count, typed):
    lines = ["input", "output"] if not typed else ["type qos input", "type queuing input", "type queuing output"]
    for p in range(first, first + count):
        yield f"interface Ethernet1/{p}\n" + "".join(f"  service-policy {line} policy-{p}\n" for line in lines)


def attached(size):
    """Interfaces with two attachments each, several of one policy-map: in 10 MB some 13,000 maps and 72,000
    attachments."""
    policies, ports = max(2, size * 6500 // 10_000_000), size * 36_000 // 10_000_000
    maps = ("".join(f"class-map class-{p}\n  match cos {p % 8}\n" for p in range(policies)) +
            "".join(f"policy-map policy-{p}\n  class class-{p}\n    bandwidth percent {10 + p % 8}\n"
                    for p in range(policies)))
    stanzas = itertools.islice(interfaces(None), ports)
    return maps + "system qos\n  service-policy policy-0\n" + "".join(
        f"{stanza[:-1]}  service-policy input policy-{i % policies}\n"
        f"  service-policy output policy-{(i * 7 + 1) % policies}\n\n" for i, stanza in enumerate(stanzas))


def qos_section(size, typed, match_any=False):
    """Class-maps, policy-maps, system qos and attachments; one policy for the system, the others for
    interfaces."""
    def section(count):
        maps = list(typed_maps(1, count, match_any) if typed else untyped_maps(1, count))
        system = ["service-policy type qos input policy-1", "service-policy type queuing input policy-1",
                  "service-policy type network-qos policy-1"] if typed else ["service-policy policy-1"]
        return ("".join(m[0] for m in maps) + "".join(m[1] for m in maps) +
                "system qos\n" + "".join(f"  {line}\n" for line in system) +
                "".join(attachments(2, count - 1, typed)))
    return section(max(2, round(size / (len(section(12)) - len(section(2))) * 10)))


def control_plane(_):
    for i in itertools.count(1):
        yield (f"class-map type control-plane match-any copp-{i}\npolicy-map type control-plane copp-policy-{i}\n"
               f"  class copp-{i}\n    police pps {i % 900 + 20}\n")


# ---- Whole configurations ----

def dense(kind, size):
    head = "version 4.1(3)\nhostname switch\n"
    if kind == "attachments":
        return head + attached(size)
    if kind == "qos":
        return head + qos_section(size, typed=False)
    if kind in ("qos typed", "qos typed match-any"):
        return head + qos_section(size, typed=True, match_any=kind.endswith("any"))
    stanzas = {"npiv": npiv(False), "feature npiv": npiv(True), "port-security": port_security(False),
               "fc-port-security": port_security(True), "mac": mac_addresses(None), "vlan": vlans(None),
               "fex": fabric_extenders(None), "control-plane": control_plane(None)}
    return head + fill(size, stanzas[kind])


def real(size, typed, match_any=False):
    features = "".join(fill(size // 100, stanzas) for stanzas in
                       (npiv(typed), port_security(typed), mac_addresses(None), vlans(None),
                        fabric_extenders(None)))
    copp = fill(size // 200, control_plane(None)) if match_any else ""
    qos = qos_section(min(MOST_QOS, size // 5), typed, match_any)
    ports = fill((size - len(features) - len(qos) - len(copp)) // 2, interfaces(None))
    return "version 4.1(3)\nhostname switch\n" + features + ports + copp + qos + ports
