// Whatever room a text has to grow, a conversion ends with the old file or with the whole new one.

#include "assoc/assoc_engine.h"
#include "engine/loaded.h"
#include "fc_port_sec/fcportsec_engine.h"
#include "fwm/fwmcnv_engine.h"
#include "ipqosmgr/qosmgrcnv_engine.h"
#include "npiv/npiv_engine.h"
#include "satmgr/satcnv_engine.h"

#include "include/libinfraconvertascii.h"

namespace {

struct row_t {
    engine::engine_t &instance;
    convertascii_startup_fn start;
    const char *from, *to;
    std::string text;
};

const std::string untyped =
    "\nclass-map a\nclass-map class-fcoe\n  match cos 3\npolicy-map p\n"
    "  class a\n    priority\n    pause\n  class class-all-flood\n    mtu 9000\n"
    "  class class-ip-multicast\n    bandwidth percent 2\n  class class-fcoe\n"
    "    mtu 2158\npolicy-map only-qos\n  class class-ip-multicast\n"
    "    set qos-group 2\n  class class-all-flood\n    set qos-group 3\n"
    "  class a\n    set qos-group 4\nsystem qos\n  service-policy p\n"
    "interface 1\n  service-policy input only-qos\n";
// A special class goes back into its policy when there is more in that than when it was taken out.
std::string with_special(const std::string &name) {
    return "\nclass-map a\nclass-map b\npolicy-map p\n  class " + name +
           "\n  class a\n    priority\npolicy-map q\n  class " + name +
           "\n  class a\n    set qos-group 2\nsystem qos\n  service-policy p\n";
}
const std::string typed =
    "\nclass-map type qos match-any a\n  match cos 1\nclass-map type network-qos a\n"
    "  match qos-group 2\npolicy-map type qos p\n  class type qos a\n    set qos-group 2\n"
    "policy-map type network-qos p\n  class type network-qos a\n    mtu 9000\n"
    "policy-map type queuing empty\nsystem qos\n  service-policy type network-qos p\n";

const row_t rows[] = {
    {qoscnv_engine, ipqosmgr_infra_convert_startup, "4.0(1)", "4.1(3)", untyped},
    {qoscnv_engine, ipqosmgr_infra_convert_startup, "4.0(1)", "4.1(3)",
     with_special("class-all-flood")},
    {qoscnv_engine, ipqosmgr_infra_convert_startup, "4.0(1)", "4.1(3)",
     with_special("class-ip-multicast")},
    {qoscnv_engine, ipqosmgr_infra_convert_startup, "4.1(3)", "5.0(2)", typed},
    {qoscnv_engine, ipqosmgr_infra_convert_startup, "5.0(2)", "4.1(3)", typed},
    {qoscnv_engine, ipqosmgr_infra_convert_startup, "5.0(2)", "4.0(1)", typed},
    {fcportsec_engine, fcportsec_infra_convert_startup, "4.1(2)", "4.2(1)",
     "port-security enable\nport-security a\nfeature port-security\n"},
    {fcportsec_engine, fcportsec_infra_convert_startup, "4.2(1)", "4.1(2)",
     "feature fc-port-security\n"},
    {npiv_engine, npiv_infra_convert_startup, "4.1(2)", "4.2(1)", "npiv enable\nnpiv enable\n"},
    {fwmcnv_engine, fwm_infra_convert_startup, "4.2(1)", "4.1(3)", "a\nmac address-table b\n"},
    {satcnv_engine, satmgr_infra_convert_startup, "4.2(1)", "5.0(3)",
     "interface a\n  fex associate 1\n  switchport mode fex-fabric"},
    {assoc_engine, assoc_infra_convert_startup, "4.1(3)", "5.0(2)",
     "vlan 1-40\n  fcoe\nvlan 50\n  fcoe\n"},
};

// Converts with room for `room` bytes more than the file holds.
std::string convert(const row_t &row, uint32_t room, syserr_t &status) {
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/ascii/system.cfg";
    support::write_file(file, row.text);
    row.instance.capacity_factor = 1;
    row.instance.capacity_extra = room;
    status = row.start(place.path().c_str(), "package", row.to, row.from);
    return support::read_file(file);
}

} // namespace

TEST(room, each_amount_gives_the_old_file_or_the_whole_new_one) {
    const auto outcome = support::run_in_process([] {
        for (const row_t &row : rows) {
            syserr_t status = 0;
            const std::string whole = convert(row, 10'000, status);
            uint32_t room = 2;
            for (std::string file; (file = convert(row, room, status)) != whole; room++) {
                if (status != engine::failure || file != row.text || room > 10'000)
                    return 1;
            }
            if (status != 0 || whole == row.text || whole.size() + 2 > row.text.size() + room)
                return 2;
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
}
