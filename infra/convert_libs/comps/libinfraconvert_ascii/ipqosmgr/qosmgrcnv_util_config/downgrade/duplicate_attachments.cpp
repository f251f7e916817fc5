// What were attachments of several types are now several attachments of one policy. "system qos"
// keeps its first one, without a direction; an interface keeps one for each direction:
//
//     system qos                        system qos
//       service-policy input p1           service-policy p1
//       service-policy output p1        interface Ethernet1/1
//       service-policy p2                 service-policy input p1
//     interface Ethernet1/1
//       service-policy input p1
//       service-policy input p1

#include "engine/watchers.h"
#include "ipqosmgr/qosmgrcnv_util_config/downgrade/downgrade.h"
#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"

#include <algorithm>
#include <cstdlib>

using engine::length;
using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_delete_duplicate_attachments"};
constexpr std::string_view keyword = "service-policy";
constexpr const char *words_pattern = "service-policy %s %s";
constexpr std::string_view indentation = "  ";

// Memory for one line or name, traced like a record of the database.
class work_area_t {
  public:
    work_area_t() : area(static_cast<char *>(calloc(1, engine::area_size))) {
        pass.log("Allocating block of memory at %p\n", static_cast<void *>(area));
    }
    work_area_t(const work_area_t &) = delete;
    work_area_t &operator=(const work_area_t &) = delete;
    ~work_area_t() { free(area); }

    bool allocated() const { return area; }
    void hold(const std::string &text) { area[text.copy(area, engine::area_length)] = '\0'; }
    const char *text() const { return area; }
    // The trace of the release, which comes with the end of the half.
    void trace_release() const {
        if (area)
            pass.log("Freeing block of memory at %p\n", static_cast<void *>(area));
    }

  private:
    char *const area;
};

// What the search for the next attachment of a stanza came to.
enum class outcome_t {
    found,
    stanza_ended,
    none_left, // in the whole text
    failed,    // with a message
};

// The attachments of one stanza after another.
class stanza_walk_t {
  public:
    // Starts at the stanza whose first line is `line`.
    void enter(position_t line) {
        cp = line;
        end = qoscnv_stanza_after(line);
    }
    position_t stanza_end() const { return end; }
    bool is_past_end() const { return cp >= end; }

    // Finds the next attachment, and copies its line to `line`. `where` is what the log calls the
    // stanza.
    outcome_t next(const char *where, work_area_t &line) {
        attachment = keywords.from(cp);
        if (attachment == nowhere) {
            pass.log("no more service-policies in the configuration\n");
            return outcome_t::none_left;
        }
        if (attachment >= end) {
            pass.log("No more service-policies on %s\n", where);
            return outcome_t::stanza_ended;
        }
        pass.log("found service-policy at byte %d\n", static_cast<int>(attachment));
        const std::string copy = qoscnv_getline(attachment, engine::area_size + 1);
        if (!pass.fits(copy))
            return outcome_t::failed;
        pass.log("Line: %s\n", copy.c_str());
        line.hold(copy);
        return outcome_t::found;
    }

    void keep_line() { cp = qoscnv_line_after(attachment); }

    void delete_line() {
        cp = attachment - length(indentation);
        const uint32_t size = qoscnv_line_after(attachment) - cp;
        qoscnv_delete_text(cp, size);
        end -= size;
    }

    // Puts `written` where the deleted line stood, and goes on behind it.
    bool replace_deleted(const std::string &written) {
        end += length(written);
        return pass.write(cp, written);
    }

  private:
    engine::search_ahead_t keywords{qoscnv_engine, keyword};
    position_t cp = 0;
    position_t end = 0;
    position_t attachment = nowhere; // the one found last
};

// Keeps the first attachment of the stanza of `walk`, without its direction. Returns false with a
// message.
bool keep_first(stanza_walk_t &walk, work_area_t &name, work_area_t &line) {
    for (bool first = true; !walk.is_past_end(); first = false) {
        const outcome_t outcome = walk.next("system qos", line);
        if (outcome != outcome_t::found)
            return outcome != outcome_t::failed;
        const words_t words = scan_words(line.text(), words_pattern);
        if (words.count == 0)
            return pass.give_up("unexpected service-policy format; aborting");
        name.hold(words.word[static_cast<size_t>(words.count - 1)]); // the last one
        pass.log("found service-policy name %s\n", name.text());
        walk.delete_line();
        if (!first)
            continue;
        if (!walk.replace_deleted(std::string("  service-policy ") + name.text() + '\n'))
            return false;
    }
    return true;
}

