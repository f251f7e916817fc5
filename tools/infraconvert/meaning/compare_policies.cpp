// Policy-maps and their actions, as far as they give no row.

#include "meaning/content.h"
#include "meaning/form_parts.h"

#include <map>

namespace infraconvert::meaning {

void compare_policies(content_t &content) {
    comparison_t &comparison = content.comparison;
    for (const policy_t &policy : content.before.policies) {
        if (!content.after.policies_named(policy.name).empty() ||
            content.rows_before.policies.contains(policy.name) ||
            content.goes_with_control_plane(policy.type, policy.headers.front()))
            continue;
        comparison.add("IC021", "policy-map " + std::string(policy.name) + " is gone",
                       policy.headers, {});
    }
    for (const policy_t &policy : content.after.policies) {
        if (content.before.policies_named(policy.name).empty() &&
            !content.rows_after.policies.contains(policy.name))
            comparison.add("IC034", "policy-map " + std::string(policy.name) + " is new", {},
                           policy.headers);
    }
}

namespace {

struct lines_of_class_t {
    std::vector<std::string> actions;
    lines_t lines;

    void add(const action_t &action) {
        actions.push_back(action.text);
        lines.push_back(action.line);
    }

    // "bandwidth percent 40, priority are ": a verb follows.
    std::string subject() const {
        std::string text;
        for (const std::string &action : actions)
            (text += text.empty() ? "" : ", ") += action;
        text += actions.size() > 1 ? " are " : " is ";
        return text;
    }
};
using by_class_t = std::map<std::string, lines_of_class_t>;

bool says_the_same(const action_t &one, const action_t &other) {
    return one.text == other.text || (one.mtu && other.mtu); // sizes are told by themselves
}

// Calls `visit` for every action that no row tells of. Groups are means.
template<typename visit_t>
void for_each_action(const model_t &model, const in_rows_t &rows, visit_t visit) {
    for (const policy_t &policy : model.policies) {
        for (const class_t &each : policy.classes) {
            for (const action_t &action : each.actions) {
                if (action.kind != action_kind_t::group && !rows.actions.contains(action.line))
                    visit(policy, each, action);
            }
        }
    }
}

// Actions by their class, whatever their policy-map is called.
class nameless_t {
  public:
    explicit nameless_t(const model_t &model) {
        for (const policy_t &policy : model.policies) {
            for (const class_t &each : policy.classes) {
                for (const action_t &action : each.actions)
                    known.insert(key(each, action));
            }
        }
    }
    bool has(const class_t &of, const action_t &action) const {
        return known.contains(key(of, action));
    }

  private:
    static std::string key(const class_t &of, const action_t &action) {
        return std::string(of.name) + '\n' + (action.mtu ? action.keyword : action.text);
    }
    std::unordered_set<std::string> known;
};

class action_teller_t {
  public:
    explicit action_teller_t(content_t &told) : content(told), nameless(told.after) {}

    void run() {
        for_each_action(content.before, content.rows_before,
                        [&](const policy_t &policy, const class_t &of, const action_t &action) {
                            look_at_old(policy, of, action);
                        });
        for_each_action(content.after, content.rows_after,
                        [&](const policy_t &policy, const class_t &of, const action_t &action) {
                            look_at_new(policy, of, action);
                        });
        tell("IC030", gone, "gone", true);
        tell("IC034", added, "new", false);
    }

  private:
    void look_at_old(const policy_t &policy, const class_t &of, const action_t &action) {
        const action_t *same = find_action(content.after, policy, of, action);
        if (same && action.mtu && same->mtu && !may_say(policy.type, action.kind))
            return; // nothing reads it, so it is no size
        if (same && action.mtu && same->mtu)
            content.comparison.note_mtu(title_of(policy, of), {*action.mtu, action.line},
                                        {*same->mtu, same->line});
        else if (same ? same->text != action.text : is_lost(policy, of, action))
            gone[title_of(policy, of)].add(action);
    }

    // What a policy-map says that gives rows may stand under another name; what another one says
    // may not go with the rows of its namesake. Policy-maps that are gone as a whole are told so.
    bool is_lost(const policy_t &policy, const class_t &of, const action_t &action) {
        if (!content.after.policies_named(policy.name).empty())
            return true;
        if (content.goes_with_control_plane(policy.type, action.line) ||
            !content.rows_before.policies.contains(policy.name))
            return false;
        return !content.rows_before.having_rows.contains(&policy) || !nameless.has(of, action);
    }

    void look_at_new(const policy_t &policy, const class_t &of, const action_t &action) {
        const action_t *same = find_action(content.before, policy, of, action);
        const bool is_new = !same || !says_the_same(*same, action);
        if (is_new && !content.before.policies_named(policy.name).empty())
            added[title_of(policy, of)].add(action);
    }

    void tell(finding_code_t code, const by_class_t &classes, const char *verb, bool of_original) {
        for (const auto &[where, found] : classes) {
            std::string words = where;
            ((words += ": ") += found.subject()) += verb;
            content.comparison.add(code, words, of_original ? found.lines : lines_t(),
                                   of_original ? lines_t() : found.lines);
        }
    }

    content_t &content;
    const nameless_t nameless;
    by_class_t gone, added;
};

} // namespace

void compare_actions(content_t &content) { action_teller_t(content).run(); }

} // namespace infraconvert::meaning
