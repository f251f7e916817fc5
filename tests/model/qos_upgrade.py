"""The QoS upgrade from releases before 4.1(3)."""

from engine import FAILED, OK, composed, operation, scan_words
from qos_cleanup import predicate
from qos_database import (TYPE_QUEUING, TYPE_UF, UNASSIGNED, Class, ClassMap,
                          qoscnv_build_classmaps_db, qoscnv_build_policymaps_db_upgrade,
                          qoscnv_db_print_policymaps)
from qos_mtu import after_mtu, converted_mtu_line, move_special_classes_to_head

MULTICAST = b"class-ip-multicast"
FLOOD = b"class-all-flood"
DEFAULT = b"class-default"
FCOE = b"class-fcoe"

TYPE_WORDS = {TYPE_QUEUING: b"type queuing", TYPE_UF: b"type network-qos"}


# ---------------------------------------------------------------- qos-groups

@operation
def qoscnv_assign_qosgrp_to_sysqos_policy(qos):
    """Mark the system policy and number the class-maps of its classes."""
    name = b"qoscnv_assign_qosgrp_to_sysqos_policy"
    hit = qos.find(b"\nsystem qos", 0)
    if hit is None:
        qoscnv_db_print_policymaps(qos)
        return OK
    qos.log(name, b"found system qos at byte %d\n", hit)
    start = hit + 1
    end = qos.nextstanza_or_end(start)
    qos.log(name, b"start of stanza: byte %d, end of stanza: byte %d\n", start, end)
    attachment = qos.find(b"service-policy", start)
    if attachment is None:
        qos.log(name, b"no more service-policies in the configuration\n")
        return OK
    if attachment >= end:
        qos.log(name, b"No more service-policies on system qos\n")
        return OK
    qos.log(name, b"found service-policy at byte %d\n", attachment)
    words = qos.words(attachment, b"service-policy %s\n")
    if len(words) < 1:
        qos.log(name, b"unexpected service-policy format; aborting\n")
        return FAILED
    qos.log(name, b"found service-policy name %s\n", words[0])
    policymap = qos.find_policymap(words[0])
    if policymap is None:
        qos.log(name, b"could not find policy-map for service-policy %s; aborting\n", words[0])
        return FAILED
    policymap.sysqos = True
    cur_qos_group = 2
    for record in policymap.classes:
        assigned_qos_group = UNASSIGNED
        for classmap in qos.classmaps:
            if classmap.name != record.name:
                continue
            if classmap.name in (DEFAULT, FCOE):
                fixed = 0 if classmap.name == DEFAULT else 1
                qos.log(name, b"Assigned qos-group %d to class-map %s\n", fixed, classmap.name)
                assigned_qos_group = fixed
                if classmap.qos_group == UNASSIGNED:
                    classmap.qos_group = fixed
                    qos.log(name, b"Assigned qos-group %d to class-map %s type %x\n", fixed,
                            classmap.name, classmap.type)
            elif classmap.qos_group < UNASSIGNED:
                qos.log(name, b"class-map %s type %x already has qos-group %d; ignoring\n",
                        classmap.name, classmap.type, classmap.qos_group)
            else:
                if cur_qos_group > 5:
                    qos.log(name, b"Too many user system classes; aborting\n")
                    return FAILED
                if assigned_qos_group == UNASSIGNED:
                    assigned_qos_group = cur_qos_group
                    cur_qos_group += 1
                    qos.log(name, b"Assigned qos-group %d to class-map %s\n", assigned_qos_group,
                            classmap.name)
                classmap.qos_group = assigned_qos_group
                qos.log(name, b"Assigned qos-group %d to class-map %s type %x\n",
                        assigned_qos_group, classmap.name, classmap.type)
        qos.log(name, b"Done with search for class-map %s\n", record.name)
    qoscnv_db_print_policymaps(qos)
    return OK


def qoscnv_classmap_to_qosgrp(qos, classmap_name):
    """Give the status and the qos-group of a class-map."""
    name = b"qoscnv_classmap_to_qosgrp"
    if classmap_name == FCOE:
        return OK, 1
    if classmap_name == DEFAULT:
        return OK, 0
    for classmap in qos.classmaps:
        if classmap.name == classmap_name:
            qos.log(name, b"found matching qosgrp %d to class-map %s\n", classmap.qos_group,
                    classmap.name)
            return OK, classmap.qos_group
    qos.log(name, b"did not find matching qosgrp for class-map %s\n", classmap_name)
    return FAILED, None


