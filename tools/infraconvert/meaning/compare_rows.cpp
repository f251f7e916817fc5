// Rows of the effect table that are lost, gained or changed, told by their cause: the attachment
// that is gone, the class that changed, the traffic that it meets.

#include "meaning/pairing.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

// ---- words

std::string effect_in_words(const row_t &row) {
    if (!row.is_marking())
        return row.effect + " for " + row.traffic;
    const bool as_on_system = row.effect == "goes with " + row.traffic;
    return "marking of " + row.traffic + (as_on_system ? "" : " (" + row.effect + ')');
}

std::string listed(const std::vector<std::string> &parts, const char *last, size_t most) {
    std::string text;
    for (size_t i = 0; i < std::min(parts.size(), most); i++)
        text += (i == 0 ? "" : i + 1 == parts.size() ? last : ", ") + parts[i];
    if (parts.size() > most)
        text += " and " + std::to_string(parts.size() - most) + " more";
    return text;
}

void add_once(std::vector<std::string> &parts, const std::string &part) {
    if (std::find(parts.begin(), parts.end(), part) == parts.end())
        parts.push_back(part);
}

// "Ethernet1/1 input and output" where both say the same.
std::vector<std::string> places_in_words(const std::vector<const row_t *> &rows) {
    std::vector<std::string> places, told;
    for (const row_t *row : rows)
        add_once(places, row->place);
    for (const std::string &place : places) {
        row_t named = {.place = place,
                       .direction = {},
                       .traffic = {},
                       .effect = {},
                       .keyword = {},
                       .policy = {},
                       .type = {},
                       .class_name = {}};
        std::vector<std::string> directions;
        for (const row_t *row : rows) {
            if (row->place == place && !row->direction.empty())
                add_once(directions, row->direction);
        }
        const std::string both = listed(directions, " and ", 2);
        told.push_back(place_in_words(named) + (both.empty() ? "" : " ") + both);
    }
    return told;
}

// "system input and output: priority for cos 5", for all rows.
std::string rows_in_words(const std::vector<const row_t *> &rows, const char *verb) {
    constexpr size_t most_places = 3, most_effects = 4;
    std::map<std::string, std::vector<const row_t *>> by_effect;
    for (const row_t *row : rows)
        by_effect[effect_in_words(*row)].push_back(row);
    std::map<std::string, std::vector<std::string>> by_places;
    for (const auto &[effect, having] : by_effect)
        by_places[listed(places_in_words(having), " and ", most_places)].push_back(effect);
    std::string text;
    for (const auto &[places, effects] : by_places)
        text += (text.empty() ? "" : "; ") + places + ": " +
                listed(effects, " and ", most_effects) + (effects.size() > 1 ? " are " : " is ") +
                verb;
    return text;
}

// ---- causes

struct group_t {
    const char *code;
    std::string words = {}; // empty: those of the rows
    bool whole_attachment = false;
    std::vector<const row_t *> lost, gained;
};

class teller_t {
  public:
    explicit teller_t(comparison_t &told) : comparison(told), pairs(told) {}

    void run() {
        for (const fate_t &fate : pairs.before)
            tell_old(fate);
        for (const fate_t &fate : pairs.after)
            tell_new(fate);
        for (auto &[key, group] : groups)
            add(group);
        for (auto &[difference, rows] : explained)
            explain(comparison.differences[difference], rows);
    }

  private:
    void tell_old(const fate_t &fate) {
        const row_t &row = *fate.row;
        const bool has_mtu =
            fate.partner && row.mtu && fate.partner->mtu && fate.partner->traffic == row.traffic;
        if (has_mtu && !comparison.is_unconverted(row))
            note_mtu(fate);
        if (fate.same || has_mtu)
            return;
        difference_t *cause = comparison.cause_of(row);
        if (cause) {
            explained[static_cast<size_t>(cause - comparison.differences.data())].push_back(&row);
            return;
        }
        if (!fate.partner)
            return lose(row);
        const row_t &now = *fate.partner;
        if (now.traffic != row.traffic)
            return change("IC038", "traffic", row, now,
                          "class " + row.class_name + " meets " + now.traffic + " instead of " +
                              row.traffic);
        change("IC039", "effect", row, now,
               row.traffic + " has " + now.effect + " instead of " + fate.effect);
    }

    void note_mtu(const fate_t &fate) {
        const row_t &old = *fate.row, &now = *fate.partner;
        comparison.note_mtu(place_in_words(old) + ", " + old.traffic, {*old.mtu, old.action_line},
                            {*now.mtu, now.action_line});
    }

