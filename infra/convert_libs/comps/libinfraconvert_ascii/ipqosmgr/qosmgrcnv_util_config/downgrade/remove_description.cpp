// Takes out the description that is the first body line of a class-map or policy-map:
//
//     class-map type qos match-any c1        class-map type qos match-any c1
//       description voice                      match cos 5
//       match cos 5

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"

using engine::length;
using engine::nowhere;
using engine::position_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_remove_description"};

// A line counts as a map line by so many of its first bytes: "class-map", or "policy-ma".
constexpr uint32_t compared_length = length("class-map");
// The trace shows so many bytes from the start of the map line on, also where the line is shorter.
constexpr uint32_t traced_length = length("class-map type qos ");
// From a line's start to the last byte of the line above.
constexpr uint32_t back_to_line_above = newline_length + 1;

// Removes the description at `found` when it stands directly below a map line. Returns false when
// it does not, and stays.
bool remove_below_map(std::string_view keyword, position_t found) {
    const position_t next_line = qoscnv_nextline(found);
    if (next_line == nowhere)
        return false;
    const position_t above = qoscnv_prevline(found - back_to_line_above, 0);
    const std::string traced = qoscnv_engine.text->copy(above, traced_length);
    if (!traced.starts_with(keyword.substr(0, compared_length)))
        return false;
    pass.log("found %s description %s\n", keyword.data(), traced.c_str());
    qoscnv_delete_text(found, next_line - found);
    return true;
}

void sweep(std::string_view keyword) {
    const std::string header = '\n' + std::string(keyword);
    engine::search_ahead_t descriptions(qoscnv_engine, "  description");
    position_t stays = nowhere; // the next description, once it is known to stay
    position_t found = qoscnv_file_start_qossection();
    while ((found = qoscnv_find(header, found)) != nowhere) {
        pass.log("found %s at byte %d\n", keyword.data(), static_cast<int>(found));
        found += newline_length;
        // Of this map, or of a later one.
        const position_t next = descriptions.from(found);
        if (next == stays || next == nowhere)
            continue;
        if (!remove_below_map(keyword, next))
            stays = next;
    }
}

} // namespace

syserr_t qoscnv_remove_description() {
    pass.log("Removing description strings from class-maps and policy-maps ...\n");
    sweep("class-map");
    sweep("policy-map");
    return 0;
}