# ---------------------------------------------------------------- type marking

@operation
def qoscnv_add_type_qos_to_classmaps(qos):
    """Mark the class-maps and add the two special ones."""
    name = b"qoscnv_add_type_qos_to_classmaps"
    position = qos.file_start_qossection()
    while position is not None:
        hit = qos.find(b"\nclass-map", position)
        if hit is None:
            break
        qos.log(name, b"found class-map at byte %d\n", hit)
        position = hit + 11
        qos.insert_text(position, b"type qos ")
    section = qos.file_start_qossection()
    if section is None:
        return OK
    place = section + 1
    for classmap in qos.classmaps:
        if classmap.name in (MULTICAST, FLOOD):
            qos.log(name, b"Found special class %s\n", classmap.name)
            line = composed(b"%s %s %s\n", b"class-map", b"type qos", classmap.name)
            qos.insert_text(place, line)
            place += len(line)
    return OK


@operation
def qoscnv_add_type_qos_to_policymaps(qos):
    """Mark the policy-maps."""
    name = b"qoscnv_add_type_qos_to_policymaps"
    position = qos.file_start_qossection()
    if position is None:
        return OK
    while True:
        hit = qos.find(b"\npolicy-map", position)
        if hit is None:
            return OK
        qos.log(name, b"found policy-map at byte %d\n", hit)
        position = hit + 12
        qos.insert_text(position, b"type qos ")


# ---------------------------------------------------------------- existing policies

def locate_policy(qos, name, policymap_name):
    """Find the header line of a policy; give the status and the line or None."""
    section = qos.file_start_qossection()
    if section is None:
        return OK, None
    position = section
    while True:
        hit = qos.find(b"\npolicy-map", position)
        if hit is None:
            return OK, None
        qos.log(name, b"found policy-map at byte %d\n", hit)
        words = qos.words(hit + 1, b"policy-map type qos %s")
        if len(words) < 1:
            qos.log(name, b"unexpected format for policy-map; aborting\n")
            return FAILED, None
        qos.log(name, b"found policy-map name %s\n", words[0])
        if words[0] == policymap_name:
            return OK, hit + 1
        position = hit + 2


def end_of_policy(qos, header):
    """Give the next mention of a policy-map behind a header line, or else the
    next stanza."""
    end = qos.find(b"policy-map", header + 1)
    if end is None:
        end = qos.nextstanza_or_end(header)
    return end


def mark_class(qos, name, line):
    """Put "type qos " into the class line at hand.

    Gives the status, the place of the insertion and the class name."""
    words = qos.words(line, b"  class %s")
    if len(words) < 1:
        qos.log(name, b"unexpected format for class; aborting\n")
        return FAILED, None, None
    qos.log(name, b"found class name %s\n", words[0])
    keyword = qos.find(b"class", line)
    if keyword is None:
        qos.log(name, b"unexpected error during class processing; aborting\n")
        return FAILED, None, None
    place = keyword + 6
    qos.insert_text(place, b"type qos ")
    words = qos.words(place, b"type qos %s\n")
    if len(words) < 1:
        qos.log(name, b"unexpected error during class name processing; aborting\n")
        return FAILED, None, None
    return OK, place, words[0]


