#include "meaning/form.h"

#include <algorithm>
#include <set>

namespace infraconvert::meaning {

namespace {

std::string title(std::string_view keyword, std::string_view type, std::string_view name) {
    std::string text(keyword);
    if (!type.empty())
        (text += " type ") += type;
    return (text += ' ') += name;
}

std::string plain_place(const attachment_t &attachment) {
    return attachment.kind == place_kind_t::system ? "system qos" : attachment.place;
}

// The same for one place and policy in both models.
std::string subject(const attachment_t &attachment) {
    return attachment.place + ", " + std::string(attachment.name);
}

std::string title(const attachment_t &attachment) {
    return plain_place(attachment) + ", " +
           title("service-policy", attachment.type,
                 std::string(attachment.direction) + (attachment.direction.empty() ? "" : " ") +
                     std::string(attachment.name));
}

class checker_t {
  public:
    explicit checker_t(const model_t &checked) : model(checked), reads(checked.dialect) {}

    std::vector<problem_t> run() {
        check_maps();
        check_front_words();
        check_attachments();
        check_classes();
        check_actions();
        check_matches();
        check_spelling();
        check_vlans();
        check_fabric();
        check_misfits();
        check_line_ends();
        return std::move(problems);
    }

  private:
    using touched_t = problem_t::touched_t;

    // Adds to the problem of this fault and subject; the words are those of its first line.
    problem_t &add(fault_t fault, const std::string &subject, const std::string &words,
                   uint32_t line) {
        for (problem_t &known : problems) {
            if (known.fault == fault && known.subject == subject) {
                if (std::find(known.lines.begin(), known.lines.end(), line) == known.lines.end())
                    known.lines.push_back(line);
                known.weight = known.lines.size();
                return known;
            }
        }
        problems.push_back({fault, subject, words, {line}, 1, {}});
        return problems.back();
    }

    // ---- maps of another model

    // True when the release reads maps or attachments of this type.
    bool knows_type(std::string_view type) const {
        if (type == types::none)
            return !reads.typed;
        if (type == types::control_plane)
            return reads.control_plane;
        return reads.typed &&
               (type == types::qos || type == types::queuing || type == types::network);
    }

    problem_t &refuse_type(std::string_view type, const std::string &what, uint32_t line) {
        if (type == types::none)
            return add(fault_t::untyped_text, "", "maps and attachments without a type", line);
        if (type == types::control_plane)
            return add(fault_t::control_plane, "", "control-plane policies", line);
        if (!reads.typed)
            return add(fault_t::typed_text, "", "maps and attachments with a type", line);
        return add(fault_t::unknown_type, what, what + ": no such type", line);
    }

    void check_maps() {
        for (const class_map_t &map : model.class_maps) {
            for (const uint32_t line : map.headers) {
                if (!knows_type(map.type))
                    refuse_type(map.type, title("class-map", map.type, map.name), line)
                        .touches.push_back({"", "", std::string(map.name)});
            }
        }
        for (const policy_t &policy : model.policies) {
            for (const uint32_t line : policy.headers) {
                if (!knows_type(policy.type))
                    refuse_type(policy.type, title("policy-map", policy.type, policy.name), line)
                        .touches.push_back({"", std::string(policy.name), ""});
            }
        }
    }

    void check_front_words() {
        for (const front_words_t &front : model.front_words) {
            const bool known = front.words[0] == "match-any" || front.words[0] == "match-all";
            if (front.words.size() == 1 && known && reads.front_word)
                continue;
            problem_t &problem = add(
                fault_t::front_words, title("class-map", "", front.name),
                '"' + joined(front.words) + "\" in front of the name of a class-map", front.line);
            problem.weight = std::max(problem.weight, front.words.size());
            problem.touches.push_back({"", "", std::string(front.name)});
        }
    }

    // ---- attachments

