"""Start function and routing of the QoS converter."""

from engine import OK, start_sequence
from qos_controlplane import qosmgr_convert_ascii_5_0_3_downgrade
from qos_downgrade import qosmgr_convert_ascii_4_1_3_downgrade
from qos_mtu import qosmgr_convert_ascii_4_2_1_upgrade
from qos_upgrade import qosmgr_convert_ascii_4_1_3_upgrade


def sub_release_downgrade(qos):
    """Tell whether the pair goes from 5.0(3) U2 to 5.0(3) U1."""
    return (qos.triple("from") == (5, 0, 3) and qos.triple("to") == (5, 0, 3)
            and qos.pair["from_product"] == ord("U") and qos.pair["to_product"] == ord("U")
            and qos.pair["from_subversion"] == 2 and qos.pair["to_subversion"] == 1)


def qosmgr_convert_ascii_btw_diff_versions(qos):
    """Run the pipeline of the rule that holds, if any."""
    name = b"qosmgr_convert_ascii_btw_diff_versions"
    qos.log(name, b"Calling %s() ...\n", name)
    qos.db_init()
    status = OK
    source = qos.triple("from")
    target = qos.triple("to")
    if source >= (4, 2, 1) and target == (4, 1, 3):
        status = qosmgr_convert_ascii_4_1_3_downgrade(qos)
    if source >= (4, 2, 1) and target < (4, 1, 3):
        status = qosmgr_convert_ascii_4_1_3_downgrade(qos)
    if source == (4, 1, 3) and target >= (4, 2, 1):
        status = qosmgr_convert_ascii_4_2_1_upgrade(qos)
    elif source < (4, 1, 3) and (target == (4, 1, 3) or target >= (4, 2, 1)):
        status = qosmgr_convert_ascii_4_1_3_upgrade(qos)
    if sub_release_downgrade(qos):
        status = qosmgr_convert_ascii_5_0_3_downgrade(qos)
    return status


def same_release(qos):
    """Tell whether the pair counts as one release."""
    return qos.triple("from") == qos.triple("to") and not sub_release_downgrade(qos)


def ipqosmgr_infra_convert_startup(qos, path, pkg_name, to_version, from_version):
    """Start function of the QoS converter."""
    return start_sequence(qos, b"ipqosmgr_infra_convert_startup", b"qosmgr", same_release,
                          b"from and to versions are exactly the same; no conversion required\n",
                          qosmgr_convert_ascii_btw_diff_versions,
                          path, pkg_name, to_version, from_version)
