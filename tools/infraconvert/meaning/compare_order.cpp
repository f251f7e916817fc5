// The order of classes: a packet belongs to the first class that matches it.

#include "meaning/comparison.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

// A class of a policy that classifies, in its order.
struct ordered_t {
    std::string traffic, name;
    const class_map_t *map;
    uint32_t line;
    bool acts;           // it has actions
    std::string sharing; // the traffic in the group that it sets; empty: it sets none
};

struct order_t {
    std::vector<ordered_t> classes;
    std::unordered_map<std::string_view, std::vector<size_t>> by_traffic;

    // The class with the traffic of this one, and its name if there are several.
    std::optional<size_t> same_class(const ordered_t &wanted) const {
        const auto found = by_traffic.find(wanted.traffic);
        if (found == by_traffic.end())
            return {};
        for (const size_t each : found->second) {
            if (classes[each].name == wanted.name)
                return each;
        }
        return found->second.front();
    }

    bool has_name(std::string_view name) const {
        return std::any_of(classes.begin(), classes.end(),
                           [&](const ordered_t &each) { return each.name == name; });
    }
};

// The class is there by its name, or under a new one.
bool stays(const ordered_t &wanted, const order_t &from, const order_t &in) {
    const auto found = in.by_traffic.find(wanted.traffic);
    return in.has_name(wanted.name) ||
           (found != in.by_traffic.end() &&
            std::any_of(found->second.begin(), found->second.end(),
                        [&](size_t each) { return !from.has_name(in.classes[each].name); }));
}

// By match line the class that gets its packets: the first that has the line.
using takers_t = std::map<std::string_view, const ordered_t *>;

takers_t takers_of(const order_t &order) {
    takers_t takers;
    for (const ordered_t &each : order.classes) {
        for (const criterion_t &line : each.map->matches)
            takers.try_emplace(line.text, &each);
    }
    return takers;
}

// "cos 4", "cos 5" and "dscp 46" of "cos 4 or cos 5 and dscp 46".
std::set<std::string, std::less<>> criteria_in(std::string_view traffic) {
    std::set<std::string, std::less<>> criteria;
    for (size_t first = 0; first <= traffic.size();) {
        const size_t end = std::min(traffic.find(" or ", first), traffic.find(" and ", first));
        criteria.emplace(traffic.substr(first, end - first));
        if (end == traffic.npos)
            break;
        first = traffic.find(' ', end + 1) + 1;
    }
    return criteria;
}

// The match lines of which rows are different: that is told already.
std::set<std::string, std::less<>> lines_told(const std::vector<difference_t> &differences) {
    std::set<std::string, std::less<>> lines;
    for (const difference_t &difference : differences) {
        for (const row_change_t &change : difference.rows)
            lines.merge(criteria_in(change.row.traffic));
    }
    return lines;
}

// The traffic with which a class of a typed policy shares its group.
std::string sharing_of(const groups_t &groups, const class_t &from) {
    for (const action_t &action : from.actions) {
        if (action.kind == action_kind_t::group)
            return in_words(groups.of(action.group()));
    }
    return "";
}

order_t order_of(const model_t &model, const policy_t &policy) {
    order_t order;
    const groups_t groups(model, policy.type == types::qos ? &policy : nullptr);
    for (const class_t &each : policy.classes) {
        const traffic_t traffic = traffic_of(model, policy.type, each.name);
        if (!is_predefined(each.name) && !traffic.empty())
            order.classes.push_back({in_words(traffic), std::string(each.name),
                                     model.class_map(policy.type, each.name), each.lines.front(),
                                     !each.actions.empty(), sharing_of(groups, each)});
    }
    for (size_t i = 0; i < order.classes.size(); i++)
        order.by_traffic[order.classes[i].traffic].push_back(i);
    return order;
}

// The policies that classify at each place.
using classifiers_t = std::map<std::string, std::vector<const policy_t *>>;

classifiers_t classifiers_of(const model_t &model) {
    classifiers_t found;
    std::set<std::pair<std::string_view, const policy_t *>> known;
    for (const attachment_t &attachment : model.attachments) {
        const bool own =
            attachment.kind == place_kind_t::control_plane || attachment.type == types::none;
        const policy_t *policy =
            own ? model.policy_of(attachment) : policy_in_force(model, attachment.place);
        if (policy && known.insert({attachment.place, policy}).second)
            found[attachment.place].push_back(policy);
    }
    return found;
}

