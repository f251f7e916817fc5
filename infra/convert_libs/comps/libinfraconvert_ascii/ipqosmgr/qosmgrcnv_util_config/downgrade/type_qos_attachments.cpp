// Attachments of type qos go; those of the other types keep their line:
//
//     system qos                                    system qos
//       service-policy type qos input p1              service-policy type queuing input p1
//       service-policy type queuing input p1

#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"

using engine::nowhere;
using engine::position_t;

syserr_t qoscnv_delete_type_qos_attachments() {
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\n  service-policy type qos", cp)) != nowhere) {
        qoscnv_log("found service-policy type qos at byte %d\n", static_cast<int>(cp));
        const position_t line = cp + newline_length;
        qoscnv_delete_text(line, qoscnv_line_after(line) - line);
    }
    return 0;
}