    // ---- rows that are gone

    bool is_attached_still(const row_t &row) const {
        const auto &all = comparison.after.model.attachments;
        return std::any_of(all.begin(), all.end(), [&](const attachment_t &attachment) {
            return attachment.place == row.place && attachment.name == row.policy;
        });
    }

    bool all_lost(const row_t &like) const {
        return std::all_of(pairs.before.begin(), pairs.before.end(), [&](const fate_t &fate) {
            return fate.row->place != like.place || fate.row->policy != like.policy || !fate.same;
        });
    }

    static bool stands_in(const model_t &model, const row_t &row) {
        return std::any_of(
            model.policies.begin(), model.policies.end(), [&](const policy_t &policy) {
                const class_t *found =
                    policy.name == row.policy ? policy.find(row.class_name) : nullptr;
                return found &&
                       std::any_of(found->actions.begin(), found->actions.end(),
                                   [&](const auto &a) { return a.keyword == row.keyword; });
            });
    }

    void lose(const row_t &row) {
        if (all_lost(row) && !is_attached_still(row)) {
            group_t &group = groups["attachment\n" + row.place + '\n' + row.policy];
            group.code =
                row.is_marking() && (!group.code || std::string_view(group.code) == "IC041")
                    ? "IC041"
                    : "IC040";
            group.whole_attachment = true;
            group.lost.push_back(&row);
            return;
        }
        group_t &group = groups["class\n" + row.policy + '\n' + row.class_name];
        group.code = row.is_marking()                         ? "IC032"
                     : stands_in(comparison.after.model, row) ? "IC037"
                                                              : "IC030";
        group.lost.push_back(&row);
    }

    // ---- rows that are new

    void tell_new(const fate_t &fate) {
        if (fate.partner)
            return;
        const row_t &row = *fate.row;
        const bool known = stands_in(comparison.before.model, row);
        group_t &group = groups[(known ? "new\n" : "action\n") + row.policy + '\n' +
                                (known ? row.place : row.class_name)];
        group.code = known ? "IC036" : "IC034";
        group.gained.push_back(&row);
    }

    void change(const char *code, const char *kind, const row_t &row, const row_t &now,
                const std::string &words) {
        group_t &group = groups[std::string(kind) + '\n' + row.class_name + '\n' + words];
        group.code = code;
        group.words = words;
        group.lost.push_back(&row);
        group.gained.push_back(&now);
    }

    // ---- telling

    static void add_lines(lines_t &lines, const row_t &row, bool whole_attachment) {
        lines.push_back(row.attachment_line);
        if (!whole_attachment)
            lines.insert(lines.end(), {row.class_line, row.action_line});
    }

    std::string words_of(const group_t &group) const {
        if (!group.words.empty()) {
            const std::string places = listed(places_in_words(group.lost), " and ", 3);
            return places + ": " + group.words;
        }
        return group.lost.empty() ? rows_in_words(group.gained, "new")
                                  : rows_in_words(group.lost, "gone");
    }

    void add(const group_t &group) {
        difference_t &difference =
            comparison.add(group.code, weight_t::error, words_of(group), {}, {});
        for (const row_t *row : group.lost) {
            difference.rows.push_back({*row, false});
            add_lines(difference.before, *row, group.whole_attachment);
        }
        for (const row_t *row : group.gained) {
            difference.rows.push_back({*row, true});
            add_lines(difference.after, *row, group.whole_attachment);
        }
    }

    void explain(difference_t &difference, const std::vector<const row_t *> &rows) {
        difference.words += "; " + rows_in_words(rows, "gone");
        for (const row_t *row : rows) {
            difference.rows.push_back({*row, false});
            add_lines(difference.before, *row, false);
        }
    }

    comparison_t &comparison;
    const pairing_t pairs;
    std::map<std::string, group_t> groups;
    std::map<size_t, std::vector<const row_t *>> explained;
};

} // namespace

void comparison_t::note_mtu(const std::string &where, mtu_line_t old, mtu_line_t now) {
    const mtu_fate_t fate = fate_of_mtu(old.value, now.value, route);
    if (fate == mtu_fate_t::same_size)
        return;
    const bool stays = old.value == now.value;
    mtus.insert({fate,
                 where + ": " + std::to_string(old.value) +
                     (stays ? " stays" : " becomes " + std::to_string(now.value)) + ", where " +
                     std::to_string(same_size(old.value, route.front(), route.back())) +
                     " would be the same size",
                 old.line, now.line});
}

void compare_rows(comparison_t &comparison) { teller_t(comparison).run(); }

// ---- MTUs

