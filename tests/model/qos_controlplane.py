"""The 5.0(3) sub-release downgrade: control-plane lines go."""

from engine import FAILED, OK, POINTER, byte_at


def qoscnv_remove_copp_cfg(qos, match_config):
    """Remove a text up to the end of its line, everywhere."""
    name = b"qoscnv_remove_copp_cfg"
    qos.log(name, b"\n qoscnv_remove_copp_cfg called %s", match_config)
    if qos.buf is None:
        return OK
    position = 0
    while True:
        hit = qos.find(match_config, position)
        if hit is None:
            return OK
        qos.log(name, b"\ndeleting copp cfg for %s", match_config)
        end = qos.nextline_or_end(hit)
        qos.log(name, b"\nend_cp %s offset %d diff is %d cp is %c", POINTER, end, end - hit,
                byte_at(qos.buf, hit))
        qos.delete_text(hit, end - hit)
        position = max(hit - 2, 0)


def qoscnv_remove_type_controlplane(qos):
    """Run the four removals in order."""
    for text in (b"class-map type control-plane", b"policy-map type control-plane",
                 b"  class copp", b"    police pps"):
        if qoscnv_remove_copp_cfg(qos, text) != OK:
            return FAILED
    return OK


def qosmgr_convert_ascii_5_0_3_downgrade(qos):
    """The step that the routing calls."""
    name = b"qosmgr_convert_ascii_5_0_3_downgrade"
    qos.log(name, b"ENTERING .... qosmgr_convert_ascii_5_0_3_downgrade\n")
    return qoscnv_remove_type_controlplane(qos)