@operation
def qoscnv_alter_existing_policymap(qos, policymap):
    """Turn a mixed policy into the type qos policy of its name."""
    name = b"qoscnv_alter_existing_policymap"
    qos.log(name, b"Altering existing policy-map %s to be of type qos ...\n", policymap.name)
    status, header = locate_policy(qos, name, policymap.name)
    if status != OK or header is None:
        return status
    first = qos.nextline_or_end(header)
    end = end_of_policy(qos, header)
    line = first
    groups = {MULTICAST: UNASSIGNED, FLOOD: UNASSIGNED}
    is_policy_done = False
    while line < end and not is_policy_done:
        following = qos.nextline_or_end(line)
        status, place, class_name = mark_class(qos, name, line)
        if status != OK:
            return status
        if class_name == DEFAULT:
            qos.log(name, b"found class-default class\n")
        elif class_name == FCOE:
            qos.log(name, b"found class-fcoe class\n")
        elif class_name == MULTICAST:
            qos.log(name, b"found class-ip-multicast\n")
        elif class_name == FLOOD:
            qos.log(name, b"found class-all-flood\n")
        ordinary = class_name not in (DEFAULT, FCOE, MULTICAST, FLOOD)
        status, group = qoscnv_classmap_to_qosgrp(qos, class_name)
        if status != OK:
            qos.log(name, b"Could not find qos-group for %s; aborting\n", class_name)
            return FAILED
        end += 9
        class_end = qos.find(b"  class", place)
        if class_end is None or class_end > end:
            class_end = end
            is_policy_done = True
        delete_start = qos.nextline_or_end(line) if ordinary else line
        if class_name in groups:
            groups[class_name] = group
        if delete_start > class_end:
            qos.log(name, b"unexpected format for class; aborting\n")
            return FAILED
        qos.delete_text(delete_start, class_end - delete_start)
        end -= class_end - delete_start
        qos.log(name, b"Deleted existing actions for %s\n", class_name)
        if ordinary and group == UNASSIGNED:
            size = following + 9 - line
            qos.delete_text(line, size)
            end -= size
            qos.log(name, b"Deleted existing class %s since no type qos action for it\n",
                    class_name)
        elif ordinary and policymap.sysqos:
            action = composed(b"    %s %d\n", b"set qos-group", group)
            qos.insert_text(delete_start, action)
            end += len(action)
            qos.log(name, b"Added 'set qos-group %d' action to %s\n", group, class_name)
            line = delete_start + len(action)
        else:
            line = delete_start
    for special in (FLOOD, MULTICAST):
        if groups[special] == UNASSIGNED:
            continue
        qos.log(name, b"inserting %s back into policy\n", special)
        text = composed(b"  %s %s %s\n", b"class", b"type qos", special)
        qos.insert_text(first, text)
        if policymap.sysqos:
            action = composed(b"    %s %d\n", b"set qos-group", groups[special])
            qos.insert_text(first + len(text), action)
    return OK


@operation
def qoscnv_alter_existing_type_qos_policymap(qos, policymap_name):
    """Mark the classes of a policy that has classification actions only."""
    name = b"qoscnv_alter_existing_type_qos_policymap"
    qos.log(name, b"Altering existing policy-map %s to be of type qos ...\n", policymap_name)
    status, header = locate_policy(qos, name, policymap_name)
    if status != OK or header is None:
        return status
    first = qos.nextline_or_end(header)
    end = end_of_policy(qos, header)
    line = first
    if not end > line:
        return OK
    seen = {MULTICAST: False, FLOOD: False}
    while True:
        status, place, class_name = mark_class(qos, name, line)
        if status != OK:
            return status
        if class_name == MULTICAST:
            qos.log(name, b"found class-ip-multicast\n")
        if class_name == FLOOD:
            qos.log(name, b"found class-all-flood\n")
        end += 9
        class_end = qos.find(b"  class", place)
        if class_end is None or class_end > end:
            class_end = end
        if class_name in seen:
            seen[class_name] = True
            qos.delete_text(line, class_end - line)
            end -= class_end - line
            qos.log(name, b"Deleted special class %s\n", class_name)
            line = qos.find(b"  class", line)
        else:
            line = qos.find(b"  class", place)
        if line is None or not line < end:
            break
    for special in (FLOOD, MULTICAST):
        if seen[special]:
            qos.log(name, b"inserting %s back into policy\n", special)
            text = composed(b"  %s %s %s\n", b"class", b"type qos", special)
            qos.insert_text(first, text)
    return OK


# ---------------------------------------------------------------- map rewriting

def end_of_last_stanza(qos, header, line_offset):
    """Give the stanza start behind the last stanza with a header, or None."""
    section = qos.file_start_qossection()
    if section is None:
        return None
    last = None
    hit = qos.find(header, section + 1)
    while hit is not None:
        last = hit
        hit = qos.find(header, hit + 1)
    if last is None:
        return None
    return qos.goto_nextstanza(last + line_offset)