namespace {

struct told_fate_t {
    mtu_fate_t fate;
    const char *code;
    weight_t weight;
};

constexpr told_fate_t told_fates[] = {
    {mtu_fate_t::wrong, "IC053", weight_t::error},
    {mtu_fate_t::not_raised, "IC051", weight_t::warning},
    {mtu_fate_t::limit, "IC052", weight_t::warning},
    {mtu_fate_t::lowered_twice, "IC054", weight_t::warning},
};

} // namespace

void tell_mtus(comparison_t &comparison) {
    constexpr size_t most = 3;
    for (const told_fate_t &told : told_fates) {
        std::vector<std::string> values;
        lines_t old_lines, lines;
        for (const auto &change : comparison.mtus) {
            if (change.fate != told.fate)
                continue;
            add_once(values, change.words);
            old_lines.push_back(change.before);
            lines.push_back(change.after);
        }
        if (!values.empty())
            comparison.add(told.code, told.weight, listed(values, "; ", most), old_lines, lines);
    }
}

// ---- order

namespace {

struct ordered_t {
    traffic_t traffic;
    const class_map_t *map;
    std::string name;
    uint32_t line;
    bool acts;
};
using order_t = std::vector<ordered_t>;

bool share_a_line(const ordered_t &a, const ordered_t &b) {
    const auto &lines = a.map->matches, &others = b.map->matches;
    return std::any_of(lines.begin(), lines.end(), [&](const criterion_t &line) {
        return std::any_of(others.begin(), others.end(),
                           [&](const criterion_t &other) { return other.text == line.text; });
    });
}

order_t order_of(const model_t &model, const policy_t *policy) {
    order_t order;
    if (!policy)
        return order;
    for (const class_t &each : policy->classes) {
        traffic_t traffic = traffic_of(model, policy->type, each.name);
        if (!is_predefined(each.name) && !traffic.empty())
            order.push_back({std::move(traffic), model.class_map(policy->type, each.name),
                             std::string(each.name), each.lines.front(), !each.actions.empty()});
    }
    return order;
}

// The policies that classify at a place.
std::vector<const policy_t *> classifying(const model_t &model, std::string_view place) {
    std::vector<const policy_t *> policies;
    for (const attachment_t &attachment : model.attachments) {
        const bool plane = attachment.kind == place_kind_t::control_plane;
        if (attachment.place == place && (plane || attachment.type == types::none))
            policies.push_back(
                model.policy(plane ? types::control_plane : types::none, attachment.name));
    }
    const bool typed =
        std::any_of(model.attachments.begin(), model.attachments.end(),
                    [&](const auto &a) { return a.place == place && !a.type.empty(); });
    if (typed)
        policies.push_back(policy_in_force(model, place));
    return policies;
}

// The class with the traffic of this one, and its name if there are several.
const ordered_t *same_class(const order_t &order, const ordered_t &wanted) {
    const ordered_t *found = nullptr;
    for (const ordered_t &each : order) {
        if (each.traffic == wanted.traffic && (!found || each.name == wanted.name))
            found = &each;
    }
    return found;
}

void compare_order(comparison_t &comparison, const order_t &old, const order_t &now,
                   std::set<std::string> &told) {
    for (size_t i = 0; i < old.size(); i++) {
        for (size_t j = i + 1; j < old.size(); j++) {
            if (!share_a_line(old[i], old[j]))
                continue;
            const ordered_t *first = same_class(now, old[i]);
            const ordered_t *second = same_class(now, old[j]);
            // As one class the second's actions reach packets that the first took.
            const bool one = first == second && old[i].acts && old[j].acts;
            if (!first || !second || (first <= second && !one))
                continue;
            const std::string words = "classes " + old[i].name + " and " + old[j].name +
                                      " match the same packets and " +
                                      (one ? "are one class" : "changed places");
            if (told.insert(words).second)
                comparison.add("IC055", weight_t::error, words, {old[i].line, old[j].line},
                               {first->line, second->line});
        }
    }
}

} // namespace

void compare_order(comparison_t &comparison) {
    std::set<std::string> places, told;
    for (const attachment_t &attachment : comparison.before.model.attachments)
        places.insert(attachment.place);
    for (const std::string &place : places) {
        for (const policy_t *old : classifying(comparison.before.model, place)) {
            const order_t order = order_of(comparison.before.model, old);
            if (order.size() < 2)
                continue;
            for (const policy_t *now : classifying(comparison.after.model, place))
                compare_order(comparison, order, order_of(comparison.after.model, now), told);
        }
    }
}

} // namespace infraconvert::meaning