    bool has_good_form(const attachment_t &attachment) const {
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

    // False when the release does not know attachments of this kind at all.
    bool check_type(const attachment_t &attachment) {
        const bool plane = attachment.kind == place_kind_t::control_plane;
        if (plane ? reads.control_plane : knows_type(attachment.type))
            return true;
        refuse_type(plane ? types::control_plane : attachment.type, title(attachment),
                    attachment.line)
            .touches.push_back({attachment.place, std::string(attachment.name), ""});
        return false;
    }

    void check_attachments() {
        std::set<std::string> taken;
        for (const attachment_t &attachment : model.attachments) {
            const bool known = check_type(attachment);
            const touched_t touched = {attachment.place, std::string(attachment.name), ""};
            if (known && !has_good_form(attachment))
                add(fault_t::attachment_form, subject(attachment),
                    title(attachment) + ": no attachment of this form may stand there",
                    attachment.line)
                    .touches.push_back(touched);
            const std::string kind = attachment.place + '\n' + std::string(attachment.type) + '\n' +
                                     std::string(attachment.direction);
            if (!taken.insert(kind).second)
                add(fault_t::second_attachment, subject(attachment),
                    title(attachment) + ": a second policy of this kind", attachment.line)
                    .touches.push_back(touched);
            if (known && !policy_of(attachment))
                add(fault_t::attachment_without_map, subject(attachment),
                    title(attachment) + ": there is no such policy-map", attachment.line)
                    .touches.push_back(touched);
        }
    }

    const policy_t *policy_of(const attachment_t &attachment) const {
        return model.policy(attachment.kind == place_kind_t::control_plane ? types::control_plane
                                                                           : attachment.type,
                            attachment.name);
    }

    // ---- classes

    bool is_attached(const policy_t &policy) const {
        return std::any_of(model.attachments.begin(), model.attachments.end(),
                           [&](const auto &each) { return policy_of(each) == &policy; });
    }

    static bool matches_nothing(const class_map_t &map) {
        const bool by_group = map.type == types::queuing || map.type == types::network;
        return by_group ? map.groups.empty() : map.matches.empty() && map.groups.empty();
    }

    void check_class(const policy_t &policy, const class_t &each) {
        if (is_predefined(each.name) || each.name.empty())
            return;
        const touched_t touched = {"", std::string(policy.name), std::string(each.name)};
        const class_map_t *map = model.class_map(policy.type, each.name);
        const std::string name = title("class-map", policy.type, each.name);
        const std::string same = title("class-map", "", each.name);
        if (!map)
            for (const uint32_t line : each.lines)
                add(fault_t::class_without_map, same, "there is no " + name, line)
                    .touches.push_back(touched);
        else if (matches_nothing(*map) && is_attached(policy))
            add(fault_t::empty_class_map, same,
                name + " matches nothing, and policy-map " + std::string(policy.name) + " uses it",
                map->headers.front())
                .touches.push_back(touched);
    }

    void check_classes() {
        for (const policy_t &policy : model.policies) {
            for (const class_t &each : policy.classes)
                check_class(policy, each);
        }
    }

    static bool may_say(std::string_view type, action_kind_t kind) {
        if (type == types::none || kind == action_kind_t::other)
            return true;
        return type == (kind == action_kind_t::group        ? types::qos
                        : kind == action_kind_t::scheduling ? types::queuing
                                                            : types::network);
    }

    void check_actions() {
        for (const policy_t &policy : model.policies) {
            for (const class_t &each : policy.classes) {
                for (const action_t &action : each.actions) {
                    if (may_say(policy.type, action.kind))
                        continue;
                    const std::string where = title("policy-map", policy.type, policy.name) +
                                              ", class " + std::string(each.name);
                    add(fault_t::action_of_other_type, where,
                        where + ": a policy-map of this type has no \"" + action.keyword + '"',
                        action.line)
                        .touches.push_back({"", std::string(policy.name), std::string(each.name)});
                }
            }
        }
    }

    void check_matches() {
        for (const class_map_t &map : model.class_maps) {
            const std::string name = title("class-map", map.type, map.name);
            const bool by_group = map.type == types::queuing || map.type == types::network;
            const auto refuse = [&](uint32_t line) {
                add(fault_t::match_of_other_type, name,
                    name + (by_group ? ": it can match qos-groups only"
                                     : ": it cannot match a qos-group"),
                    line)
                    .touches.push_back({"", "", std::string(map.name)});
            };
            if (by_group) {
                for (const criterion_t &criterion : map.matches)
                    refuse(criterion.line);
            } else {
                for (const group_t &group : map.groups)
                    refuse(group.line);
            }
        }
    }

    // ---- beyond QoS

    bool is_spelled_well(const spelled_t &spelled) const {
        const words_t all = split_words(spelled.text);
        const auto words = std::span(all).subspan(all[0] == "no" ? 1 : 0);
        switch (spelled.command) {
        case spelled_t::npiv:
            return begins_with(words, {"feature"}) == reads.npiv_feature;
        case spelled_t::fc_feature:
            if (words[0] != "feature")
                return reads.fc_security == fc_security_t::enable;
            return reads.fc_security == (words[1] == "port-security" ? fc_security_t::feature
                                                                     : fc_security_t::fc_feature);
        case spelled_t::fc_command:
            return (words[0] == "fc-port-security") ==
                   (reads.fc_security == fc_security_t::fc_feature);
        case spelled_t::mac:
            return words[0] == "mac-address-table" || reads.mac_by_blank;
        }
        return true;
    }

    void check_spelling() {
        constexpr const char *names[] = {"NPIV", "FC port security", "FC port security",
                                         "the MAC address table"};
        for (const spelled_t &spelled : model.spelled) {
            const std::string name = names[spelled.command];
            if (!is_spelled_well(spelled))
                add(fault_t::spelling, name,
                    "commands of " + name + " in the spelling of other releases", spelled.line);
        }
    }

    void check_vlans() {
        for (const vlan_stanza_t &stanza : model.vlans) {
            const bool alone = stanza.vlans.count() == 1 && stanza.other.empty();
            if (!reads.single_fcoe || stanza.fcoe.empty() || alone)
                continue;
            add(fault_t::fcoe_not_alone, "",
                "fcoe does not stand in a stanza of one VLAN with nothing else",
                stanza.fcoe.front());
        }
    }

    void check_fabric() {
        for (const auto &[key, block] : model.blocks) {
            if (!reads.fabric_order)
                break;
            uint32_t mode = 0, associate = 0;
            for (const line_t &line : block.fabric) {
                uint32_t &first = line.text.starts_with("fex") ? associate : mode;
                first = first == 0 ? line.number : first;
            }
            if (mode == 0 || associate == 0 || mode < associate)
                continue;
            for (const uint32_t line : {associate, mode})
                add(fault_t::fabric_order, "",
                    "\"fex associate\" stands ahead of \"switchport mode fex-fabric\"", line);
        }
    }

    void check_misfits() {
        for (const misfit_t &misfit : model.misfits) {
            const auto [fault, words] = told(misfit.kind);
            add(fault, misfit.subject, "\"" + misfit.subject + "\" " + words, misfit.line);
        }
    }

    static std::pair<fault_t, std::string> told(misfit_t::kind_t kind) {
        switch (kind) {
        case misfit_t::no_name:
            return {fault_t::no_name, "has no name"};
        case misfit_t::stray_line:
            return {fault_t::stray_line, "stands where no release reads it"};
        case misfit_t::map_line:
            return {fault_t::map_line, "is no line of such a map"};
        case misfit_t::class_type:
            return {fault_t::class_line,
                    "does not name the class as the type of its policy-map asks"};
        case misfit_t::vlan_list:
            return {fault_t::vlan_list, "is no list of VLANs"};
        case misfit_t::vlan_zero:
            return {fault_t::vlan_zero, "names VLAN 0 or leaves one out"};
        }
        return {fault_t::stray_line, ""};
    }

    void check_line_ends() {
        if (model.reading.carriage_returns > 0)
            add(fault_t::carriage_returns, "", "lines end with a carriage return",
                model.reading.first_carriage_return);
        if (!model.reading.ends_with_newline)
            add(fault_t::no_last_newline, "", "the last line has no end", model.reading.last_line);
    }

    const model_t &model;
    const dialect_t &reads;
    std::vector<problem_t> problems;
};

} // namespace

std::vector<problem_t> check_form(const model_t &model) { return checker_t(model).run(); }

std::vector<unused_t> unused_maps(const model_t &model) {
    std::vector<unused_t> unused;
    for (const class_map_t &map : model.class_maps) {
        const bool used =
            is_predefined(map.name) ||
            std::any_of(model.policies.begin(), model.policies.end(), [&](const policy_t &policy) {
                return policy.type == map.type && policy.find(map.name);
            });
        if (!used)
            unused.push_back({title("class-map", map.type, map.name), map.headers.front()});
    }
    for (const policy_t &policy : model.policies) {
        const bool used = std::any_of(
            model.attachments.begin(), model.attachments.end(), [&](const attachment_t &each) {
                const bool plane = each.kind == place_kind_t::control_plane;
                return each.name == policy.name &&
                       policy.type == (plane ? types::control_plane : each.type);
            });
        if (!used)
            unused.push_back(
                {title("policy-map", policy.type, policy.name), policy.headers.front()});
    }
    return unused;
}

} // namespace infraconvert::meaning