def find_ends(qos, name, pattern, line_offset, kind):
    """Give the positions behind the last qos, queuing and unified-fabric maps."""
    qos.log(name, b"Finding end of type qos stanzas ...\n")
    qos_end = end_of_last_stanza(qos, pattern % b"type qos", line_offset)
    if qos_end is None:
        qos.log(name, b"Warning: Unexpected lack of type qos %s; ignoring\n", kind)
    qos.log(name, b"Finding end of type queuing stanzas ...\n")
    queuing_end = end_of_last_stanza(qos, pattern % b"type queuing", line_offset)
    qos.log(name, b"Finding end of type unified-fabric stanzas ...\n")
    fabric_end = end_of_last_stanza(qos, pattern % b"type unified-fabric", line_offset)
    return qos_end, queuing_end, fabric_end


def choose_place(type_bits, qos_end, queuing_end, fabric_end):
    """Choose where new maps of a type go."""
    if type_bits == TYPE_UF and fabric_end is not None:
        return fabric_end
    if queuing_end is not None:
        return queuing_end
    return qos_end


@operation
def qoscnv_create_qosgrp_classmap(qos, policymap, type_bits):
    """Write the typed class-maps that a policy's classes need."""
    name = b"qoscnv_create_qosgrp_classmap"
    qos.log(name, b"Creating new class-maps of type %d for policy-map %s\n", type_bits,
            policymap.name)
    if type_bits not in TYPE_WORDS:
        qos.log(name, b"Unexpected type %d\n", type_bits)
        return FAILED
    qos_end, queuing_end, fabric_end = find_ends(qos, name, b"\nclass-map %s", 1, b"class-maps")
    place = choose_place(type_bits, qos_end, queuing_end, fabric_end)
    if place is None:
        qos.log(name, b"%d: Could not find class-maps for type %d name %s; aborting\n", 526,
                type_bits, policymap.name)
        return OK
    i = -1
    while i + 1 < len(policymap.classes):
        i += 1
        record = policymap.classes[i]
        if record.name in (FCOE, DEFAULT):
            continue
        if not record.type & type_bits:
            if type_bits == TYPE_UF:
                known = False
                for other in policymap.classes:
                    if other.name == record.name and other.type == TYPE_UF:
                        known = True
                if not known:
                    qos.trace_allocation(name)
                    policymap.classes.insert(i + 1, Class(record.name, TYPE_UF))
            continue
        qos.log(name, b"Finding type %d class %s ...\n", record.type, record.name)
        taken = None
        skipped = False
        for classmap in qos.classmaps:
            if classmap.name != record.name:
                continue
            if not classmap.type & record.type:
                taken = classmap
                break
            qos.log(name, b"class-map %s of type %d has already been written; skipping\n",
                    classmap.name, record.type)
            skipped = True
        if skipped:
            continue
        if taken is None:
            if record.name not in (MULTICAST, FLOOD):
                qos.log(name, b"%d: Could not find class-map for type %d name %s; aborting\n",
                        618, type_bits, record.name)
                return FAILED
            qos.trace_allocation(name)
            taken = ClassMap(record.name)
            qos.classmaps.append(taken)
            line = composed(b"%s %s %s\n", b"class-map", b"type qos", record.name)
            if qos_end is None:
                qos.insert_text(place, line)
            else:
                qos.insert_text(qos_end, line)
                qos_end += len(line)
            place += len(line)
        status, group = qoscnv_classmap_to_qosgrp(qos, record.name)
        if status != OK:
            qos.log(name, b"Could not find qos-group for %s; aborting\n", record.name)
            return FAILED
        qos.log(name, b"Adding class-map of type %d, name %s, qos group %d\n", type_bits,
                record.name, group)
        if group != UNASSIGNED:
            stanza = composed(b"%s %s %s\n  %s %d\n", b"class-map", TYPE_WORDS[type_bits],
                              record.name, b"match qos-group", group)
        else:
            stanza = composed(b"%s %s %s\n\n", b"class-map", TYPE_WORDS[type_bits], record.name)
        qos.insert_text(place, stanza)
        place += len(stanza)
        taken.type |= record.type
    return OK


