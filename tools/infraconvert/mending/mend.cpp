// Candidates come from restore.h and respell.h; here they are tried, and most of them thrown away.

#include "mending/mend.h"

#include "meaning/compare.h"
#include "mending/map_lines.h"
#include "mending/respell.h"
#include "mending/restore.h"

#include <algorithm>
#include <tuple>

namespace infraconvert::mending {

using meaning::difference_t;
using differences_t = std::vector<difference_t>;

namespace {

// Beyond this nobody would read the fixes, and the search would take longer than reading.
constexpr size_t most_errors = 200;
// Bytes that are judged before the search is given up: a second or so.
constexpr size_t most_work = 16U << 20U;

// ---- what is wrong, in parts that can be told from one another

using parts_t = std::set<std::string>;

parts_t parts_of(const difference_t &difference) {
    parts_t parts;
    for (const meaning::row_change_t &change : difference.rows)
        parts.insert((change.gained ? "new " : "gone ") + meaning::in_words(change.row));
    if (parts.empty() || difference.words.find("does not read") != std::string::npos)
        parts.insert(std::string(difference.code.name()) + ' ' +
                     difference.words.substr(0, difference.words.find(';')));
    return parts;
}

struct verdict_t {
    explicit verdict_t(differences_t found) : differences(std::move(found)) {
        for (const difference_t &difference : differences) {
            if (difference.is_error())
                errors.merge(parts_of(difference));
            else if (difference.severity() == severity_t::warning)
                warnings.insert(difference.code.name());
        }
    }

    // Everything, notes too.
    parts_t told() const {
        parts_t all;
        for (const difference_t &difference : differences)
            all.insert(difference.code.name() + (' ' + difference.words));
        return all;
    }

    differences_t differences;
    parts_t errors, warnings;
};

// What may be told anew without anything being worse: sizes of what was brought back, maps that are
// attached nowhere and go where the release refuses them, and what the original has already.
bool may_be_new(const std::string &code) {
    return code.starts_with("IC05") || code == "IC027" || code == "IC011" || code == "IC013";
}

bool is_about_maps(finding_code_t code) {
    const std::string_view name = code.name();
    return name.starts_with("IC01") || name.starts_with("IC02") || name.starts_with("IC03") ||
           code == "IC040" || code == "IC041" || code == "IC043" || code == "IC055";
}

bool includes(const parts_t &all, const parts_t &some) {
    return std::includes(all.begin(), all.end(), some.begin(), some.end());
}

bool any_of(const parts_t &some, const parts_t &all) {
    return std::any_of(some.begin(), some.end(),
                       [&](const auto &part) { return all.contains(part); });
}

// Nothing is wrong that was not wrong before.
bool is_better(const verdict_t &old, const verdict_t &now) {
    return includes(old.errors, now.errors) &&
           std::all_of(now.warnings.begin(), now.warnings.end(), [&](const std::string &code) {
               return old.warnings.contains(code) || may_be_new(code);
           });
}

// Several differences as one: what one class lost another may have got.
difference_t together(const std::vector<const difference_t *> &parts) {
    difference_t all = *parts.front();
    for (size_t i = 1; i < parts.size(); i++) {
        all.rows.insert(all.rows.end(), parts[i]->rows.begin(), parts[i]->rows.end());
        all.before.insert(all.before.end(), parts[i]->before.begin(), parts[i]->before.end());
        all.after.insert(all.after.end(), parts[i]->after.begin(), parts[i]->after.end());
    }
    std::sort(all.before.begin(), all.before.end());
    std::sort(all.after.begin(), all.after.end());
    return all;
}

// ---- lines after a conversion

class after_t {
  public:
    // `done` counts what is judged, for all ways together.
    after_t(const mending_request_t &asked, std::string converted, size_t &done)
        : request(asked), text(std::move(converted)), work(done), verdict(judged(text)) {}

    void run() {
        if (verdict.errors.size() > most_errors)
            return;
        while (one_alone() || several_together() || all_anew())
            ;
    }

    verdict_t judged(const std::string &result) {
        work += result.size();
        return verdict_t(meaning::compare(request.original, result, request.route));
    }

    const mending_request_t &request;
    std::string text;
    size_t &work; // in bytes judged
    verdict_t verdict;
    std::vector<fix_t> fixes;

    std::vector<by_hand_t> left() const {
        std::vector<by_hand_t> left;
        for (const difference_t &difference : verdict.differences) {
            if (difference.is_error())
                left.push_back({difference, why_not(difference)});
        }
        return left;
    }

