"""The QoS downgrade below 4.2(1): analysis, policy rewriting and the pipeline."""

from engine import OK, composed, operation
from qos_cleanup import (qoscnv_delete_duplicate_attachments, qoscnv_remove_description,
                         qoscnv_remove_empty_classmaps, qoscnv_remove_match_any,
                         qoscnv_remove_qos_groups, qoscnv_remove_type_nq,
                         qoscnv_remove_type_qos, qoscnv_remove_type_queuing)
from qos_database import (TYPE_QOS, qoscnv_build_policymaps_db_downgrade,
                          qoscnv_db_print_empty_classmaps, qoscnv_db_print_empty_policymaps)
from qos_mtu import qoscnv_rewrite_maps_4_2_1


@operation
def qoscnv_identify_empty_policymaps(qos):
    """Record the typed policy-maps without a body."""
    name = b"qoscnv_identify_empty_policymaps"
    position = qos.file_start_qossection()
    while position is not None:
        hit = qos.find(b"\npolicy-map", position)
        if hit is None:
            break
        qos.log(name, b"found policy-map at byte %d\n", hit)
        words = qos.words(hit + 1, b"policy-map type %s %s")
        if len(words) < 2:
            position = hit + 1
            continue
        qos.log(name, b"found policy-map name %s\n", words[1])
        position = qos.nextline_or_end(hit + 1)
        if qos.nextstanza(position):
            qos.trace_allocation(name)
            qos.empty_policymaps.append(words[1])
    qoscnv_db_print_empty_policymaps(qos)
    return OK


@operation
def qoscnv_identify_empty_classmaps(qos):
    """Record the class-maps to keep: those that policies use and those without
    a body."""
    name = b"qoscnv_identify_empty_classmaps"
    position = qos.file_start_qossection()
    while position is not None:
        hit = qos.find(b"\nclass-map", position)
        if hit is None:
            break
        qos.log(name, b"found class-map at byte %d\n", hit)
        words = qos.words(hit + 1, b"class-map type %s %s")
        if len(words) < 2:
            position = hit + 1
            continue
        classmap_name = words[1]
        qos.log(name, b"found class-map name %s\n", classmap_name)
        qos.log(name, b"Looking for class-map %s\n", classmap_name)
        matched = False
        for policymap in qos.policymaps:
            qos.log(name, b"Looking through policy-map %s\n", policymap.name)
            for record in policymap.classes:
                qos.log(name, b"Looking through class-map %s\n", record.name)
                if record.name != classmap_name:
                    continue
                if classmap_name in qos.empty_classmaps:
                    qos.log(name, b"class-map name %s already in empty classmaps list; "
                            b"skipping add\n", classmap_name)
                    matched = True
                elif not matched:
                    qos.log(name, b"class-map name %s matches class-map in use in policy %s; "
                            b"adding to list\n", classmap_name, policymap.name)
                    qos.empty_classmaps.append(classmap_name)
                    qos.trace_allocation(name)
                    matched = True
        position = qos.skip_empty_lines(qos.nextline_or_end(hit + 1))
        if matched or not qos.nextstanza(position):
            continue
        if classmap_name in qos.empty_classmaps:
            qos.log(name, b"class-map name %s matches user class-map name %s; skipping add\n",
                    classmap_name, classmap_name)
        else:
            qos.empty_classmaps.append(classmap_name)
            qos.trace_allocation(name)
            qos.log(name, b"added %s to empty classmaps list\n", classmap_name)
    qoscnv_db_print_empty_classmaps(qos)
    return OK


def qoscnv_delete_type_qos_attachments(qos):
    """Delete the type qos attachment lines."""
    name = b"qoscnv_delete_type_qos_attachments"
    position = qos.file_start_qossection()
    if position is None:
        return OK
    while True:
        hit = qos.find(b"\n  service-policy type qos", position)
        if hit is None:
            return OK
        qos.log(name, b"found service-policy %s at byte %d\n", b"type qos", hit)
        qos.delete_text(hit + 1, qos.nextline_or_end(hit + 1) - (hit + 1))
        position = hit


def fallback_end(qos, section):
    """Give the stanza start behind the line that follows the last mention of a
    policy-map, or the end of the text."""
    line = section
    while qos.find(b"policy-map", line) is not None:
        line = qos.nextline_or_end(line)
    return qos.nextstanza_or_end(line)