@operation
def qoscnv_create_qosgrp_policymap(qos, policymap, type_bits, upgrade):
    """Write the typed policy-map with the actions of one type."""
    name = b"qoscnv_create_qosgrp_policymap"
    qos.log(name, b"Creating new policy-maps of type %d for policy-map %s\n", type_bits,
            policymap.name)
    if type_bits not in TYPE_WORDS:
        qos.log(name, b"Unexpected type %d\n", type_bits)
        return FAILED
    qos_end, queuing_end, fabric_end = find_ends(qos, name, b"policy-map %s", 0, b"policy-maps")
    place = choose_place(type_bits, qos_end, queuing_end, fabric_end)
    if place is None:
        qos.log(name, b"Could not find policy-maps; aborting\n")
        return FAILED
    header = composed(b"%s %s %s\n", b"policy-map", TYPE_WORDS[type_bits], policymap.name)
    qos.insert_text(place, header)
    place += len(header)
    move_special_classes_to_head(qos, name, policymap, type_bits)
    for record in policymap.classes:
        if not record.type & type_bits:
            continue
        line = composed(b"  %s %s %s\n", b"class", TYPE_WORDS[type_bits], record.name)
        qos.insert_text(place, line)
        place += len(line)
        for action in record.actions:
            if not action.type & type_bits:
                continue
            line = action.text
            if b"mtu" in action.text:
                if upgrade:
                    side = "to"
                    pattern = b"convert %s, ver to 4.2(1) %d, gt 4.2(1) %d, ge 5.0(2) %d\n"
                else:
                    side = "from"
                    pattern = b"convert %s, ver from eq 4.2(1) %d, gt 4.2(1) %d, ge 5.0(2) %d\n"
                qos.log(name, pattern, after_mtu(action.text),
                        predicate(qos.triple(side) == (4, 2, 1)),
                        predicate(qos.triple(side) > (4, 2, 1)),
                        predicate(qos.triple(side) >= (5, 0, 2)))
                converted = converted_mtu_line(action.text, upgrade)
                if converted is not None:
                    line = converted
                    qos.log(name, b"converted %s\n", line)
            qos.insert_text(place, line)
            place += len(line)
    return OK


def qoscnv_rewrite_maps(qos, is_upgrade):
    """Write the typed maps of every policy and rewrite the policy itself."""
    name = b"qoscnv_rewrite_maps"
    for policymap in qos.policymaps:
        has_queuing = policymap.type & TYPE_QUEUING
        has_fabric = policymap.type & TYPE_UF
        if not has_queuing and not has_fabric:
            qos.log(name, b"policy-map %s does not have actions of type queuing or type "
                    b"unified-fabric\n", policymap.name)
            status = qoscnv_alter_existing_type_qos_policymap(qos, policymap.name)
            if status != OK:
                qos.log(name, b"could not alter existing type qos policy-map %s\n",
                        policymap.name)
                return status
            continue
        if has_queuing:
            if qoscnv_create_qosgrp_classmap(qos, policymap, TYPE_QUEUING) != OK:
                qos.log(name, b"could not create type queuing class-map for policy-map %s\n",
                        policymap.name)
                return FAILED
        if has_fabric:
            if qoscnv_create_qosgrp_classmap(qos, policymap, TYPE_UF) != OK:
                qos.log(name, b"could not create type network-qos class-map for policy-map %s\n",
                        policymap.name)
                return FAILED
        status = qoscnv_alter_existing_policymap(qos, policymap)
        if status != OK:
            qos.log(name, b"could not alter existing policy-map %s\n", policymap.name)
            return status
        if has_queuing:
            if qoscnv_create_qosgrp_policymap(qos, policymap, TYPE_QUEUING, is_upgrade) != OK:
                qos.log(name, b"could not create type queuing policy-map for policy-map %s\n",
                        policymap.name)
                return FAILED
        if has_fabric:
            if qoscnv_create_qosgrp_policymap(qos, policymap, TYPE_UF, is_upgrade) != OK:
                qos.log(name, b"could not create type network-qos policy-map for policy-map %s\n",
                        policymap.name)
                return FAILED
    return OK


# ---------------------------------------------------------------- attachments

