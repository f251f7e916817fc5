#include "mending/restore.h"

#include <algorithm>

namespace infraconvert::mending {

using namespace meaning; // this room speaks of nothing else

namespace {

const class_map_t *class_map_of(const model_t &model, std::string_view name) {
    for (const std::string_view type : {types::qos, types::none, types::control_plane}) {
        if (const class_map_t *map = model.class_map(type, name))
            return map;
    }
    for (const class_map_t &map : model.class_maps) {
        if (map.name == name)
            return &map;
    }
    return nullptr;
}

// Everything that the parts have to say, for a difference of several kinds.
candidate_t all_of(const std::vector<candidate_t> &candidates) {
    candidate_t all;
    for (const candidate_t &candidate : candidates)
        merge(all.commands, candidate.commands);
    return all;
}

} // namespace

scene_t::scene_t(const side_t &original, const side_t &result, const table_t *had)
    : before(original.model), after(result.model), effects_before(original.table),
      effects_had(had) {}

std::string type_words(std::string_view type) {
    return type.empty() ? "" : "type " + std::string(type) + ' ';
}

std::vector<std::string> match_lines(const scene_t &scene, std::string_view class_name) {
    std::vector<std::string> lines;
    if (const class_map_t *map = class_map_of(scene.before, class_name)) {
        for (const criterion_t &criterion : map->matches)
            lines.push_back("  match " + criterion.text);
    }
    return lines;
}

std::string class_map_header(const scene_t &scene, std::string_view type, std::string_view name) {
    const class_map_t *map = class_map_of(scene.before, name);
    const bool all = map && map->all && map->matches.size() > 1 &&
                     (type == types::qos || type == types::none || type == types::control_plane);
    if (all && !scene.after.dialect.front_word)
        return "";
    return "class-map " + type_words(type) + (all ? "match-all " : "") + std::string(name);
}

std::vector<candidate_t> restoring(const scene_t &scene, const difference_t &difference) {
    std::vector<candidate_t> candidates;
    const auto offer = [&](candidate_t candidate) {
        if (!candidate.commands.empty() || !candidate.why_not.empty())
            candidates.push_back(std::move(candidate));
    };
    if (!difference.rows.empty()) {
        const commands_t content = restored_content(scene, difference).commands;
        const commands_t lines = restored_lines(scene, difference).commands;
        for (const names_t names : {names_t::same, names_t::unique}) {
            const candidate_t rows = restored_rows(scene, difference, names);
            offer(rows);
            for (const commands_t &unread : {content, lines}) {
                candidate_t both = rows;
                merge(both.commands, unread);
                if (!rows.commands.empty() && !unread.empty())
                    offer(both);
            }
        }
    } else {
        for (const attachment_t &attachment : scene.before.attachments) {
            const auto &lines = difference.before;
            if (!std::binary_search(lines.begin(), lines.end(), attachment.line))
                continue;
            for (const names_t names : {names_t::same, names_t::unique})
                offer(restored_marking(scene, attachment, names));
        }
        offer(restored_content(scene, difference));
        offer(restored_order(scene, difference));
    }
    offer(restored_lines(scene, difference));
    if (candidates.size() > 1)
        offer(all_of(candidates));
    return candidates;
}

} // namespace infraconvert::mending