  private:
    bool is_asked(const difference_t &difference) const {
        return difference.is_error() &&
               (request.codes.empty() || request.codes.contains(difference.code.name()));
    }

    bool one_alone() {
        const scene_t scene(request.original, text, request.route);
        for (const difference_t &difference : verdict.differences) {
            if (work > most_work)
                return false;
            if (is_asked(difference) && try_all(scene, difference, {difference}))
                return true;
        }
        return false;
    }

    // Those outside the table of effects, those at one place, then those of all places.
    bool several_together() {
        std::vector<const difference_t *> all, outside;
        std::set<std::string> places;
        for (const difference_t &difference : verdict.differences) {
            if (!is_asked(difference))
                continue;
            (difference.rows.empty() ? outside : all).push_back(&difference);
            for (const auto &change : difference.rows)
                places.insert(change.row.place);
        }
        const scene_t scene(request.original, text, request.route);
        if (outside.size() > 1 && try_together(scene, outside))
            return true;
        if (all.size() < 2)
            return false;
        for (const std::string &place : places) {
            std::vector<const difference_t *> here;
            std::copy_if(all.begin(), all.end(), std::back_inserter(here), [&](const auto *each) {
                return std::any_of(each->rows.begin(), each->rows.end(),
                                   [&](const auto &change) { return change.row.place == place; });
            });
            if (here.size() > 1 && here.size() < all.size() && try_together(scene, here))
                return true;
        }
        return try_together(scene, all);
    }

    // Every map anew, when pieces do not do.
    bool all_anew() {
        if (work > most_work)
            return false;
        differences_t asked;
        std::copy_if(verdict.differences.begin(), verdict.differences.end(),
                     std::back_inserter(asked), [&](const auto &each) { return is_asked(each); });
        const bool about_maps = std::any_of(asked.begin(), asked.end(), [](const auto &each) {
            return !each.rows.empty() || is_about_maps(each.code);
        });
        constexpr std::pair<names_t, bool> ways[] = {
            {names_t::same, false}, {names_t::same, true}, {names_t::placed, true}};
        for (const auto &[names, anew] : ways) {
            if (!about_maps)
                break;
            const candidate_t candidate =
                rebuilt_qos(request.original, text, request.route, names, anew);
            work += candidate.judged;
            if (!candidate.commands.empty() && try_one(candidate.commands, asked, true))
                return true;
        }
        return false;
    }

    bool try_together(const scene_t &scene, const std::vector<const difference_t *> &parts) {
        differences_t mended;
        for (const difference_t *part : parts)
            mended.push_back(*part);
        return try_all(scene, together(parts), mended);
    }

    bool try_all(const scene_t &scene, const difference_t &difference,
                 const differences_t &mended) {
        for (candidate_t &candidate : restoring(scene, difference)) {
            if (!candidate.commands.empty() && try_one(candidate.commands, mended))
                return true;
        }
        return false;
    }

    // With `some` it is enough that one of the differences is gone.
    bool try_one(commands_t commands, const differences_t &all, bool some = false) {
        if (work > most_work)
            return false;
        put_removals_first(commands);
        const std::string now = applied(text, commands);
        if (now == text)
            return false;
        verdict_t then = judged(now);
        const auto is_gone = [&](const difference_t &difference) {
            return !any_of(parts_of(difference), then.errors);
        };
        const bool does = some ? std::any_of(all.begin(), all.end(), is_gone)
                               : std::all_of(all.begin(), all.end(), is_gone);
        if (!does || !is_better(verdict, then) || !maps_of(now).orphans_are_among(maps_of(text)))
            return false;
        fix_t fix = {.place = fix_place_t::after,
                     .codes = {},
                     .mends = {},
                     .commands = fewest(commands, then)};
        for (const difference_t &difference : verdict.differences) {
            if (difference.is_error() && is_gone(difference)) {
                fix.codes.insert(difference.code.name());
                fix.mends.push_back(difference);
            }
        }
        text = applied(text, fix.commands);
        fixes.push_back(std::move(fix));
        verdict = judged(text);
        return true;
    }

    maps_t maps_of(const std::string &result) const {
        return {request.original, result, request.route};
    }

    // The lines without those that change nothing that is told.
    commands_t fewest(const commands_t &commands, const verdict_t &reached) {
        const commands_t needed = without_needless(text, commands);
        const maps_t maps = maps_of(applied(text, needed));
        const parts_t told = reached.told();
        const auto is_enough = [&](const commands_t &fewer) {
            const std::string made = applied(text, fewer);
            return work < most_work && maps_of(made).stands_for(maps) &&
                   includes(told, judged(made).told());
        };
        // What was typed again may stay as it is, once it is not removed.
        return without_needless(without_needless(needed, is_enough), is_enough);
    }

