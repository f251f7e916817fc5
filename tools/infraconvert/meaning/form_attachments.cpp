// Attachments: their type, their direction, and what they name.

#include "meaning/form_parts.h"

#include <unordered_set>

namespace infraconvert::meaning {

namespace {

// The same for one place and policy in both models.
std::string subject_of(const attachment_t &attachment) {
    return attachment.place + ", " + std::string(attachment.name);
}

std::string words_of(const attachment_t &attachment) {
    const std::string place =
        attachment.kind == place_kind_t::system ? "system qos" : attachment.place;
    const std::string direction =
        std::string(attachment.direction) + (attachment.direction.empty() ? "" : " ");
    return place + ", " +
           title("service-policy", attachment.type, direction + std::string(attachment.name));
}

bool has_good_form(const attachment_t &attachment) {
    const std::string_view type = attachment.type, direction = attachment.direction;
    if (attachment.kind == place_kind_t::control_plane)
        return type.empty() && direction == "input";
    const bool system = attachment.kind == place_kind_t::system;
    if (type == types::none)
        return direction.empty() == system;
    if (type == types::network)
        return direction.empty() && system;
    return direction == "input" || (type == types::queuing && direction == "output");
}

class attachments_t {
  public:
    explicit attachments_t(form_check_t &checked) : check(checked) {}

    void run() {
        for (const attachment_t &attachment : check.model.attachments)
            look_at(attachment);
    }

  private:
    void look_at(const attachment_t &attachment) {
        const bool plane = attachment.kind == place_kind_t::control_plane;
        const std::string_view type = plane ? types::control_plane : attachment.type;
        const bool known = check.knows_type(type);
        if (!known)
            check.refuse_type(type, words_of(attachment), attachment.line, touched_by(attachment));
        else if (!has_good_form(attachment))
            add(fault_t::attachment_form, attachment, "no attachment of this form may stand there");
        const std::string kind = place_key(attachment.place, attachment.type) + '\n';
        if (!taken.insert(kind + std::string(attachment.direction)).second)
            add(fault_t::second_attachment, attachment, "a second policy of this kind");
        if (check.model.policy_of(attachment))
            return;
        problem_t &problem =
            add(fault_t::attachment_without_map, attachment, "there is no such policy-map");
        problem.goes_with_another =
            !known && (problem.lines.size() == 1 || problem.goes_with_another);
    }

    static problem_t::touched_t touched_by(const attachment_t &attachment) {
        return {attachment.place, std::string(attachment.name), ""};
    }

    problem_t &add(fault_t fault, const attachment_t &attachment, const char *words) {
        return check.add(fault, subject_of(attachment), words_of(attachment) + ": " + words,
                         attachment.line, touched_by(attachment));
    }

    form_check_t &check;
    std::unordered_set<std::string> taken;
};

} // namespace

void check_attachments(form_check_t &check) { attachments_t(check).run(); }

} // namespace infraconvert::meaning
