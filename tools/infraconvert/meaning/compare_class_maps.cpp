// Class-maps and their match lines, as far as no traffic of a row comes from them.

#include "meaning/content.h"

#include <algorithm>
#include <map>

namespace infraconvert::meaning {

namespace {

// All class-maps of one name, of whatever type.
struct selected_t {
    std::vector<std::string> matches; // sorted
    bool all = false, has_groups = false;
    bool empty = false;        // one of type qos matches nothing at all
    bool control_plane = true; // and of no other type
    lines_t lines;
};
using selections_t = std::map<std::string_view, selected_t>;

void add(selected_t &selected, const class_map_t &map) {
    selected.lines.insert(selected.lines.end(), map.headers.begin(), map.headers.end());
    selected.has_groups = selected.has_groups || !map.groups.empty();
    selected.empty =
        selected.empty || (map.type == types::qos && map.matches.empty() && map.groups.empty());
    selected.control_plane = selected.control_plane && map.type == types::control_plane;
    selected.all = selected.all || (map.all && map.matches.size() > 1);
    for (const criterion_t &criterion : map.matches) {
        selected.matches.push_back(criterion.text);
        selected.lines.push_back(criterion.line);
    }
}

selections_t selections_of(const model_t &model) {
    selections_t selections;
    for (const class_map_t &map : model.class_maps)
        add(selections[map.name], map);
    for (auto &[name, selected] : selections) {
        auto &matches = selected.matches;
        std::sort(matches.begin(), matches.end());
        matches.erase(std::unique(matches.begin(), matches.end()), matches.end());
    }
    return selections;
}

// What matched nothing but groups is said by them; a class that every release knows by itself needs
// no class-map.
bool may_go(const content_t &content, std::string_view name, const selected_t &old) {
    const bool crosses =
        content.comparison.before.is_typed() && !content.comparison.after.is_typed();
    const bool by_groups = old.has_groups && !old.empty;
    return old.matches.empty() && ((crosses && by_groups) || is_predefined(name));
}

void tell_gone(content_t &content, std::string_view name, const selected_t &old) {
    const bool queue_only = old.matches.empty() && content.rows_before.queues.contains(name);
    if (content.rows_before.classes.contains(name) || queue_only ||
        (old.control_plane &&
         content.goes_with_control_plane(types::control_plane, old.lines.front())))
        return;
    content.comparison.add(may_go(content, name, old) ? finding_code_t("IC026") : "IC020",
                           "class-map " + std::string(name) + " is gone", old.lines, {});
}

} // namespace

void compare_class_maps(content_t &content) {
    const selections_t now = selections_of(content.after);
    for (const auto &[name, old] : selections_of(content.before)) {
        const auto same = now.find(name);
        if (same == now.end()) {
            tell_gone(content, name, old);
            continue;
        }
        const bool in_rows =
            content.rows_before.classes.contains(name) || content.rows_after.classes.contains(name);
        const bool differs = same->second.matches != old.matches || same->second.all != old.all;
        if (differs && !in_rows && !content.comparison.is_told(name))
            content.comparison.add("IC023",
                                   "class-map " + std::string(name) + " has other match lines",
                                   old.lines, same->second.lines);
    }
}

} // namespace infraconvert::meaning