// A class of the original, and the one in its place.
struct moved_t {
    const ordered_t *old = nullptr, *now = nullptr;
};

// The classes that matched a line so far: the last, and the last that has actions.
struct former_t {
    moved_t last, acting;
};

class order_teller_t {
  public:
    explicit order_teller_t(comparison_t &compared_texts)
        : comparison(compared_texts), rows_told(lines_told(compared_texts.differences)) {}

    void run() {
        const classifiers_t now = classifiers_of(comparison.after.model);
        for (const auto &[place, policies] : classifiers_of(comparison.before.model)) {
            const auto there = now.find(place);
            for (const policy_t *policy : policies) {
                if (there != now.end())
                    compare(*policy, partner(*policy, there->second));
            }
        }
    }

  private:
    // The policy of this name, of its own type if there are several, else the first, which is the
    // one that holds.
    static const policy_t &partner(const policy_t &wanted,
                                   const std::vector<const policy_t *> &there) {
        const policy_t *named = nullptr;
        for (const policy_t *each : there) {
            if (each->name == wanted.name && (!named || each->type == wanted.type))
                named = each;
        }
        return named ? *named : *there.front();
    }

    const order_t &order(const model_t &model, const policy_t &policy) {
        auto [known, is_new] = orders.try_emplace(&policy);
        if (is_new)
            known->second = order_of(model, policy);
        return known->second;
    }

    void compare(const policy_t &old_policy, const policy_t &policy) {
        if (!compared.insert({&old_policy, &policy}).second)
            return;
        const order_t &old = order(comparison.before.model, old_policy);
        const order_t &now = order(comparison.after.model, policy);
        // By line. Where classes that share one stand in another order, two that follow each other
        // do.
        std::unordered_map<std::string_view, former_t> former;
        for (const ordered_t &each : old.classes) {
            const auto place = now.same_class(each);
            if (!place)
                continue;
            const moved_t moved = {&each, &now.classes[*place]};
            for (const criterion_t &line : each.map->matches)
                compare(former[line.text], moved);
        }
        compare_takers(old, now);
    }

    // Behind a class that only stood in front of others and is gone, or in front of which there is
    // a new one, classes keep their rows and get other packets. One class for all that shared a
    // group gets what the group got.
    void compare_takers(const order_t &old, const order_t &now) {
        const takers_t takers = takers_of(now);
        for (const auto &[line, was] : takers_of(old)) {
            const auto is = takers.find(line);
            if (is == takers.end() || rows_told.contains(line))
                continue;
            if (is->second->acts && is->second->traffic == was->sharing)
                continue;
            if (is->second->acts && !stays(*was, old, now))
                tell(*was, *is->second,
                     " is gone, and its packets belong to class " + is->second->name);
            else if (was->acts && !stays(*is->second, now, old))
                tell(*was, *is->second, " lost packets to class " + is->second->name);
        }
    }

    void tell(const ordered_t &was, const ordered_t &is, const std::string &what) {
        const std::string words = "class " + was.name + what;
        if (told.insert(words).second)
            comparison.add("IC055", words, {was.line}, {is.line});
    }

    void compare(former_t &former, const moved_t &moved) {
        const bool again = former.last.old == moved.old; // the line stands twice in the class
        if (!again && former.last.now > moved.now)
            tell(former.last, moved, "changed places");
        // As one class the second's actions reach packets that the first took.
        if (!again && moved.old->acts && former.acting.now == moved.now)
            tell(former.acting, moved, "are one class");
        former.last = moved;
        if (moved.old->acts)
            former.acting = moved;
    }

    void tell(const moved_t &first, const moved_t &second, const char *what) {
        const std::string words = "classes " + first.old->name + " and " + second.old->name +
                                  " match the same packets and " + what;
        if (told.insert(words).second)
            comparison.add("IC055", words, {first.old->line, second.old->line},
                           {first.now->line, second.now->line});
    }

    comparison_t &comparison;
    const std::set<std::string, std::less<>> rows_told;
    std::unordered_map<const policy_t *, order_t> orders;
    std::set<std::pair<const policy_t *, const policy_t *>> compared;
    std::set<std::string> told;
};

} // namespace

void compare_order(comparison_t &comparison) { order_teller_t(comparison).run(); }

} // namespace infraconvert::meaning
