// When maps do not come out well piece by piece: all of them go, and are written anew row by row.

#include "meaning/effects.h"
#include "mending/judged.h"
#include "mending/restore.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <unordered_set>

namespace infraconvert::mending {

using namespace meaning;

namespace {

constexpr size_t most_steps = 300;
constexpr int most_tries = 3; // of a row

commands_t removal_of_qos(const model_t &model) {
    commands_t commands;
    for (const attachment_t &each : model.attachments) {
        const bool system = each.kind == place_kind_t::system;
        remove_line(commands, system ? "system qos" : each.place,
                    "  service-policy " + type_words(each.type) + std::string(each.direction) +
                        (each.direction.empty() ? "" : " ") + std::string(each.name));
    }
    for (const stanza_t &stanza : model.reading.stanzas) {
        const words_t words = split_words(stanza.header.text);
        // What matched groups only is left without a line, and that it stays tells that it was.
        const bool left_over = !model.dialect.typed && words.size() == 2 && stanza.body.empty() &&
                               words[0] == "class-map";
        if (is_map(words) && !left_over)
            remove_stanza(commands, std::string(stanza.header.text));
    }
    return commands;
}

// Where the traffic stands in the original's classification: the first class that matches decides.
size_t position(const model_t &model, const row_t &row) {
    const policy_t *policy = model.dialect.typed ? policy_in_force(model, row.place)
                                                 : model.policy(types::none, row.policy);
    for (size_t i = 0; policy && i < policy->classes.size(); i++) {
        if (in_words(traffic_of(model, policy->type, policy->classes[i].name)) == row.traffic)
            return i;
    }
    return policy ? policy->classes.size() : 0;
}

// Rows of the system first; at a place what puts traffic into groups ahead of what happens to them;
// classes in the order of the original's classification.
auto rank(const model_t &model, const row_t &row) {
    return std::tuple(row.place != "system", row.place, !row.is_marking(), position(model, row),
                      row.action_line);
}

class rebuilding_t {
  public:
    rebuilding_t(const original_t &of, std::string result,
                 std::span<const std::string_view> through, names_t takes, work_t &done)
        : original(of), route(through), names(takes), work(done), text(std::move(result)),
          base(of, text, through) {}

    candidate_t run(bool anew) {
        if (anew)
            add(removal_of_qos(base.side.model));
        for (size_t step = 0; step < most_steps && !work.is_too_much(); step++) {
            const judged_t now(original, text, route);
            work.add(text);
            if (!((anew && next_attachment(now)) || next_row(now) || next_content(now)))
                break;
        }
        return {commands, ""};
    }

  private:
    // Adds what is to be typed; false when the text has it all, or was like that before: what one
    // step brings back another would take away for ever.
    bool add(const commands_t &more) {
        std::string now = applied(text, more);
        if (!seen.insert(std::hash<std::string>()(now)).second)
            return false;
        text = std::move(now);
        merge(commands, more);
        return true;
    }

    bool next_row(const judged_t &now) {
        std::vector<const row_t *> lost;
        for (const difference_t &difference : now.differences) {
            for (const row_change_t &change : difference.rows) {
                if (!change.gained && difference.is_error())
                    lost.push_back(&change.row);
            }
        }
        const scene_t scene(original.side, now.side, &base.side.table);
        std::sort(lost.begin(), lost.end(), [&](const row_t *a, const row_t *b) {
            return rank(scene.before, *a) < rank(scene.before, *b);
        });
        for (const row_t *row : lost) {
            // What brings this one back takes another away, and the other way round.
            if (++tries[in_words(*row)] > most_tries)
                continue;
            const difference_t one = {"IC030", "", {{*row, false}}, {}, {}};
            if (add(restored_rows(scene, one, names).commands)) // none where there is no way
                return true;
        }
        return false;
    }

    // Attachments that give no row must keep their policy-maps' names, and a place of an untyped
    // release has room for one: what gives rows goes into it.
    bool next_attachment(const judged_t &now) {
        const scene_t scene(original.side, now.side, &base.side.table);
        for (const difference_t &difference : now.differences) {
            if (!difference.is_error() || !difference.rows.empty())
                continue;
            for (const attachment_t &attachment : scene.before.attachments) {
                if (std::binary_search(difference.before.begin(), difference.before.end(),
                                       attachment.line) &&
                    ++tries["attachment " + std::to_string(attachment.line)] <= 1 &&
                    add(restored_content(scene, difference).commands))
                    return true;
            }
        }
        return false;
    }

    // A warning that the removal made is not to stay either.
    bool is_to_be_mended(const difference_t &difference) const {
        return difference.is_error() ||
               (difference.code == "IC026" && !base.warnings.contains("IC026"));
    }

    // New effects that the conversion made too, because the release cannot say it otherwise.
    bool stays(const difference_t &difference) const {
        const auto is_old = [&](const row_change_t &change) {
            return change.gained &&
                   std::any_of(base.side.table.begin(), base.side.table.end(),
                               [&](const row_t &row) { return same_row(row, change.row); });
        };
        return !difference.rows.empty() &&
               std::all_of(difference.rows.begin(), difference.rows.end(), is_old);
    }

    bool next_content(const judged_t &now) {
        const scene_t scene(original.side, now.side, &base.side.table);
        for (const difference_t &difference : now.differences) {
            if (!is_to_be_mended(difference) || stays(difference))
                continue;
            for (const attachment_t &attachment : scene.before.attachments) {
                if (difference.rows.empty() &&
                    std::binary_search(difference.before.begin(), difference.before.end(),
                                       attachment.line) &&
                    add(restored_marking(scene, attachment, names_t::same).commands))
                    return true;
            }
            if ((add(restored_content(scene, difference).commands) ||
                 add(restored_order(scene, difference).commands)))
                return true;
        }
        return false;
    }

    const original_t &original;
    const std::span<const std::string_view> route;
    const names_t names;
    work_t &work;
    std::string text;
    const judged_t base; // before anything was done
    std::map<std::string, int> tries;
    std::unordered_set<size_t> seen = {std::hash<std::string>()(text)}; // hashes of texts
    commands_t commands;
};

} // namespace

candidate_t rebuilt_qos(const original_t &original, const std::string &result,
                        std::span<const std::string_view> route, names_t names, bool anew,
                        work_t &work) {
    return rebuilding_t(original, result, route, names, work).run(anew);
}

} // namespace infraconvert::mending
