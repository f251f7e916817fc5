#include "audit/ways.h"

#include "audit/audit.h"
#include "base/lines.h"
#include "meaning/changes.h"
#include "meaning/compare.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <tuple>

namespace infraconvert {

namespace {

using meaning::difference_t;

// ---- hops, each made once

struct hop_t {
    shared_text_t result;
    std::string failure; // empty: it did not fail
};

class traveller_t {
  public:
    explicit traveller_t(const std::vector<const service_t *> &chosen) : services(chosen) {}

    const hop_t &go(const shared_text_t &text, const release_pair_t &releases) {
        const shared_text_t &same = *texts.insert(text).first;
        const auto [entry, is_new] =
            hops.try_emplace({same.get(), releases.from, releases.to}, hop_t{});
        if (is_new)
            entry->second = made(same, releases);
        return entry->second;
    }

  private:
    struct by_bytes_t {
        bool operator()(const shared_text_t &a, const shared_text_t &b) const { return *a < *b; }
    };

    hop_t made(const shared_text_t &text, const release_pair_t &releases) {
        std::vector<const service_t *> needed;
        std::copy_if(services.begin(), services.end(), std::back_inserter(needed),
                     [&](const service_t *s) { return !routing_of(*s, releases).rules.empty(); });
        if (needed.empty()) // a converter without a rule gives back every byte
            return {text, ""};
        const converted_t conversion = run_conversion(
            {.text = text, .route = {releases.from, releases.to}, .services = needed});
        for (const step_t &step : conversion.steps) {
            if (step.failure)
                return {text, std::string(step.service->name) + ": " + step.failure->reason};
        }
        return {*texts.insert(conversion.result).first, ""};
    }

    const std::vector<const service_t *> &services;
    std::set<shared_text_t, by_bytes_t> texts;
    std::map<std::tuple<const std::string *, std::string, std::string>, hop_t> hops;
};

// ---- the judgement of one way

std::vector<std::string_view> views(const route_t &route) { return {route.begin(), route.end()}; }

bool same_finding(const difference_t &a, const difference_t &b) {
    return a.code == b.code && a.words == b.words;
}

bool is_among(const difference_t &difference, const differences_t &others) {
    return std::any_of(others.begin(), others.end(),
                       [&](const difference_t &o) { return same_finding(difference, o); });
}

// What a difference is about: the names in the first lines of its stanzas, and of its effects the
// place, the policy-map and the class-map. What one release writes into one stanza another may
// write into another one, of the same name.
class topic_t {
  public:
    topic_t(const difference_t &difference, const std::string &before, const std::string &after) {
        add_stanzas(difference.before, before);
        add_stanzas(difference.after, after);
        for (const meaning::row_change_t &change : difference.rows)
            for (const std::string *name :
                 {&change.row.place, &change.row.policy, &change.row.class_name})
                add_name(*name);
    }

    // Every stanza of a text.
    explicit topic_t(const std::string &text) {
        for (const std::string_view line : split_lines(text)) {
            if (!line.starts_with(' '))
                add_name(without_newline(line));
        }
    }

    bool meets(const topic_t &other) const {
        return std::any_of(names.begin(), names.end(),
                           [&](const std::string &name) { return other.names.contains(name); });
    }

    void remove(const topic_t &other) {
        std::erase_if(names, [&](const std::string &name) { return other.names.contains(name); });
    }

  private:
    void add_stanzas(const std::vector<uint32_t> &numbers, const std::string &text) {
        const lines_t lines = split_lines(text);
        for (size_t line : numbers) {
            while (line > 1 && lines[line - 1].starts_with(' '))
                line--;
            add_name(without_newline(lines[line - 1]));
        }
    }

    // The last word.
    void add_name(std::string_view header) {
        names.emplace(header.substr(header.find_last_of(' ') + 1));
    }

    std::set<std::string> names;
};

// The original, what became of it, and the differences between the two.
struct end_t {
    const std::string &original, &result;
    const differences_t &differences;
};

// What a finding of one way tells that the same finding of the other does not.
topic_t told_only_here(const difference_t &difference, const end_t &here, const end_t &there) {
    topic_t topic(difference, here.original, here.result);
    for (const difference_t &other : there.differences) {
        if (same_finding(difference, other))
            topic.remove(topic_t(other, there.original, there.result));
    }
    return topic;
}

// Does a finding that only one of two ways has tell of this difference between their results?
bool is_explained(const difference_t &unlike, const end_t &direct, const end_t &other) {
    const topic_t topic(unlike, direct.result, other.result);
    const auto tells = [&](const end_t &has, const end_t &has_not) {
        return std::any_of(
            has.differences.begin(), has.differences.end(), [&](const difference_t &d) {
                return d.severity() != severity_t::note &&
                       ((same_finding(d, unlike) && !is_among(d, has_not.differences)) ||
                        told_only_here(d, has, has_not).meets(topic));
            });
    };
    return tells(direct, other) || tells(other, direct);
}

// Effects are counted, for one finding may tell of many; of an error about none of them its lines,
// which the release does not read or nobody has any more.
size_t count_lost(const meaning::original_t &original, const std::string &result,
                  const route_t &route, const differences_t &differences) {
    const auto rows = meaning::changed_rows(original, result, views(route));
    size_t lost = static_cast<size_t>(std::count_if(rows.begin(), rows.end(), [](const auto &r) {
        return r.change == meaning::change_t::lost;
    }));
    for (const difference_t &difference : differences) {
        if (difference.severity() == severity_t::error && difference.rows.empty())
            lost += std::max({difference.before.size(), difference.after.size(), size_t{1}});
    }
    return lost;
}

class guide_t {
  public:
    guide_t(const shared_text_t &text, const std::string &release,
            const std::vector<const service_t *> &services)
        : original(text), read(*text, release), names_of_original(*text), traveller(services) {}

