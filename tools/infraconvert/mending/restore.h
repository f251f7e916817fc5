// Lines to type after a conversion that bring back what a difference tells of. They are candidates:
// nothing here is believed before the comparison of the mended result says so.
#pragma once

#include "mending/commands.h"
#include "mending/judged.h"

#include <span>
#include <string>
#include <vector>

namespace infraconvert::mending {

// The original and a result, for all differences between them.
struct scene_t {
    // The sides must outlive the object, and so must `had`.
    scene_t(const meaning::side_t &original, const meaning::side_t &result,
            const meaning::table_t *had = nullptr);

    const meaning::model_t &before, &after;
    const meaning::table_t &effects_before;
    // Of a result before lines were removed to be written anew. What cannot be said as it was may
    // then be said as the conversion did. Null: nothing was removed.
    const meaning::table_t *const effects_had;

    bool typed() const { return after.dialect.typed; }
};

struct candidate_t {
    commands_t commands;
    std::string why_not; // why the release has no lines for it; empty: it may have
};

// The ways to bring back what the difference tells of, the smallest first.
std::vector<candidate_t> restoring(const scene_t &scene, const meaning::difference_t &difference);

// ---- the parts: each adds what it knows to do

// The policy-maps that take what comes back.
enum class names_t {
    same,   // those in force at the place, else those of the original's names
    placed, // the same, but under a name for their place
    unique, // new ones, in place of those that are attached
};

// Rows of the effect table: maps, classes, actions and attachments.
candidate_t restored_rows(const scene_t &scene, const meaning::difference_t &difference,
                          names_t names);

// An attachment at an interface that only puts traffic into groups.
candidate_t restored_marking(const scene_t &scene, const meaning::attachment_t &attachment,
                             names_t names);

// A policy-map with the classes that it has, each once and in the original's order.
candidate_t restored_order(const scene_t &scene, const meaning::difference_t &difference);

// Maps and their lines that are attached nowhere.
candidate_t restored_content(const scene_t &scene, const meaning::difference_t &difference);

// Lines under their stanzas, features by the target's spelling, lines in the target's order.
candidate_t restored_lines(const scene_t &scene, const meaning::difference_t &difference);

// What QoS lacks, row by row, each on top of those before it; `anew` from nothing, without the maps
// and attachments that there are.
candidate_t rebuilt_qos(const meaning::original_t &original, const std::string &result,
                        std::span<const std::string_view> route, names_t names, bool anew,
                        work_t &work);

// Why the target has no lines for what no candidate brings back; empty where none is known.
std::string no_way(const scene_t &scene, const meaning::difference_t &difference);

// The same for attachments without an effect on the way to a release without types.
std::string no_room(const scene_t &scene, const meaning::difference_t &difference);

// The criteria of a class-map of the original, as lines; empty where this release cannot say them.
std::vector<std::string> match_lines(const scene_t &scene, std::string_view class_name);

// The first line of a class-map, with match-all where the original has it and the release reads it;
// empty where it does not.
std::string class_map_header(const scene_t &scene, std::string_view type, std::string_view name);

// "type qos " or nothing.
std::string type_words(std::string_view type);

} // namespace infraconvert::mending
