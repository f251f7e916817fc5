// The headers of the policy-maps, looked for by name one policy after the other:
//
//     policy-map type qos p1        found first
//     policy-map type qos p2        found next, without a look at p1
//
// The policies come in the order of the text, so each search goes on behind the header found last.
// A policy whose first header has no body comes later: its header has been passed by.
#pragma once

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"

#include <string>
#include <string_view>
#include <unordered_map>

class policymap_headers_t final : engine::edit_watcher_t {
  public:
    policymap_headers_t() : edit_watcher_t(qoscnv_engine) {}

    // Finds the header line of the type qos policy-map `name` for `pass`: nowhere in `header` when
    // the text has none. Returns false, with a message, at a header in front of it that is not of
    // type qos.
    bool find(const qoscnv_pass_t &pass, const std::string &name, engine::position_t &header);

  private:
    void edited(const engine::edit_t &edit) override;
    void start_at(engine::position_t section);
    void pass_by(const std::string &name, engine::position_t header);

    // What the walk behind `next` builds on: the headers in front of it are of type qos.
    bool walking = false;
    engine::position_t next = 0;
    // Their names, each with the place of its first header, less what edits in front of all headers
    // have moved them by. Edits between them leave only the names true.
    std::unordered_map<std::string, engine::position_t> passed_by;
    engine::position_t first_header = 0;
    uint32_t moved = 0;
    bool places_known = false;
};
