// The existing policy-map as the type qos policy of its name. With actions of other types it loses
// all its actions, and under "system qos" each class sets its qos-group instead:
//
//     policy-map type qos p1            policy-map type qos p1
//       class c1                          class type qos c1
//         bandwidth percent 20              set qos-group 2
//
// With qos actions only it keeps them.

#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/policymap_headers.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"

#include <algorithm>

using engine::length;
using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr std::string_view class_keyword = "class";
constexpr std::string_view class_line_start = "  class";
constexpr std::string_view type_mark = "type qos "; // as it goes in front of a name
constexpr uint32_t blank_length = 1;

// The body of the policy-map.
struct body_t {
    position_t first; // of its lines
    position_t end;
};

body_t body_of(position_t header) {
    const position_t next = qoscnv_find("policy-map", header + 1);
    return {qoscnv_line_after(header), next != nowhere ? next : qoscnv_stanza_after(header)};
}

// A class line that has just been marked "type qos".
struct class_line_t {
    std::string name;
    position_t behind_line;  // start of the line behind it, before it was marked
    position_t behind_class; // behind "class" and its blank
};

// Marks the class line at `line`. Returns false with a message.
bool mark_class(const qoscnv_pass_t &pass, position_t line, class_line_t &marked) {
    const words_t found = scan_words(*qoscnv_engine.text, line, "  class %s");
    if (!pass.fits(found))
        return false;
    if (found.count == 0)
        return pass.give_up("unexpected format for class; aborting");
    marked.behind_line = qoscnv_line_after(line);
    pass.log("found class name %s\n", found.word[0].c_str());
    const position_t keyword = qoscnv_find(class_keyword, line);
    if (keyword == nowhere)
        return pass.give_up("unexpected error during class processing; aborting");
    marked.behind_class = keyword + length(class_keyword) + blank_length;
    if (!qoscnv_insert_text(marked.behind_class, type_mark))
        return false;
    const words_t name = scan_words(*qoscnv_engine.text, marked.behind_class, "type qos %s\n");
    if (!pass.fits(name))
        return false;
    if (name.count == 0)
        return pass.give_up("unexpected error during class name processing; aborting");
    marked.name = name.word[0];
    return true;
}

// The next class line that does not lie behind the end of the body, else nowhere.
position_t next_class(const class_line_t &cls, position_t body_end) {
    return qoscnv_find(class_line_start, cls.behind_class, body_end + 1);
}

std::string set_qos_group_line(uint8_t group) {
    return "    set qos-group " + std::to_string(group) + '\n';
}

// Writes the line of a special class at `at`, which moves behind it.
bool put_back(const qoscnv_pass_t &pass, std::string_view name, position_t &at) {
    pass.log("inserting %s back into policy\n", name.data());
    return pass.write(at, "  class type qos " + std::string(name) + '\n');
}

// The rewriting of one policy-map with queuing or unified-fabric actions.
class alteration_t {
  public:
    alteration_t(const policymap_elem_t &policymap, body_t policymap_body)
        : pmap(policymap), body(policymap_body), cp(policymap_body.first) {}

    // Returns false with a message.
    bool run() {
        while (cp < body.end && !done) {
            if (!alter_class())
                return false;
        }
        // The second goes in at the same place, so it ends up first.
        return put_special_back(class_all_flood, all_flood_group) &&
               put_special_back(class_ip_multicast, ip_multicast_group);
    }

    static constexpr qoscnv_pass_t pass{"qoscnv_alter_existing_policymap"};

  private:
    bool alter_class() {
        class_line_t cls;
        if (!mark_class(pass, cp, cls))
            return false;
        const bool special = trace_special(cls.name);
        uint8_t group = qos_group_unassigned;
        if (qoscnv_classmap_to_qosgrp(cls.name.c_str(), &group) != 0) {
            pass.log("Could not find qos-group for %s; aborting\n", cls.name.c_str());
            return false;
        }
        remember(cls.name, group);
        body.end += length(type_mark);
        const position_t next = next_class(cls, body.end);
        done = next == nowhere;
        const position_t end = done ? body.end : next;
        const position_t actions = special ? cp : qoscnv_line_after(cls.behind_class);
        if (actions > end)
            return pass.give_up("unexpected format for class; aborting");
        remove(actions, end - actions);
        pass.log("Deleted existing actions for %s\n", cls.name.c_str());
        if (special)
            return true; // the next class stands here now
        return group == qos_group_unassigned ? remove_class(cls) : set_group(cls, actions, group);
    }

