// Rows of the effect table that are lost, gained or changed, told by their cause: the attachment
// that is gone, the class that changed, the traffic that it meets.

#include "meaning/pairing.h"
#include "meaning/row_words.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

struct group_t {
    std::optional<finding_code_t> code = {};
    std::string words = {}; // empty: those of the rows
    bool whole_attachment = false;
    std::vector<const row_t *> lost, gained;
};

class teller_t {
  public:
    explicit teller_t(comparison_t &told) : comparison(told), pairs(told) {
        for (const attachment_t &attachment : comparison.after.model.attachments)
            attached.insert(place_key(attachment.place, attachment.name));
        for (const fate_t &fate : pairs.before) {
            if (fate.same)
                kept.insert(place_key(fate.row->place, fate.row->policy));
        }
    }

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
        if (const auto cause = comparison.cause_of(row)) {
            explained[*cause].push_back(&row);
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

    // Nothing that the policy did at this place is left.
    bool is_attachment_gone(const row_t &row) const {
        const std::string key = place_key(row.place, row.policy);
        return !kept.contains(key) && !attached.contains(key);
    }

    static bool stands_in(const model_t &model, const row_t &row) {
        const auto named = model.policies_named(row.policy);
        return std::any_of(named.begin(), named.end(), [&](uint32_t policy) {
            const class_t *found = model.policies[policy].find(row.class_name);
            return found && std::any_of(found->actions.begin(), found->actions.end(),
                                        [&](const auto &a) { return a.keyword == row.keyword; });
        });
    }

    void lose(const row_t &row) {
        if (is_attachment_gone(row)) {
            group_t &group = groups["attachment\n" + place_key(row.place, row.policy)];
            const bool marks_only = !group.code || group.code == finding_code_t("IC041");
            group.code = row.is_marking() && marks_only ? finding_code_t("IC041") : "IC040";
            group.whole_attachment = true;
            group.lost.push_back(&row);
            return;
        }
        group_t &group = groups["class\n" + row.policy + '\n' + row.class_name];
        group.code = row.is_marking()                         ? finding_code_t("IC032")
                     : stands_in(comparison.after.model, row) ? finding_code_t("IC037")
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
        group.code = known ? finding_code_t("IC036") : "IC034";
        group.gained.push_back(&row);
    }

    void change(finding_code_t code, const char *kind, const row_t &row, const row_t &now,
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
        difference_t &difference = comparison.add(*group.code, words_of(group), {}, {});
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
    std::unordered_set<std::string> attached, kept; // place and policy-map
    std::map<std::string, group_t> groups;
    std::map<size_t, std::vector<const row_t *>> explained;
};

} // namespace

void compare_rows(comparison_t &comparison) { teller_t(comparison).run(); }

} // namespace infraconvert::meaning
