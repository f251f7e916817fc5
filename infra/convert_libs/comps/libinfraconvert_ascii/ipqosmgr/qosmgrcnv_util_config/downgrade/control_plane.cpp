// Sub-version 1 of 5.0(3) U knows no control-plane policing; of each line below goes the rest, from
// the text on:
//
//     class-map type control-plane match-any copp-arp
//     policy-map type control-plane copp-policy
//       class copp-arp
//         police pps 20
//
// The lines below a class-map stay.

#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"

#include <algorithm>

using engine::nowhere;
using engine::position_t;

namespace {

void qoscnv_remove_copp_cfg(const std::string &match_config) {
    // The search goes on so far in front of a removal, where the joined text may match.
    constexpr uint32_t back_before_removal = 2;
    qoscnv_log("\n qoscnv_remove_copp_cfg called %s", match_config.c_str());
    position_t cp = 0;
    while ((cp = qoscnv_find(match_config, cp)) != nowhere) {
        qoscnv_log("\ndeleting copp cfg for %s", match_config.c_str());
        const position_t end_cp = qoscnv_line_after(cp);
        qoscnv_log("\nend_cp 0x%x offset %d diff is %d cp is %c", end_cp, static_cast<int>(end_cp),
                   static_cast<int>(end_cp - cp), match_config.front());
        qoscnv_delete_text(cp, end_cp - cp);
        cp -= std::min(cp, back_before_removal);
    }
}

} // namespace

syserr_t qosmgr_convert_ascii_5_0_3_downgrade() {
    qoscnv_log("ENTERING .... qosmgr_convert_ascii_5_0_3_downgrade\n");
    for (const char *text : {"class-map type control-plane", "policy-map type control-plane",
                             "  class copp", "    police pps"})
        qoscnv_remove_copp_cfg(text);
    return 0;
}
