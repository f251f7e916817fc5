"""The MTU conversion between 4.1(3) and 4.2(1), and "match-any" for 5.0(2)."""

from engine import FAILED, OK, composed, operation, read_number, saturated
from qos_cleanup import predicate, qoscnv_remove_description
from qos_database import TYPE_UF, qoscnv_build_policymaps_db_downgrade


def converted_mtu_line(action_text, upgrade):
    """Give the converted line, or None when no number follows the keyword."""
    after = action_text.index(b"mtu") + len(b"mtu")
    value, _ = read_number(action_text, after)
    if value is None:
        return None
    value = saturated(value)
    if value != 9216:
        if upgrade:
            value = max(value - 38, 1500)
        else:
            value = min(value + 38, 9216)
    return b"    mtu %d\n" % value


def after_mtu(action_text):
    """Give the text behind the first "mtu", for the trace."""
    return action_text[action_text.index(b"mtu") + len(b"mtu"):]


def move_special_classes_to_head(qos, name, policymap, type_bits):
    """Reorder a class list: multicast, flood, then the others as they were."""
    unlinked = {}
    rest = []
    for record in policymap.classes:
        qos.log(name, b"Looking at class %s type %d\n", record.name, record.type)
        if record.name in (b"class-ip-multicast", b"class-all-flood") and record.type == type_bits:
            qos.log(name, b"Found special class %s\n", record.name)
            unlinked[record.name] = record
        else:
            rest.append(record)
    policymap.classes = rest
    flood = unlinked.get(b"class-all-flood")
    if flood is not None:
        policymap.classes.insert(0, flood)
        qos.log(name, b"Moved class-all-flood to start of policy\n")
    multicast = unlinked.get(b"class-ip-multicast")
    if multicast is not None:
        policymap.classes.insert(0, multicast)
        qos.log(name, b"Moved class-ip-multicast to start of policy:type=%d\n", multicast.type)


@operation
def qoscnv_identify_classmaps_for_type(qos):
    """Give type qos class-maps "match-any" on the way from 4.1(3) to 5.0(2) or
    later."""
    name = b"qoscnv_identify_classmaps_for_type"
    position = qos.file_start_qossection()
    if position is None:
        return OK
    while True:
        hit = qos.find(b"\nclass-map", position)
        if hit is None:
            return OK
        qos.log(name, b"found class-map at byte %d\n", hit)
        position = hit + 1
        words = qos.words(position, b"class-map type %s %s")
        if len(words) < 2:
            continue
        type_word, classmap_name = words
        qos.log(name, b"%s(%d): found class-map type %s name %s\n", name, 71, type_word,
                classmap_name)
        if not (qos.triple("from") == (4, 1, 3) and qos.triple("to") >= (5, 0, 2)):
            continue
        if type_word[:3] != b"qos":
            continue
        found = qos.find(b"type qos", position)
        if found is None:
            qos.log(name, b"\"%s\" for type %s class-map name %s not found\n", b"type qos",
                    type_word, classmap_name)
            continue
        qos.insert_text(found + 9, b"match-any ")
        qos.log(name, b"insert %s for type %s class-map name %s\n", b"match-any ", type_word,
                classmap_name)


@operation
def qoscnv_create_qosgrp_policymap_4_2_1(qos, policymap, type_bits, upgrade):
    """Write one further network-qos stanza behind the last one of the text."""
    name = b"qoscnv_create_qosgrp_policymap_4_2_1"
    qos.log(name, b"Creating new policy-maps of type %d for policy-map %s\n", type_bits,
            policymap.name)
    if type_bits != TYPE_UF:
        qos.log(name, b"Unexpected type %d\n", type_bits)
        return FAILED
    qos.log(name, b"Finding end of type unified-fabric stanzas ...\n")
    section = qos.file_start_qossection()
    place = None
    if section is not None:
        last = None
        hit = qos.find(b"policy-map type network-qos", section + 1)
        while hit is not None:
            last = hit
            hit = qos.find(b"policy-map type network-qos", hit + 1)
        if last is not None:
            place = qos.goto_nextstanza(last)
    if place is None:
        qos.log(name, b"Could not find policy-maps; aborting\n")
        return FAILED
    header = composed(b"%s %s %s\n", b"policy-map", b"type network-qos", policymap.name)
    qos.insert_text(place, header)
    place += len(header)
    move_special_classes_to_head(qos, name, policymap, TYPE_UF)
    for record in policymap.classes:
        if not record.type & TYPE_UF:
            continue
        line = composed(b"  %s %s %s\n", b"class", b"type network-qos", record.name)
        qos.insert_text(place, line)
        place += len(line)
        for action in record.actions:
            if not action.type & TYPE_UF:
                continue
            line = action.text
            if b"mtu" in action.text:
                if upgrade:
                    qos.log(name, b"convert %s, ver is to 4.2(1) %d, gt 4.2.(1) %d\n",
                            after_mtu(action.text),
                            predicate(qos.triple("to") == (4, 2, 1)),
                            predicate(qos.triple("to") > (4, 2, 1)))
                else:
                    qos.log(name, b"convert %s, ver is eq 4.2(1) %d, gt 4.2(1) %d\n",
                            after_mtu(action.text),
                            predicate(qos.triple("from") == (4, 2, 1)),
                            predicate(qos.triple("from") > (4, 2, 1)))
                converted = converted_mtu_line(action.text, upgrade)
                if converted is not None:
                    line = converted
                    qos.log(name, b"converted %s\n", line)
            qos.insert_text(place, line)
            place += len(line)
    return OK


def qoscnv_rewrite_maps_4_2_1(qos, is_upgrade):
    """Convert the MTU values of every policy with unified-fabric actions."""
    name = b"qoscnv_rewrite_maps_4_2_1"
    for policymap in qos.policymaps:
        if policymap.type & TYPE_UF:
            if qoscnv_create_qosgrp_policymap_4_2_1(qos, policymap, TYPE_UF, is_upgrade) != OK:
                qos.log(name, b"could not create type network-qos policy-map for policy-map %s\n",
                        policymap.name)
                return FAILED
            qos.log(name, b"policy-map %s\n", policymap.name)
        else:
            qos.log(name, b"policy-map %s does not have actions of type unified-fabric\n",
                    policymap.name)
    return OK


def qosmgr_convert_ascii_4_2_1_upgrade(qos):
    """The whole conversion from 4.1(3) to 4.2(1) or later."""
    name = b"qosmgr_convert_ascii_4_2_1_upgrade"
    qos.log(name, b"entering ...\n")
    status = qoscnv_remove_description(qos)
    if status != OK:
        return status
    status = qoscnv_identify_classmaps_for_type(qos)
    if status != OK:
        return status
    status = qoscnv_build_policymaps_db_downgrade(qos)
    if status != OK:
        qos.log(name, b"failed to build policymaps database for upgrade\n")
        return status
    status = qoscnv_rewrite_maps_4_2_1(qos, True)
    if status != OK:
        qos.log(name, b"Could not write out updated maps: %s\n", qos.world.status_text(status))
        return status
    qos.log(name, b"ver eq_4_1_3 %d to ver eq_4_2_1 %d, gt_4_2_1 %d: cnv completed\n",
            predicate(qos.triple("from") == (4, 1, 3)),
            predicate(qos.triple("to") == (4, 2, 1)),
            predicate(qos.triple("to") > (4, 2, 1)))
    return OK
