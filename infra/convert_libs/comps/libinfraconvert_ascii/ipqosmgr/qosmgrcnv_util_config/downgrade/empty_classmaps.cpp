// Class-maps that matched nothing but a qos-group are empty by now and go, except the first one of
// each name that is to be kept:
//
//     class-map c1        (kept)        class-map c1
//       match cos 5                       match cos 5
//     class-map c1                      policy-map p1
//     policy-map p1

#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

#include <string>
#include <unordered_map>

using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_remove_empty_classmaps"};

// The list of class-maps to keep: by name, the link that points to the element. No name is on it
// twice.
class kept_t {
  public:
    kept_t() {
        for (list_elem_t **link = &empty_classmaps.first; *link; link = &(*link)->next)
            links.emplace((*link)->name, link);
    }

    // Takes `name` off the list. Returns false when it is not on it.
    bool consume(const std::string &name) {
        const auto found = links.find(name);
        if (found == links.end())
            return false;
        list_elem_t **link = found->second;
        links.erase(found);
        list_elem_t *elem = empty_classmaps.unlink(link);
        if (*link)
            links.at((*link)->name) = link; // now points to the one behind
        pass.log("class-map name %s matches user class-map name %s; skipping delete\n",
                 name.c_str(), elem->name);
        qoscnv_free_list_elem(pass, elem);
        return true;
    }

  private:
    std::unordered_map<std::string_view, list_elem_t **> links;
};

// Looks at the class-map at `map`. Returns where the search for the next one goes on, or nowhere,
// with a message, at a name that does not fit.
position_t keep_or_delete(position_t map, kept_t &kept) {
    const words_t words = scan_words(*qoscnv_engine.text, map, "class-map %s");
    if (!pass.fits(words))
        return nowhere;
    const std::string &name = words.word[0]; // empty when the text ends there
    const position_t next_line = qoscnv_past_empty_lines(qoscnv_line_after(map));
    pass.log("found class-map name %s\n", name.c_str());
    if (kept.consume(name) || next_line != qoscnv_goto_nextstanza(map))
        return next_line - newline_length;
    pass.log("deleting empty class-map name %s\n", name.c_str());
    qoscnv_delete_text(map, next_line - map);
    return map - newline_length;
}

} // namespace

syserr_t qoscnv_remove_empty_classmaps() {
    pass.log("Removing non-user empty classmaps ...\n");
    kept_t kept;
    position_t cp = qoscnv_file_start_qossection();
    while ((cp = qoscnv_find("\nclass-map", cp)) != nowhere) {
        pass.log("found class-map at byte %d\n", static_cast<int>(cp));
        cp = keep_or_delete(cp + newline_length, kept);
        if (cp == nowhere)
            return engine::failure;
    }
    return 0;
}
