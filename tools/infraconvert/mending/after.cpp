#include "mending/after.h"

#include "mending/line_words.h"
#include "mending/map_lines.h"

#include <algorithm>
#include <unordered_set>

namespace infraconvert::mending {

using meaning::difference_t;

namespace {

// Beyond this nobody would read the fixes, and the search would take longer than reading.
constexpr size_t most_errors = 200;

bool is_about_maps(finding_code_t code) {
    const std::string_view name = code.name();
    return name.starts_with("IC01") || name.starts_with("IC02") || name.starts_with("IC03") ||
           code == "IC040" || code == "IC041" || code == "IC043" || code == "IC055";
}

// Not a way of its own, but more of the same.
bool has_lines_of(const commands_t &all, const commands_t &some) {
    const std::vector<std::string> lines = lines_of(all);
    const std::vector<std::string> wanted = lines_of(some);
    return std::all_of(wanted.begin(), wanted.end(), [&](const std::string &line) {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    });
}

// On a switch "no" takes back no line that begins with "no", and of an interface it takes what is
// right as well.
bool is_there_for_good(std::string_view line) {
    const meaning::words_t words = meaning::split_words(line);
    return meaning::begins_with(words, {"no"}) || meaning::begins_with(words, {"interface"});
}

// The commands without what nobody can type.
commands_t typeable(const commands_t &commands) {
    commands_t rest;
    for (command_t command : commands) {
        const bool is_removed = command.how == command_t::remove;
        const size_t lines = std::erase_if(command.body, [](const typed_line_t &line) {
            return line.removes && is_there_for_good(line.text);
        });
        if (!(is_removed && is_there_for_good(command.header)) &&
            !(lines > 0 && command.body.empty()))
            rest.push_back(std::move(command));
    }
    return rest;
}

// Classes without a class-map, and attachments without a policy-map: the release has refused them
// when it read the file, so they are typed once more behind what they lacked.
commands_t refused_lines(const judged_t &now, const difference_t &difference) {
    commands_t again;
    if (difference.code != "IC010" && difference.code != "IC012")
        return again;
    for (const meaning::stanza_t &stanza : now.side.model.reading.stanzas) {
        bool in_class = false;
        command_t command = {.header = std::string(stanza.header.text)};
        for (const meaning::line_t &line : stanza.body) {
            const bool is_class = is_class_line(line.text);
            const bool is_told =
                std::binary_search(difference.after.begin(), difference.after.end(), line.number);
            in_class = is_class ? is_told : in_class;
            const bool is_attachment =
                meaning::begins_with(meaning::split_words(line.text), {"service-policy"});
            if (in_class || (is_told && is_attachment))
                command.body.push_back(
                    {(in_class && !is_class ? "    " : "  ") + std::string(line.text)});
        }
        if (!command.body.empty())
            again.push_back(std::move(command));
    }
    return again;
}

bool is_gone(const difference_t &difference, const judged_t &now) {
    return !any_of(parts_of(difference), now.wrong);
}

} // namespace

after_t::after_t(const mending_request_t &asked, const meaning::original_t &of,
                 const std::string &converted, work_t &done)
    : request(asked), original(of), work(done), current(judged(converted)) {}

void after_t::run() {
    if (current->wrong.size() > most_errors)
        return;
    while (one_alone() || several_together() || all_anew())
        ;
}

std::vector<by_hand_t> after_t::left() {
    std::vector<by_hand_t> left;
    for (const difference_t &difference : current->differences) {
        if (!wants_lines(difference))
            continue;
        left.push_back({difference, why_not(difference)});
        if (!undecided.contains(all_words(difference)))
            continue;
        std::vector<proved_t> ways = repairs(difference, {difference});
        if (ways.size() < 2)
            continue;
        left.back().why = "more than one repair is possible, and they make different switches";
        for (proved_t &way : ways)
            left.back().choices.push_back(fewest(way.commands, way.reached));
    }
    return left;
}

after_t::judged_ptr after_t::judged(const std::string &text) {
    work.add(text);
    return std::make_unique<const judged_t>(original, text, request.route);
}

std::vector<candidate_t> after_t::candidates(const difference_t &difference) const {
    work.add(current->text);
    return restoring({original.side, current->side}, difference);
}

bool after_t::is_asked(const difference_t &difference) const {
    return wants_lines(difference) && !undecided.contains(all_words(difference)) &&
           (request.codes.empty() || request.codes.contains(difference.code.name()));
}

// ---- which of the errors together

bool after_t::one_alone() {
    for (const difference_t &difference : current->differences) {
        if (work.is_too_much())
            return false;
        if (is_asked(difference) && try_all(difference, {difference}))
            return true;
    }
    return false;
}

// Those outside the table of effects, those at one place, then those of all places.
bool after_t::several_together() {
    std::vector<const difference_t *> all, outside;
    std::set<std::string> places;
    for (const difference_t &difference : current->differences) {
        if (!is_asked(difference))
            continue;
        (difference.rows.empty() ? outside : all).push_back(&difference);
        for (const auto &change : difference.rows)
            places.insert(change.row.place);
    }
    if (outside.size() > 1 && try_together(outside))
        return true;
    if (all.size() < 2)
        return false;
    for (const std::string &place : places) {
        std::vector<const difference_t *> here;
        std::copy_if(all.begin(), all.end(), std::back_inserter(here), [&](const auto *each) {
            return std::any_of(each->rows.begin(), each->rows.end(),
                               [&](const auto &change) { return change.row.place == place; });
        });
        if (here.size() > 1 && here.size() < all.size() && try_together(here))
            return true;
    }
    return try_together(all);
}

// Every map anew, when pieces do not do.
bool after_t::all_anew() {
    if (work.is_too_much())
        return false;
    differences_t asked;
    std::copy_if(current->differences.begin(), current->differences.end(),
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
            rebuilt_qos(original, current->text, request.route, names, anew, work);
        if (std::optional<proved_t> way = prove(candidate.commands, asked, true)) {
            take(std::move(*way));
            return true;
        }
    }
    return false;
}

// ---- tries

bool after_t::try_together(const std::vector<const difference_t *> &parts) {
    differences_t mended;
    for (const difference_t *part : parts)
        mended.push_back(*part);
    return try_all(together(parts), mended);
}

bool after_t::try_all(const difference_t &difference, const differences_t &mended) {
    std::vector<proved_t> ways = repairs(difference, mended);
    if (ways.empty())
        return false;
    if (ways.size() > 1) {
        for (const difference_t &each : mended)
            undecided.insert(all_words(each));
        return false;
    }
    take(std::move(ways.front()));
    return true;
}

// The first lines that mend them all, and others that do so in another switch: what an error about
// the form needs can be made, or what needs it can go. An effect is there again or is not.
std::vector<after_t::proved_t> after_t::repairs(const difference_t &difference,
                                                const differences_t &mended) {
    std::vector<proved_t> ways;
    for (const candidate_t &candidate : candidates(difference)) {
        std::optional<proved_t> way = prove(candidate.commands, mended);
        if (!way)
            continue;
        if (std::all_of(ways.begin(), ways.end(), [&](const proved_t &known) {
                return !has_lines_of(way->commands, known.commands) &&
                       is_another(*known.reached, *way->reached);
            }))
            ways.push_back(std::move(*way));
        if (!difference.rows.empty())
            break;
    }
    return ways;
}

// Both leave the same errors, but are not the same to the release that reads them.
bool after_t::is_another(const judged_t &one, const judged_t &other) const {
    if (one.wrong != other.wrong)
        return false;
    const std::string_view release = request.route.back(), same[] = {release, release};
    const meaning::original_t first(one.text, release);
    return !includes(judged_t(first, one.text, same).wrong,
                     judged_t(first, other.text, same).wrong);
}

// With `some` it is enough that one of the differences is gone.
std::optional<after_t::proved_t> after_t::prove(commands_t commands, const differences_t &all,
                                                bool some) {
    if (work.is_too_much())
        return std::nullopt;
    commands = in_order_of_typing(typeable(commands));
    const std::string text = applied(current->text, commands);
    if (text == current->text)
        return std::nullopt;
    judged_ptr then = judged(text);
    const auto mends = [&](const difference_t &difference) { return is_gone(difference, *then); };
    const bool does = some ? std::any_of(all.begin(), all.end(), mends)
                           : std::all_of(all.begin(), all.end(), mends);
    if (!does || !is_better(*current, *then) || makes_orphans(then->side.model))
        return std::nullopt;
    return proved_t{std::move(commands), std::move(then)};
}

bool after_t::makes_orphans(const meaning::model_t &model) const {
    const maps_t before(original.side.model, current->side.model);
    return !maps_t(original.side.model, model).orphans_are_among(before);
}

void after_t::take(proved_t proved) {
    judged_ptr &reached = proved.reached;
    fix_t fix = {.place = fix_place_t::after, .codes = {}, .mends = {}, .commands = {}};
    for (const difference_t &difference : current->differences) {
        if (wants_lines(difference) && is_gone(difference, *reached)) {
            fix.codes.insert(difference.code.name());
            fix.mends.push_back(difference);
        }
    }
    fix.commands = fewest(proved.commands, reached);
    for (const difference_t &difference : fix.mends) {
        const commands_t again = refused_lines(*current, difference);
        if (applied(reached->text, again) == reached->text)
            fix.commands.insert(fix.commands.end(), again.begin(), again.end());
    }
    current = std::move(reached);
    fixes.push_back(std::move(fix));
}

// The lines without those that change nothing that is told; `reached` becomes what they make.
commands_t after_t::fewest(const commands_t &commands, judged_ptr &reached) {
    const std::string &text = current->text;
    const maps_t maps(original.side.model, reached->side.model);
    const parts_t told = reached->told();
    std::unordered_set<size_t> refused; // by their hashes: the second pass makes most texts again
    const auto is_enough = [&](const commands_t &fewer) {
        if (work.is_too_much())
            return false;
        const std::string made = applied(text, fewer);
        work.add(made);
        const size_t hash = std::hash<std::string>()(made);
        if (made == text || refused.contains(hash))
            return false;
        if (made == reached->text)
            return true;
        judged_ptr then = judged(made);
        const bool is = maps_t(original.side.model, then->side.model).stands_for(maps) &&
                        includes(told, then->told()) && reads_as_much(*current, *then);
        if (is)
            reached = std::move(then);
        else
            refused.insert(hash);
        return is;
    };
    // Until nothing more goes: what was typed again may stay as it is, once it is not removed, and
    // then others may.
    commands_t needed = without_needless(text, commands);
    for (commands_t fewer;
         lines_of(fewer = without_needless(needed, is_enough)) != lines_of(needed);)
        needed = std::move(fewer);
    return needed;
}

// ---- what is left

std::string after_t::why_not(const difference_t &difference) const {
    if (current->wrong.size() > most_errors)
        return "there are more than " + std::to_string(most_errors) +
               " errors, too many to look for lines";
    if (work.is_too_much())
        return "there is too much to mend to look for lines";
    for (const candidate_t &candidate : candidates(difference)) {
        if (!candidate.why_not.empty())
            return candidate.why_not;
        if (lines_of(typeable(candidate.commands)) != lines_of(candidate.commands))
            return "on the switch nothing takes back a line that begins with \"no\" or "
                   "\"interface\"; edit the file";
    }
    const std::string reason = no_way({original.side, current->side}, difference);
    return reason.empty() ? "no lines were found that restore it and change nothing else" : reason;
}

} // namespace infraconvert::mending
