// The headers of the policy-maps, looked for by name one policy after the other:
//
//     policy-map type qos p1        found first
//     policy-map type qos p2        found next, without a look at p1
//
// The policies come in the order of the text, so each search goes on behind the header found last.
#pragma once

#include "ipqosmgr/qosmgrcnv_engine.h"

#include <set>
#include <string>
#include <string_view>

class policymap_headers_t final : engine::edit_watcher_t {
  public:
    policymap_headers_t() : edit_watcher_t(qoscnv_engine) {}

    // Finds the header line of the type qos policy-map `name` for `pass`: nowhere in `header` when
    // the text has none. Returns 0, or -1 with a message at a header, in front of it, that is not
    // of type qos.
    syserr_t find(const char *pass, std::string_view name, engine::position &header);

  private:
    void edited(const engine::edit_t &edit) override;
    engine::position first_to_look_at(engine::position section, std::string_view name);

    bool walking = false;
    engine::position next = 0;                    // the headers in front of it are of type qos
    std::set<std::string, std::less<>> passed_by; // their names
};
