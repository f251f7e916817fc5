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
    bool acts; // it has actions
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
};

order_t order_of(const model_t &model, const policy_t &policy) {
    order_t order;
    for (const class_t &each : policy.classes) {
        const traffic_t traffic = traffic_of(model, policy.type, each.name);
        if (!is_predefined(each.name) && !traffic.empty())
            order.classes.push_back({in_words(traffic), std::string(each.name),
                                     model.class_map(policy.type, each.name), each.lines.front(),
                                     !each.actions.empty()});
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
    explicit order_teller_t(comparison_t &compared_texts) : comparison(compared_texts) {}

    void run() {
        const classifiers_t now = classifiers_of(comparison.after.model);
        for (const auto &[place, policies] : classifiers_of(comparison.before.model)) {
            const auto there = now.find(place);
            for (const policy_t *policy : policies) {
                if (policy->classes.size() > 1 && there != now.end())
                    compare(*policy, partner(*policy, there->second));
            }
        }
    }

  private:
    // The policy of this name, else the first, which is the one that holds.
    static const policy_t &partner(const policy_t &wanted,
                                   const std::vector<const policy_t *> &there) {
        for (const policy_t *each : there) {
            if (each->name == wanted.name)
                return *each;
        }
        return *there.front();
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
    std::unordered_map<const policy_t *, order_t> orders;
    std::set<std::pair<const policy_t *, const policy_t *>> compared;
    std::set<std::string> told;
};

} // namespace

void compare_order(comparison_t &comparison) { order_teller_t(comparison).run(); }

} // namespace infraconvert::meaning
