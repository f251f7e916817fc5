"""The QoS downgrade's cleanup passes."""

from engine import FAILED, OK, composed, operation, scan_words


def predicate(truth):
    """Give a predicate's answer as a message shows it."""
    return 1 if truth else 0


# ---------------------------------------------------------------- type words, qos-groups

def qoscnv_remove_type_qos(qos):
    """Strip " type qos"."""
    return qos.remove_regexp(b" type qos", 0, 0)


def qoscnv_remove_type_queuing(qos):
    """Strip " type queuing"."""
    return qos.remove_regexp(b" type queuing", 0, 0)


def qoscnv_remove_type_nq(qos):
    """Strip " type network-qos"."""
    return qos.remove_regexp(b" type network-qos", 0, 0)


def qoscnv_remove_qos_groups(qos):
    """Remove the qos-group actions and matches of one-digit groups."""
    status = qos.remove_regexp(b"set qos-group", 4, 3)
    if status != OK:
        return status
    status = qos.remove_regexp(b"  match qos-group", 0, 3)
    if status != OK:
        return status
    return qos.remove_regexp(b"\nmatch qos-group", -1, 3)


# ---------------------------------------------------------------- descriptions

@operation
def qoscnv_remove_description(qos):
    """Remove the descriptions that stand directly under a map line."""
    name = b"qoscnv_remove_description"
    qos.log(name, b"Removing description strings from class-maps and policy-maps ...\n")
    for keyword in (b"class-map", b"policy-map"):
        position = qos.file_start_qossection()
        if position is None:
            continue
        while True:
            hit = qos.find(b"\n" + keyword, position)
            if hit is None:
                break
            qos.log(name, b"found %s at byte %d\n", keyword, hit)
            map_line = hit + 1
            position = map_line
            description = qos.find(b"  description", map_line)
            if description is None:
                continue
            following = qos.nextline(description)
            if following is None:
                continue
            line = qos.prevline(description - 2)
            if bytes(qos.buf[line:line + 9]) != keyword[:9]:
                continue
            shown_line = bytes(qos.buf[line:line + 19]).split(b"\0")[0]
            qos.log(name, b"found %s description %s\n", keyword, shown_line)
            qos.delete_text(description, following - description)
    return OK


# ---------------------------------------------------------------- match-any

@operation
def qoscnv_remove_match_any(qos):
    """Take "match-any" out of type qos class-maps and add the two special
    class-maps, on the way from 5.0(2) or later to 4.1(3)."""
    name = b"qoscnv_remove_match_any"
    from_ge_5_0_2 = qos.triple("from") >= (5, 0, 2)
    to_eq_4_1_3 = qos.triple("to") == (4, 1, 3)
    qos.log(name, b"%s(%d): ver from_ge_5_0_2 %d, to_eq_4_1_3 %d\n", name, 2094,
            predicate(from_ge_5_0_2), predicate(to_eq_4_1_3))
    if not from_ge_5_0_2 or not to_eq_4_1_3:
        return OK
    position = qos.file_start_qossection()
    if position is None:
        return OK
    for special in (b"class-ip-multicast", b"class-all-flood"):
        text = composed(b"%s %s %s\n", b"\nclass-map", b"type qos", special)
        qos.insert_text(position, text)
        qos.log(name, b"insert %s length %d at byte %d\n", special, len(text), position)
        position += len(text)
    while True:
        hit = qos.find(b"\nclass-map", position)
        if hit is None:
            return OK
        qos.log(name, b"found class-map at byte %d\n", hit)
        position = hit + 1
        words = qos.words(position, b"class-map type %s %s %s")
        if len(words) < 3:
            continue
        type_word, second, classmap_name = words
        qos.log(name, b"class-map type %s %s name %s\n", type_word, second, classmap_name)
        if type_word[:3] != b"qos" or second[:8] != b"match-an":
            continue
        found = qos.find(b"type qos", position)
        if found is None:
            qos.log(name, b"\"%s\" not found for type %s class-map name %s\n", b"type qos",
                    type_word, classmap_name)
            continue
        qos.delete_text(found + 9, 10)
        qos.log(name, b"delete %s for type %s class-map name %s\n", b"match-any ", type_word,
                classmap_name)


# ---------------------------------------------------------------- empty class-maps

@operation
def qoscnv_remove_empty_classmaps(qos):
    """Delete class-maps without a body, except those to keep; each name to keep
    protects one class-map."""
    name = b"qoscnv_remove_empty_classmaps"
    qos.log(name, b"Removing non-user empty classmaps ...\n")
    position = qos.file_start_qossection()
    if position is None:
        return OK
    while True:
        hit = qos.find(b"\nclass-map", position)
        if hit is None:
            return OK
        qos.log(name, b"found class-map at byte %d\n", hit)
        map_line = hit + 1
        words = qos.words(map_line, b"class-map %s")
        classmap_name = words[0] if words else b""
        following = qos.skip_empty_lines(qos.nextline_or_end(map_line))
        stanza = qos.goto_nextstanza(map_line)
        qos.log(name, b"found class-map name %s\n", classmap_name)
        if classmap_name in qos.empty_classmaps:
            qos.log(name, b"class-map name %s matches user class-map name %s; skipping delete\n",
                    classmap_name, classmap_name)
            qos.empty_classmaps.remove(classmap_name)
            qos.trace_release(name)
            position = following - 1
        elif following == stanza:
            qos.log(name, b"deleting empty class-map name %s\n", classmap_name)
            qos.delete_text(map_line, following - map_line)
            position = map_line - 1
        else:
            position = following - 1


