// With the log on, every search starts at the first header, because it traces each that it passes.

#include "ipqosmgr/qosmgrcnv_util_config/upgrade/policymap_headers.h"

#include "ipqosmgr/qosmgrcnv_util_config/language/keywords.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/pass.h"

#include <algorithm>

using engine::length;
using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr std::string_view line_start = "\npolicy-map";
constexpr uint32_t overlap = length(line_start) - 1;

} // namespace

void policymap_headers_t::start_at(position_t section) {
    walking = true;
    next = section;
    passed_by.clear();
    moved = 0;
    places_known = true;
}

void policymap_headers_t::pass_by(const std::string &name, position_t header) {
    if (passed_by.empty())
        first_header = header;
    passed_by.emplace(name, header - moved);
    next = header + newline_length;
}

bool policymap_headers_t::find(const qoscnv_pass_t &pass, const std::string &name,
                               position_t &header) {
    pass.log("Altering existing policy-map %s to be of type qos ...\n", name.c_str());
    const position_t section = qoscnv_file_start_qossection();
    if (!walking || engine::log_is_on(qoscnv_engine))
        start_at(section);
    if (const auto passed = passed_by.find(name); passed != passed_by.end()) {
        if (places_known) {
            header = passed->second + moved;
            return true;
        }
        start_at(section);
    }
    for (position_t found = next; (found = qoscnv_find(line_start, found)) != nowhere;
         found = next) {
        pass.log("found policy-map at byte %d\n", static_cast<int>(found));
        header = found + newline_length;
        const words_t words = scan_words(*qoscnv_engine.text, header, "policy-map type qos %s");
        if (!pass.fits(words))
            return false;
        if (words.count == 0)
            return pass.give_up("unexpected format for policy-map; aborting");
        pass.log("found policy-map name %s\n", words.word[0].c_str());
        pass_by(words.word[0], header);
        if (words.word[0] == name)
            return true;
    }
    header = nowhere;
    return true;
}

void policymap_headers_t::edited(const engine::edit_t &edit) {
    if (!walking || edit.at >= next)
        return;
    if (edit.at + edit.removed > next) {
        walking = false;
        return;
    }
    const uint32_t by = edit.inserted - edit.removed;
    next += by;
    places_known &= edit.at + edit.removed <= first_header;
    first_header += by;
    moved += by;
    places_known &= qoscnv_engine.text->at(first_header - newline_length) == '\n';
    // A header that came with the edit has not been looked at. One right behind an insertion at a
    // line start has: only its newline is new.
    const position_t behind = edit.at + edit.inserted;
    const bool at_line_start = edit.removed == 0 && qoscnv_engine.text->at(edit.at - 1) == '\n';
    const position_t from = edit.at - std::min(edit.at, overlap);
    if (qoscnv_find(line_start, from, at_line_start ? behind - newline_length : behind) != nowhere)
        walking = false;
}