    std::string why_not(const difference_t &difference) const {
        if (work > most_work || verdict.errors.size() > most_errors)
            return "there is too much to mend to look for lines";
        const scene_t scene(request.original, text, request.route);
        for (const candidate_t &candidate : restoring(scene, difference)) {
            if (!candidate.why_not.empty())
                return candidate.why_not;
        }
        const std::string reason = no_way(scene, difference);
        return reason.empty() ? "no lines were found that restore it and change nothing else"
                              : reason;
    }
};

// ---- edits before it

// An original as it could be written, and what comes of it.
struct way_t {
    std::vector<fix_t> fixes; // the edits
    std::string original, converted;
    after_t after;

    // Errors first, then what has to be changed.
    auto cost() const {
        size_t lines = 0;
        for (const fix_t &fix : after.fixes)
            lines += lines_of(fix.commands).size();
        return std::tuple(after.verdict.errors.size(), fixes.size() + lines);
    }
};

class search_t {
  public:
    explicit search_t(const mending_request_t &asked) : request(asked) {}

    mended_t run() {
        if (request.result)
            add({}, std::string(request.original), std::string(*request.result));
        if (!is_done() && request.convert)
            try_edits();
        const auto best =
            std::min_element(ways.begin(), ways.end(),
                             [](const auto &a, const auto &b) { return a.cost() < b.cost(); });
        return best == ways.end() ? mended_t() : mended(*best);
    }

  private:
    void add(std::vector<fix_t> edits, std::string original, std::string converted) {
        ways.push_back(
            {std::move(edits), std::move(original), converted, {request, converted, work}});
        ways.back().after.run();
    }

    bool is_done() const {
        return std::any_of(ways.begin(), ways.end(),
                           [](const way_t &way) { return way.after.verdict.errors.empty(); });
    }

    // Each way to write it by itself, then one after the other.
    void try_edits() {
        using respell_t = respelling_t (*)(std::string_view, std::string_view);
        constexpr respell_t ways_to_write[] = {
            with_fabric_order, in_written_form, with_plain_names, without_descriptions,
            [](std::string_view text, std::string_view) { return in_written_order(text); }};
        const std::string_view release = request.route.front();
        respelling_t all = {std::string(request.original), ""};
        size_t used = 0;
        for (const respell_t respell : ways_to_write) {
            if (is_done())
                return;
            try_edit(respell(request.original, release));
            const respelling_t next = respell(all.text, release);
            if (next.text == all.text)
                continue;
            used++;
            all = {next.text, all.words + (all.words.empty() ? "" : "; ") + next.words};
        }
        if (used > 1 && !is_done())
            try_edit(all);
    }

    // An edit must mean nothing: the same configuration in other words.
    bool means_the_same(const std::string &edited) const {
        const std::string_view release = request.route.front();
        const std::string_view same[] = {release, release};
        return !meaning::has_errors(meaning::compare(request.original, edited, same));
    }

    void try_edit(const respelling_t &edited) {
        if (edited.text == request.original || !means_the_same(edited.text))
            return;
        const std::optional<std::string> converted = request.convert(edited.text);
        if (!converted)
            return;
        const verdict_t now(meaning::compare(request.original, *converted, request.route));
        fix_t fix = {.place = fix_place_t::before,
                     .codes = {},
                     .mends = {},
                     .edited = edited.text,
                     .words = edited.words};
        if (!request.result) {
            fix.codes.insert("IC090");
        } else {
            const verdict_t old(meaning::compare(request.original, *request.result, request.route));
            for (const difference_t &difference : old.differences) {
                if (!difference.is_error() || any_of(parts_of(difference), now.errors))
                    continue;
                fix.codes.insert(difference.code.name());
                fix.mends.push_back(difference);
            }
            const bool asked = request.codes.empty() || any_of(fix.codes, request.codes);
            if (fix.mends.empty() || !asked || !includes(old.errors, now.errors))
                return;
        }
        add({fix}, edited.text, *converted);
    }

    static mended_t mended(const way_t &way) {
        mended_t result = {.fixes = way.fixes,
                           .by_hand = way.after.left(),
                           .original = way.original,
                           .converted = way.converted,
                           .result = way.after.text};
        result.fixes.insert(result.fixes.end(), way.after.fixes.begin(), way.after.fixes.end());
        return result;
    }

    const mending_request_t &request;
    std::vector<way_t> ways;
    size_t work = 0;
};

} // namespace

mended_t mend(const mending_request_t &request) { return search_t(request).run(); }

} // namespace infraconvert::mending