    // A class without a qos-group has no place in a type qos policy.
    bool remove_class(const class_line_t &cls) {
        remove(cp, cls.behind_line + length(type_mark) - cp);
        pass.log("Deleted existing class %s since no type qos action for it\n", cls.name.c_str());
        return true;
    }

    bool set_group(const class_line_t &cls, position_t actions, uint8_t group) {
        cp = actions;
        if (!pmap.sysqos)
            return true;
        if (!pass.write(cp, set_qos_group_line(group)))
            return false;
        body.end += cp - actions;
        pass.log("Added 'set qos-group %u' action to %s\n", group, cls.name.c_str());
        return true;
    }

    void remove(position_t from, uint32_t size) {
        qoscnv_delete_text(from, size);
        body.end -= size;
    }

    bool trace_special(const std::string &name) {
        static constexpr struct {
            std::string_view name;
            const char *trace;
        } special_classes[] = {{class_default, "found class-default class\n"},
                               {class_fcoe, "found class-fcoe class\n"},
                               {class_ip_multicast, "found class-ip-multicast\n"},
                               {class_all_flood, "found class-all-flood\n"}};
        for (const auto &special : special_classes) {
            if (name != special.name)
                continue;
            pass.log("%s", special.trace);
            return true;
        }
        return false;
    }

    void remember(const std::string &name, uint8_t group) {
        if (name == class_ip_multicast)
            ip_multicast_group = group;
        if (name == class_all_flood)
            all_flood_group = group;
    }

    bool put_special_back(std::string_view name, uint8_t group) {
        if (group == qos_group_unassigned)
            return true;
        position_t at = body.first;
        return put_back(pass, name, at) &&
               (!pmap.sysqos || pass.write(at, set_qos_group_line(group)));
    }

    const policymap_elem_t &pmap;
    body_t body;
    position_t cp; // the class at hand
    bool done = false;
    uint8_t ip_multicast_group = qos_group_unassigned;
    uint8_t all_flood_group = qos_group_unassigned;
};

// The rewriting of one policy-map with qos actions only.
class marking_t {
  public:
    explicit marking_t(body_t policymap_body) : body(policymap_body) {}

    // Returns false with a message.
    bool run() {
        for (position_t cp = body.first; cp != nowhere && cp < body.end;) {
            if (!mark_next(cp))
                return false;
        }
        return put_special_back(class_all_flood, all_flood_seen) &&
               put_special_back(class_ip_multicast, ip_multicast_seen);
    }

    static constexpr qoscnv_pass_t pass{"qoscnv_alter_existing_type_qos_policymap"};

  private:
    // Marks the class at `cp`, which moves to the next one.
    bool mark_next(position_t &cp) {
        class_line_t cls;
        if (!mark_class(pass, cp, cls))
            return false;
        body.end += length(type_mark);
        if (!qoscnv_is_special_class(cls.name)) {
            cp = qoscnv_find(class_line_start, cls.behind_class, body.end);
            return true;
        }
        (cls.name == class_ip_multicast ? ip_multicast_seen : all_flood_seen) = true;
        pass.log("found %s\n", cls.name.c_str());
        const uint32_t size = std::min(next_class(cls, body.end), body.end) - cp;
        qoscnv_delete_text(cp, size);
        body.end -= size;
        pass.log("Deleted special class %s\n", cls.name.c_str());
        cp = qoscnv_find(class_line_start, cp, body.end);
        return true;
    }

    bool put_special_back(std::string_view name, bool seen) {
        position_t at = body.first;
        return !seen || put_back(pass, name, at);
    }

    body_t body;
    bool ip_multicast_seen = false;
    bool all_flood_seen = false;
};

} // namespace

syserr_t qoscnv_alter_existing_policymap(const policymap_elem_t &pmap,
                                         policymap_headers_t &headers) {
    position_t header = nowhere;
    const bool altered = headers.find(alteration_t::pass, pmap.name, header) &&
                         (header == nowhere || alteration_t(pmap, body_of(header)).run());
    return altered ? 0 : engine::failure;
}

syserr_t qoscnv_alter_existing_type_qos_policymap(const policymap_elem_t &pmap,
                                                  policymap_headers_t &headers) {
    position_t header = nowhere;
    const bool marked = headers.find(marking_t::pass, pmap.name, header) &&
                        (header == nowhere || marking_t(body_of(header)).run());
    return marked ? 0 : engine::failure;
}