    way_t walk(const route_t &route) {
        way_t way = {.routes = {route}, .result = original};
        for (size_t hop = 0; hop < hops_of(route); hop++) {
            const auto releases = hop_of(route, hop);
            const hop_t &made = traveller.go(way.result, releases);
            if (!made.failure.empty()) {
                way.failed_hop = {releases.from, releases.to};
                way.failure = made.failure;
                return way;
            }
            way.result = made.result;
        }
        return way;
    }

    void judge_way(way_t &way, const way_t &direct) {
        if (way.fails())
            return;
        const route_t &route = way.routes.front();
        const differences_t &differences = compared(way.result, route);
        way.findings = findings_from(*original, *way.result, differences);
        const std::vector<shared_text_t> stages = stages_of(route);
        tell_hops(way.findings, route,
                  [&](size_t hops) { return compared(stages[hops], beginning_of(route, hops)); });
        way.count = count_findings(way.findings);
        way.lost = count_lost(read, *way.result, route, differences);
        if (!direct.fails() && way.result != direct.result)
            compare_with_direct(way, direct);
        look_back(way);
    }

  private:
    // The original with what became of it on the route. Many ways have their first hops in common.
    const differences_t &compared(const shared_text_t &text, const route_t &route) {
        const auto [entry, is_new] = comparisons.try_emplace({text, route});
        if (is_new)
            entry->second = read.compare(*text, views(route));
        return entry->second;
    }

    std::vector<shared_text_t> stages_of(const route_t &route) {
        std::vector<shared_text_t> stages = {original};
        for (size_t hop = 0; hop < hops_of(route); hop++)
            stages.push_back(traveller.go(stages.back(), hop_of(route, hop)).result);
        return stages;
    }

    void compare_with_direct(way_t &way, const way_t &direct) {
        const std::string &release = way.routes.front().back();
        const route_t stay = {release, release};
        const meaning::original_t of_direct(*direct.result, release);
        differences_t unlike = of_direct.compare(*way.result, views(stay));
        const differences_t own = of_direct.compare(*direct.result, views(stay));
        std::erase_if(unlike, [&](const difference_t &d) {
            return is_among(d, own) || !is_effect(d, topic_t(d, *direct.result, *way.result));
        });
        way.as_direct = unlike.empty();
        const end_t here = {*original, *way.result, compared(way.result, way.routes.front())};
        const end_t there = {*original, *direct.result,
                             compared(direct.result, direct.routes.front())};
        for (const difference_t &difference : unlike) {
            if (!is_explained(difference, there, here))
                way.unexplained.push_back(difference.code.name() + (' ' + difference.words));
        }
    }

    // What both results have wrong is no difference between them. Nor is a map that only one way
    // has written, when the original has none of its name: nothing uses it.
    bool is_effect(const difference_t &difference, const topic_t &topic) const {
        constexpr finding_code_t class_map_gone = "IC020", policy_map_gone = "IC021";
        const bool is_map = difference.code == class_map_gone || difference.code == policy_map_gone;
        return difference.severity() == severity_t::error &&
               (!is_map || topic.meets(names_of_original));
    }

    void look_back(way_t &way) {
        const route_t &there = way.routes.front(), back = way_back(there);
        shared_text_t text = way.result;
        for (size_t hop = 0; hop < hops_of(back); hop++) {
            const hop_t &made = traveller.go(text, hop_of(back, hop));
            if (!made.failure.empty()) {
                way.back_failure = made.failure;
                return;
            }
            text = made.result;
        }
        differences_t differences = read.compare(*text, views(there_and_back(there)));
        std::erase_if(differences,
                      [](const difference_t &d) { return d.severity() != severity_t::error; });
        way.left_behind = findings_from(*original, *text, differences);
    }

    const shared_text_t original;
    const meaning::original_t read;
    const topic_t names_of_original;
    traveller_t traveller;
    std::map<std::pair<shared_text_t, route_t>, differences_t> comparisons;
};

auto rank(const way_t &way) {
    return std::tuple(way.fails(), way.lost, way.routes.front().size(), way.count.warnings);
}

} // namespace

std::vector<way_t> try_ways(const shared_text_t &text,
                            const std::vector<const service_t *> &services,
                            const std::vector<route_t> &routes) {
    guide_t guide(text, routes.front().front(), services);
    std::vector<way_t> ways;
    for (const route_t &route : routes) {
        way_t walked = guide.walk(route);
        const auto same = std::find_if(ways.begin(), ways.end(), [&](const way_t &way) {
            return way.result == walked.result && way.failed_hop == walked.failed_hop;
        });
        if (same == ways.end())
            ways.push_back(std::move(walked));
        else
            same->routes.push_back(route);
    }
    const way_t direct = ways.front();
    for (way_t &way : ways)
        guide.judge_way(way, direct);
    std::stable_sort(ways.begin(), ways.end(),
                     [](const way_t &a, const way_t &b) { return rank(a) < rank(b); });
    return ways;
}

} // namespace infraconvert
