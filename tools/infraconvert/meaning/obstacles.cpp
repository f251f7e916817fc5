// What stands against a conversion before it is tried.

#include "meaning/compare.h"
#include "meaning/form.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

// The qos-groups 2 to 5 are there for classes of one's own.
constexpr size_t own_groups = 4;

difference_t obstacle(std::string words, std::vector<uint32_t> lines) {
    return {"IC091", std::move(words), {}, std::move(lines), {}};
}

// Typed releases have network-qos policies on the system only.
void find_network_actions(const model_t &model, std::vector<difference_t> &found) {
    for (const attachment_t &attachment : model.attachments) {
        const policy_t *policy = model.policy(attachment.type, attachment.name);
        if (!policy || attachment.kind != place_kind_t::interface)
            continue;
        std::vector<uint32_t> lines;
        for (const class_t &each : policy->classes) {
            for (const action_t &action : each.actions) {
                if (action.kind == action_kind_t::network)
                    lines.push_back(action.line);
            }
        }
        if (lines.empty())
            continue;
        lines.push_back(attachment.line);
        std::sort(lines.begin(), lines.end());
        found.push_back(obstacle(attachment.place + ": policy-map " + std::string(policy->name) +
                                     " has network-qos actions, which may stand under \"system "
                                     "qos\" only",
                                 lines));
    }
}

void count_own_classes(const model_t &model, std::vector<difference_t> &found) {
    const attachment_t *attachment = model.attached("system", types::none);
    const policy_t *policy = attachment ? model.policy(types::none, attachment->name) : nullptr;
    if (!policy)
        return;
    std::vector<uint32_t> lines;
    for (const class_t &each : policy->classes) {
        if (each.name != classes::rest && each.name != classes::fcoe)
            lines.push_back(each.lines.front());
    }
    if (lines.size() > own_groups)
        found.push_back(obstacle("policy-map " + std::string(policy->name) + " has " +
                                     std::to_string(lines.size()) +
                                     " classes of its own; there are four qos-groups for them",
                                 lines));
}

// Untyped releases take one policy at a place and in a direction.
void find_several_policies(const model_t &model, std::vector<difference_t> &found) {
    std::map<std::string, std::vector<const attachment_t *>> places;
    for (const attachment_t &attachment : model.attachments) {
        if (attachment.type != types::qos && attachment.kind != place_kind_t::control_plane)
            places[attachment.place + (attachment.kind == place_kind_t::system
                                           ? ""
                                           : ' ' + std::string(attachment.direction))]
                .push_back(&attachment);
    }
    for (const auto &[place, all] : places) {
        const bool one =
            std::all_of(all.begin(), all.end(), [first = all.front()](const attachment_t *each) {
                return each->name == first->name;
            });
        std::vector<uint32_t> lines;
        for (const attachment_t *each : all)
            lines.push_back(each->line);
        if (!one)
            found.push_back(obstacle(place + ": several policies are attached; before 4.1(3) a "
                                             "place takes one in each direction",
                                     lines));
    }
}

} // namespace

std::vector<difference_t> unsayable(std::string_view text, std::string_view from,
                                    std::string_view to) {
    const model_t model(text, from, from);
    const bool typed = dialect_of(read_release(to), read_release(from)).typed;
    std::vector<difference_t> found;
    if (!model.dialect.typed && typed) {
        find_network_actions(model, found);
        count_own_classes(model, found);
    }
    if (model.dialect.typed && !typed)
        find_several_policies(model, found);
    return found;
}

uint32_t other_version_line(std::string_view text, std::string_view release) {
    const reading_t reading(text);
    for (const stanza_t &stanza : reading.stanzas) {
        const words_t words = split_words(stanza.header.text);
        if (words.size() < 2 || words[0] != "version")
            continue;
        const release_t wrote = read_release(words[1]);
        return wrote.major > 0 && triple(wrote) != triple(read_release(release))
                   ? stanza.header.number
                   : 0;
    }
    return 0;
}

} // namespace infraconvert::meaning