# ---------------------------------------------------------------- duplicate attachments

PASS_NAME = b"qoscnv_delete_duplicate_attachments"


def in_the_name_of_the_pass(half):
    """Let a half of the pass fail like an operation, under the pass's name."""
    half.__name__ = PASS_NAME.decode()
    return operation(half)


@in_the_name_of_the_pass
def delete_duplicates_on_system_qos(qos):
    """Leave one attachment under "system qos": the first, without a direction."""
    name = PASS_NAME
    qos.trace_allocation(name)      # name
    qos.trace_allocation(name)      # line
    hit = qos.find(b"\nsystem qos", 0)
    if hit is None:
        return OK
    qos.log(name, b"found system qos at byte %d\n", hit)
    position = hit + 1
    end = qos.nextstanza_or_end(position)
    qos.log(name, b"start of stanza: byte %d, end of stanza: byte %d\n", position, end)
    first = True
    while position < end:
        match = qos.find(b"service-policy", position)
        if match is None:
            qos.log(name, b"no more service-policies in the configuration\n")
            break
        if match >= end:
            qos.log(name, b"No more service-policies on system qos\n")
            break
        qos.log(name, b"found service-policy at byte %d\n", match)
        line = qos.attachment_line(match)
        qos.log(name, b"Line: %s\n", line)
        words = scan_words(line, 0, b"service-policy %s %s")
        if len(words) < 1:
            qos.log(name, b"unexpected service-policy format; aborting\n")
            return FAILED
        policy_name = words[-1]
        qos.log(name, b"found service-policy name %s\n", policy_name)
        line_start = match - 2
        size = qos.nextline_or_end(match) - line_start
        qos.delete_text(line_start, size)
        end -= size
        position = line_start
        if first:
            text = composed(b"  %s %s\n", b"service-policy", policy_name)
            qos.insert_text(line_start, text)
            end += len(text)
            position = line_start + len(text)
            first = False
    qos.trace_release(name)
    qos.trace_release(name)
    return OK


@in_the_name_of_the_pass
def walk_interfaces(qos):
    """Delete the second attachment of a direction on every interface."""
    name = PASS_NAME
    position = qos.file_start_qossection()
    if position is None:
        return OK
    while True:
        hit = qos.find(b"\ninterface", position)
        if hit is None:
            return OK
        qos.log(name, b"found interface at byte %d\n", hit)
        at = hit + 1
        end = qos.nextstanza_or_end(at)
        seen = {}
        while at < end:
            match = qos.find(b"service-policy", at)
            if match is None:
                qos.log(name, b"no more service-policies in the configuration\n")
                return OK
            if match >= end:
                qos.log(name, b"No more service-policies on this interface\n")
                break
            qos.log(name, b"found service-policy at byte %d\n", match)
            line = qos.attachment_line(match)
            qos.log(name, b"Line: %s\n", line)
            words = scan_words(line, 0, b"service-policy %s %s") + [b"", b""]
            direction, policy_name = words[0], words[1]
            qos.log(name, b"found service-policy name %s, dir %s\n", policy_name, direction)
            if direction not in (b"input", b"output"):
                qos.log(name, b"Unexpected service-policy direction %s\n", direction)
                return FAILED
            following = qos.nextline_or_end(match)
            if direction not in seen:
                seen[direction] = policy_name
                at = following
            elif policy_name == seen[direction]:
                line_start = match - 2
                qos.delete_text(line_start, following - line_start)
                end -= following - line_start
                at = line_start
            else:
                qos.log(name,
                        b"Non-matching service-policy names in %s direction: %s and %s\n",
                        direction, policy_name, seen[direction])
                return FAILED
        position = end - 2


def delete_duplicates_on_interfaces(qos):
    """Walk the interfaces with three work buffers, released on every exit."""
    for _ in range(3):      # input name, output name, line
        qos.trace_allocation(PASS_NAME)
    status = walk_interfaces(qos)
    for _ in range(3):
        qos.trace_release(PASS_NAME)
    return status


def qoscnv_delete_duplicate_attachments(qos):
    """Run both halves; the first failure ends the pass."""
    status = delete_duplicates_on_system_qos(qos)
    if status != OK:
        qos.log(PASS_NAME, b"could not delete duplicate attachments on system qos\n")
        return status
    status = delete_duplicates_on_interfaces(qos)
    if status != OK:
        qos.log(PASS_NAME, b"could not delete duplicate attachments on interfaces\n")
    return status