@operation
def qoscnv_rewrite_attachments(qos):
    """Replace every old attachment line by typed lines."""
    name = b"qoscnv_rewrite_attachments"
    position = qos.file_start_qossection()
    if position is None:
        return OK
    end = position
    wrote_qos = False
    while True:
        hit = qos.find(b"\n  service-policy", position)
        if hit is None:
            return OK
        qos.log(name, b"found service-policy at byte %d\n", hit)
        line_start = hit + 1
        if hit >= end:
            end = qos.nextstanza_or_end(line_start)
            wrote_qos = False
        line = qos.attachment_line(line_start + 2)
        words = scan_words(line, 0, b"service-policy %s %s\n")
        if len(words) == 2:
            is_sysqos = False
            direction, policy_name = words
            if len(direction) > 9:
                qos.log(name, b"unexpected format for service-policy; aborting\n")
                return FAILED
            qos.log(name, b"service-policy %s is on an interface: dir %s\n", policy_name,
                    direction)
        elif len(words) == 1:
            is_sysqos = True
            direction, policy_name = b"", words[0]
            qos.log(name, b"service-policy %s is on system qos\n", policy_name)
        else:
            qos.log(name, b"unexpected format for service-policy; aborting\n")
            return FAILED
        policymap = qos.find_policymap(policy_name)
        if policymap is None:
            qos.log(name, b"could not find policy-map for service-policy %s; aborting\n",
                    policy_name)
            return FAILED
        size = qos.nextline_or_end(line_start) - line_start
        qos.delete_text(line_start, size)
        position = line_start
        end -= size
        if not wrote_qos and policymap.sysqos:
            text = composed(b"%s %s input %s\n", b"  service-policy", b"type qos", policy_name)
            qos.insert_text(position, text)
            position += len(text)
            end += len(text)
            wrote_qos = True
            qos.log(name, b"inserted \"%s\"", text)
        if policymap.type & TYPE_QUEUING:
            for way in (b"input", b"output") if is_sysqos else (direction,):
                text = composed(b"%s %s %s %s\n", b"  service-policy", b"type queuing", way,
                                policy_name)
                qos.insert_text(position, text)
                position += len(text)
                end += len(text)
                qos.log(name, b"inserted \"%s\"", text)
        if policymap.type & TYPE_UF:
            if not is_sysqos:
                qos.log(name, b"Unexpected type unified-fabric service-policy on an interface; "
                        b"aborting\n")
                return FAILED
            text = composed(b"%s %s %s\n", b"  service-policy", b"type network-qos", policy_name)
            qos.insert_text(position, text)
            position += len(text)
            end += len(text)
            qos.log(name, b"inserted \"%s\"", text)
        position -= 1


# ---------------------------------------------------------------- pipeline

def qosmgr_convert_ascii_4_1_3_upgrade(qos):
    """Run the passes in order; the first failure ends the pipeline."""
    name = b"qosmgr_convert_ascii_4_1_3_upgrade"
    qos.log(name, b"entering ...\n")
    status = qoscnv_build_classmaps_db(qos)
    if status != OK:
        qos.log(name, b"failed to build classmaps database\n")
        return status
    status = qoscnv_build_policymaps_db_upgrade(qos)
    if status != OK:
        qos.log(name, b"failed to build policymaps database\n")
        return status
    status = qoscnv_assign_qosgrp_to_sysqos_policy(qos)
    if status != OK:
        qos.log(name, b"failed to assign qos groups to attached system policy\n")
        return status
    status = qoscnv_add_type_qos_to_classmaps(qos)
    if status != OK:
        qos.log(name, b"Could not add \"type qos\" to existing class-maps: %s\n",
                qos.world.status_text(status))
        return status
    status = qoscnv_add_type_qos_to_policymaps(qos)
    if status != OK:
        qos.log(name, b"Could not add \"type qos\" to existing policy-maps: %s\n",
                qos.world.status_text(status))
        return status
    status = qoscnv_rewrite_maps(qos, True)
    if status != OK:
        qos.log(name, b"Could not write out updated maps: %s\n", qos.world.status_text(status))
        return status
    status = qoscnv_rewrite_attachments(qos)
    if status != OK:
        qos.log(name, b"Could not write out updated attachments: %s\n",
                qos.world.status_text(status))
    return status
