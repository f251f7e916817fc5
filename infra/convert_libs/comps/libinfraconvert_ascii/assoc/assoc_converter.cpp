// On the way from 4.1 to 5.x
//
//     vlan 10-11              vlan  10
//       fcoe                    fcoe
//       name storage    to    vlan  11
//                               fcoe
//                             vlan 10-11
//                               name storage

#include "assoc/assoc_converter.h"

#include "assoc/assoc_engine.h"
#include "assoc/assoc_vlan_list.h"
#include "include/libinfraconvertascii.h"

using engine::nowhere;
using engine::position_t;

namespace {

constexpr std::string_view vlan_word = "vlan ";
constexpr size_t flush_above = 1000; // characters of stanzas that are inserted at once

bool belongs_to_stanza(const std::string &line) { return line[0] == ' ' || line[1] == ' '; }

// How far a look through a stanza has come, for the next "vlan " in it: its line ends no earlier
// than that of the one before, so whoever comes to the end of a line in front of `to` may go on
// there. Not with the log on, which shows every line looked at.
struct seen_t {
    position_t to = 0;

    bool holds(position_t behind) const {
        return behind < to && assoc_engine.text->at(behind) == '\n' &&
               !engine::log_is_on(assoc_engine);
    }
};

// Looks for the "fcoe" line of the stanza whose "vlan " stands at `cp`, and removes it with the
// newline in front of it.
bool assoc_vlan_fcoe_enabled(position_t cp, seen_t &seen) {
    assoc_line_t line = assoc_getline(cp);
    if (line.found)
        assoc_log("\n <%s> \n", line.text.c_str());
    position_t behind = cp + line.newlines_in_front + line.length;
    if (seen.holds(behind))
        behind = seen.to;
    for (;;) {
        seen.to = behind;
        line = assoc_getline(behind);
        if (!line.found || !belongs_to_stanza(line.text))
            return false;
        assoc_log("    %s \n", line.text.c_str());
        const position_t start = behind + line.newlines_in_front;
        if (line.text == "  fcoe " || line.text == "  fcoe") {
            const uint32_t newline = line.newlines_in_front > 0 ? 1 : 0;
            assoc_delete_text(start - newline, newline + static_cast<uint32_t>(line.text.size()));
            return true;
        }
        behind = start + line.length;
    }
}

// Inserts stanzas from a position on, many at once.
class stanza_writer_t {
  public:
    explicit stanza_writer_t(position_t start) : at(start) {}

    // Adds a stanza for each VLAN of `range`. Returns false when an insertion was refused.
    bool write(const assoc_int_mono_range_t &range) {
        for (uint32_t id = range.lower_int; id <= range.upper_int; id++) {
            stanzas += "vlan  " + std::to_string(id) + "\n  fcoe\n";
            if (stanzas.size() > flush_above && !flush())
                return false;
        }
        return true;
    }

    // Inserts what was added and is not in the text yet. Returns false when that was refused.
    bool flush() {
        const auto size = static_cast<uint32_t>(stanzas.size());
        if (size == 0)
            return true;
        written += size;
        engine::log(assoc_engine, "assoc_update_ascii_vlan",
                    "To write size [%d] total[%d]  buf \n%s", static_cast<int>(size),
                    static_cast<int>(written), stanzas.c_str());
        const bool inserted = assoc_insert_text(at, stanzas);
        at += size;
        stanzas.clear();
        return inserted;
    }

    // Characters inserted so far.
    uint32_t total() const { return written; }

  private:
    position_t at;       // behind what is inserted
    std::string stanzas; // to be inserted there
    uint32_t written = 0;
};

// Writes a stanza for each VLAN of the list at `cp` in front of it. Returns the length of what it
// wrote; nowhere after a refused insertion.
uint32_t assoc_update_ascii_vlan(position_t cp) {
    assoc_int_multi_range_t vrange;
    if (!assoc_get_vlan_mrange(cp, vrange)) {
        assoc_log("Failed to get the vrange !!! \n");
        return 0;
    }
    stanza_writer_t writer(cp);
    for (size_t i = 0; i < vrange.size(); i++) {
        assoc_log("  Proc range %d  [%d-%d] \n", static_cast<int>(i),
                  static_cast<int>(vrange[i].lower_int), static_cast<int>(vrange[i].upper_int));
        if (!vrange[i].lacks_upper && !writer.write(vrange[i]))
            return nowhere;
    }
    return writer.flush() ? writer.total() : nowhere;
}

syserr_t assoc_convert_ascii() {
    assoc_log("Calling %s() ...\n", __func__);
    position_t vlan = 0;
    seen_t seen;
    while ((vlan = assoc_find(vlan_word, vlan)) != nowhere) {
        if (assoc_vlan_fcoe_enabled(vlan, seen)) {
            assoc_log("     -->fcoe enabled\n");
            const uint32_t inserted = assoc_update_ascii_vlan(vlan);
            if (inserted == nowhere)
                return engine::failure;
            vlan += inserted;
            seen.to += inserted;
        } else {
            assoc_log("     -->not fcoe enabled \n");
        }
        vlan += static_cast<uint32_t>(vlan_word.size());
    }
    return 0;
}

constexpr engine::rule_t rules[] = {
    {.id = "IC-VLAN-01",
     .plain_words = "takes the \"fcoe\" line out of each \"vlan\" stanza and writes a stanza with "
                    "\"fcoe\" for each of its VLANs in front",
     .applies = assoc_ver_from_4_1_to_5,
     .pipeline = assoc_convert_ascii},
};

syserr_t load_convert_save(const char *path) {
    syserr_t status = assoc_read_ascii_file(path);
    if (status == 0)
        status = engine::run_rules(rules);
    if (status == 0)
        status = engine::save_converted(assoc_engine, path);
    if (status == 0)
        assoc_log("Exit ascii convertion \n");
    return status;
}

syserr_t start(const engine::request_t &request) {
    assoc_log("assoc_infra_convert_startup:;  convert_startup invoked\n");
    assoc_log("pkg_name: %s\npath: %s\n", engine::text_or_null(request.pkg_name),
              engine::text_or_null(request.path));
    if (!request.from_pkg_version || !request.to_pkg_version) {
        assoc_log("release missing\n");
        return engine::failure;
    }
    if (!assoc_conversion_needed(request.from_pkg_version, request.to_pkg_version)) {
        assoc_log("ascii convertion not requred\n");
        return 0;
    }
    return load_convert_save(request.path);
}

} // namespace

constinit const std::span<const engine::rule_t> assoc_rules = rules;

syserr_t assoc_infra_convert_startup(const char *path, const char *pkg_name,
                                     const char *to_pkg_version, const char *from_pkg_version) {
    assoc_log_init();
    const syserr_t status = engine::guarded([&] {
        return start({path, pkg_name, to_pkg_version, from_pkg_version});
    });
    assoc_log_cleanup();
    return status;
}