bool clean_system_qos() {
    work_area_t name, line;
    if (!name.allocated() || !line.allocated())
        return pass.give_up("could not allocate memory");
    const position_t found = qoscnv_find("\nsystem qos", 0);
    if (found == nowhere)
        return true;
    pass.log("found system qos at byte %d\n", static_cast<int>(found));
    const position_t start = found + newline_length;
    stanza_walk_t walk;
    walk.enter(start);
    pass.log("start of stanza: byte %d, end of stanza: byte %d\n", static_cast<int>(start),
             static_cast<int>(walk.stanza_end()));
    if (!keep_first(walk, name, line))
        return false;
    name.trace_release();
    line.trace_release();
    return true;
}

// The attachment of an interface in one direction.
struct direction_t {
    const char *word;
    work_area_t name = {};
    bool seen = false; // in the interface at hand
};

class interface_cleaning_t {
  public:
    bool allocated() const {
        return std::ranges::all_of(directions, [](const auto &d) { return d.name.allocated(); }) &&
               line.allocated();
    }

    void trace_release() const {
        for (const direction_t &direction : directions)
            direction.name.trace_release();
        line.trace_release();
    }

    // Returns false with a message.
    bool run() {
        // From the end of a stanza back to where the newline in front of the next one is seen.
        constexpr uint32_t back_into_stanza = 2;
        position_t found = qoscnv_file_start_qossection();
        while ((found = qoscnv_find("\ninterface", found)) != nowhere) {
            pass.log("found interface at byte %d\n", static_cast<int>(found));
            walk.enter(found + newline_length);
            const outcome_t outcome = clean_interface();
            if (outcome == outcome_t::failed)
                return false;
            if (outcome == outcome_t::none_left)
                return true;
            found = walk.stanza_end() - back_into_stanza;
        }
        return true;
    }

  private:
    outcome_t clean_interface() {
        for (direction_t &direction : directions)
            direction.seen = false;
        while (!walk.is_past_end()) {
            const outcome_t outcome = walk.next("this interface", line);
            if (outcome != outcome_t::found)
                return outcome;
            if (!keep_or_delete())
                return outcome_t::failed;
        }
        return outcome_t::stanza_ended;
    }

    // Keeps the attachment just found when it is the first in its direction. Returns false, with a
    // message, when it is neither that nor the same as the first.
    bool keep_or_delete() {
        const words_t words = scan_words(line.text(), words_pattern);
        const auto &[dir, name, unused] = words.word;
        pass.log("found service-policy name %s, dir %s\n", name.c_str(), dir.c_str());
        for (direction_t &direction : directions) {
            if (dir == direction.word)
                return keep_or_delete(direction, name);
        }
        pass.log("Unexpected service-policy direction %s\n", dir.c_str());
        return false;
    }

    bool keep_or_delete(direction_t &direction, const std::string &name) {
        if (!direction.seen) {
            direction.name.hold(name);
            direction.seen = true;
            walk.keep_line();
            return true;
        }
        if (name == direction.name.text()) {
            walk.delete_line();
            return true;
        }
        pass.log("Non-matching service-policy names in %s direction: %s and %s\n", direction.word,
                 name.c_str(), direction.name.text());
        return false;
    }

    direction_t directions[2] = {{"input"}, {"output"}};
    work_area_t line;
    stanza_walk_t walk;
};

bool clean_interfaces() {
    interface_cleaning_t cleaning;
    const bool cleaned =
        cleaning.allocated() ? cleaning.run() : pass.give_up("could not allocate memory");
    cleaning.trace_release();
    return cleaned;
}

} // namespace

syserr_t qoscnv_delete_duplicate_attachments() {
    static constexpr struct {
        bool (*run)();
        const char *place;
    } halves[] = {{clean_system_qos, "system qos"}, {clean_interfaces, "interfaces"}};
    for (const auto &half : halves) {
        if (half.run())
            continue;
        pass.log("could not delete duplicate attachments on %s\n", half.place);
        return engine::failure;
    }
    return 0;
}
