// One untyped attachment to a line for each type that its policy-map has:
//
//     system qos                      system qos
//       service-policy p1               service-policy type qos input p1
//                                       service-policy type queuing input p1
//                                       service-policy type queuing output p1
//                                       service-policy type network-qos p1

#include "ipqosmgr/qosmgrcnv_util_config/language/ends.h"
#include "ipqosmgr/qosmgrcnv_util_config/mapdb/mapdb.h"
#include "ipqosmgr/qosmgrcnv_util_config/upgrade/upgrade.h"

using engine::length;
using engine::nowhere;
using engine::position_t;
using engine::scan_words;
using engine::words_t;

namespace {

constexpr qoscnv_pass_t pass{"qoscnv_rewrite_attachments"};
constexpr std::string_view attachment_line_start = "\n  service-policy";
constexpr std::string_view indentation = "  ";
constexpr size_t longest_direction = 9;

struct attachment_t {
    std::string direction; // empty under "system qos"
    const policymap_elem_t *pmap;
    bool on_system_qos() const { return direction.empty(); }
};

// Reads the attachment whose word "service-policy" stands at `word`. Returns false with a message.
bool read_attachment(position_t word, attachment_t &attachment) {
    const std::string line = qoscnv_getline(word, engine::area_size + newline_length);
    if (!pass.fits(line))
        return false;
    const words_t words = scan_words(line, "service-policy %s %s\n");
    if (words.count == 0)
        return pass.give_up("unexpected format for service-policy; aborting");
    const bool on_interface = words.count == 2;
    const std::string &name = words.word[on_interface ? 1 : 0];
    if (on_interface) {
        attachment.direction = words.word[0];
        if (attachment.direction.size() > longest_direction)
            return pass.give_up("unexpected format for service-policy; aborting");
        pass.log("service-policy %s is on an interface: dir %s\n", name.c_str(),
                 attachment.direction.c_str());
    } else {
        pass.log("service-policy %s is on system qos\n", name.c_str());
    }
    attachment.pmap = qoscnv_find_policymap(name);
    if (!attachment.pmap) {
        pass.log("could not find policy-map for service-policy %s; aborting\n", name.c_str());
        return false;
    }
    return true;
}

// Walks the attachments behind the start of the QoS section.
class rewriting_t {
  public:
    explicit rewriting_t(position_t section) : cp(section), stanza_end(section) {}

    // Returns false with a message.
    bool run() {
        position_t found = cp;
        while ((found = qoscnv_find(attachment_line_start, found)) != nowhere) {
            pass.log("found service-policy at byte %d\n", static_cast<int>(found));
            if (!rewrite(found))
                return false;
            found = cp - newline_length; // in front of the line that comes next
        }
        return true;
    }

  private:
    // Rewrites the attachment behind the newline at `newline`.
    bool rewrite(position_t newline) {
        const position_t line = newline + newline_length;
        if (newline >= stanza_end) {
            stanza_end = qoscnv_stanza_after(line);
            wrote_qos = false;
        }
        attachment_t attachment;
        if (!read_attachment(line + length(indentation), attachment))
            return false;
        cp = line;
        old_length = qoscnv_line_after(line) - line;
        const bool written = write_typed(attachment);
        if (old_length > 0)
            delete_old();
        return written;
    }

    void delete_old() {
        qoscnv_delete_text(cp, old_length);
        stanza_end -= old_length;
        old_length = 0;
    }

    bool write_typed(const attachment_t &attachment) {
        const policymap_elem_t &pmap = *attachment.pmap;
        if (!wrote_qos && pmap.sysqos) {
            if (!write("type qos", "input", pmap))
                return false;
            wrote_qos = true;
        }
        if ((pmap.type & QOSCNV_TYPE_QUEUING) && !write_queuing(attachment))
            return false;
        if (!(pmap.type & QOSCNV_TYPE_UF))
            return true;
        if (!attachment.on_system_qos())
            return pass.give_up(
                "Unexpected type unified-fabric service-policy on an interface; aborting");
        return write("type network-qos", "", pmap);
    }

    bool write_queuing(const attachment_t &attachment) {
        constexpr std::string_view type = "type queuing";
        const policymap_elem_t &pmap = *attachment.pmap;
        if (attachment.on_system_qos())
            return write(type, "input", pmap) && write(type, "output", pmap);
        return write(type, attachment.direction, pmap);
    }

    bool write(std::string_view type, std::string_view direction, const policymap_elem_t &pmap) {
        composed = "  service-policy ";
        for (const std::string_view word : {type, direction}) {
            if (!word.empty())
                composed.append(word).append(" ");
        }
        composed.append(pmap.name).append("\n");
        if (!pass.overwrite(cp, old_length, composed))
            return false;
        stanza_end += length(composed) - old_length;
        old_length = 0;
        pass.log("inserted \"%s\"", composed.c_str());
        return true;
    }

    position_t cp;           // behind the last line written
    position_t stanza_end;   // of the stanza that holds the attachment at hand
    uint32_t old_length = 0; // of its line, while nothing is written in the place of that
    bool wrote_qos = false;
    std::string composed; // written last; here, so that its memory serves the next one
};

} // namespace

syserr_t qoscnv_rewrite_attachments() {
    const position_t section = qoscnv_file_start_qossection();
    return section == nowhere || rewriting_t(section).run() ? 0 : engine::failure;
}