def qoscnv_delete_policymaps(qos):
    """Delete both groups of policy-maps; give the status and the position where
    they stood, or None."""
    name = b"qoscnv_delete_policymaps"
    section = qos.file_start_qossection()
    if section is None:
        return OK, None
    first_classmap = qos.find(b"\nclass-map", section)
    hit = qos.find(b"\npolicy-map", section if first_classmap is None else first_classmap)
    if hit is None:
        return OK, None
    group_1 = hit + 1
    second_classmaps = None
    group_2 = None
    system_qos = None
    hit = qos.find(b"\nclass-map", group_1)
    if hit is not None:
        second_classmaps = hit + 1
        hit = qos.find(b"\npolicy-map", second_classmaps)
        if hit is not None:
            group_2 = hit + 1
    hit = qos.find(b"\nsystem qos", section)
    if hit is not None:
        system_qos = hit + 1

    if second_classmaps is not None:
        end = second_classmaps
    elif system_qos is not None and system_qos >= group_1:
        end = system_qos
    else:
        end = fallback_end(qos, section)
    size = end - group_1
    qos.delete_text(group_1, size)
    if group_2 is not None:
        group_2 -= size
    if system_qos is not None:
        system_qos -= size
    place = group_1

    if group_2 is not None:
        if system_qos is not None and system_qos >= group_2:
            end = system_qos
        else:
            end = fallback_end(qos, section)
        qos.delete_text(group_2, end - group_2)
        place = group_2
    qos.log(name, b"Deleted all existing policymaps\n")
    return OK, place


@operation
def qoscnv_write_policymaps(qos, place):
    """Write one untyped policy-map per name, without qos-group actions."""
    name = b"qoscnv_write_policymaps"
    qos.log(name, b"Writing out policymaps from database ...\n")
    if place is None:
        return OK
    for empty in qos.empty_policymaps:
        qos.log(name, b"writing empty policy-map %s\n", empty)
        line = composed(b"%s %s\n", b"policy-map", empty)
        qos.insert_text(place, line)
        place += len(line)
    for policymap in qos.policymaps:
        qos.log(name, b"writing policy-map for %s\n", policymap.name)
        line = composed(b"%s %s\n", b"policy-map", policymap.name)
        qos.insert_text(place, line)
        place += len(line)
        for record in policymap.classes:
            if record.type == TYPE_QOS:
                continue
            line = composed(b"  %s %s\n", b"class", record.name)
            qos.insert_text(place, line)
            place += len(line)
            for action in record.actions:
                if action.type & TYPE_QOS:
                    continue
                qos.insert_text(place, action.text)
                place += len(action.text)
    return OK


def downgrade_to_4_1_3(qos, name):
    """The typed form stays; descriptions, "match-any" and MTU values change."""
    status = qoscnv_remove_description(qos)
    if status != OK:
        return status
    status = qoscnv_remove_match_any(qos)
    if status != OK:
        return status
    status = qoscnv_build_policymaps_db_downgrade(qos)
    if status != OK:
        qos.log(name, b"failed to build policymaps database for downgrade\n")
        return status
    status = qoscnv_rewrite_maps_4_2_1(qos, False)
    if status != OK:
        qos.log(name, b"Could not write out updated maps: %s\n", qos.world.status_text(status))
        return status
    qos.log(name, b"4_2_1 to 4_1_3 mtu conversion completed\n")
    return OK


def downgrade_below_4_1_3(qos, name):
    """Back to the single-type form."""
    status = qoscnv_remove_description(qos)
    if status != OK:
        return status
    status = qoscnv_build_policymaps_db_downgrade(qos)
    if status != OK:
        qos.log(name, b"failed to build policymaps database\n")
        return status
    for step in (qoscnv_identify_empty_classmaps, qoscnv_identify_empty_policymaps,
                 qoscnv_delete_type_qos_attachments, qoscnv_remove_type_qos,
                 qoscnv_remove_type_queuing, qoscnv_remove_type_nq, qoscnv_remove_qos_groups,
                 qoscnv_remove_empty_classmaps):
        status = step(qos)
        if status != OK:
            return status
    status, place = qoscnv_delete_policymaps(qos)
    if status != OK:
        return status
    status = qoscnv_write_policymaps(qos, place)
    if status != OK:
        return status
    status = qoscnv_delete_duplicate_attachments(qos)
    if status != OK:
        qos.log(name, b"Could not delete duplicate attachments: %s\n",
                qos.world.status_text(status))
    return status


def qosmgr_convert_ascii_4_1_3_downgrade(qos):
    """Downgrade to exactly 4.1(3), or to anything older."""
    name = b"qosmgr_convert_ascii_4_1_3_downgrade"
    qos.log(name, b"entering ...\n")
    if qos.triple("from") >= (4, 2, 1) and qos.triple("to") == (4, 1, 3):
        return downgrade_to_4_1_3(qos, name)
    return downgrade_below_4_1_3(qos, name)
