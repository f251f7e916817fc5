// Before 4.1(3) a place takes one policy-map for each direction, and a policy-map says the same
// wherever it is attached. An attachment without an effect keeps the name of its policy-map,
// because nothing else is left of it; so two of them, or one and the effects beside it, may have no
// room.

#include "mending/restore.h"

#include "meaning/effects.h"

#include <algorithm>
#include <set>

namespace infraconvert::mending {

using namespace meaning;

namespace {

// What has one policy-map: the system, an interface in one direction.
struct slot_t {
    std::string_view place, direction;

    explicit slot_t(const attachment_t &attachment)
        : place(attachment.place),
          direction(attachment.kind == place_kind_t::system ? ""
                    : attachment.type == types::qos         ? "input"
                                                            : attachment.direction) {}

    bool is_system() const { return place == "system"; }
    bool operator==(const slot_t &) const = default;
    bool has(const row_t &row) const {
        return row.place == place && (is_system() || row.direction == direction);
    }
    std::string words() const {
        return is_system()
                   ? "the system"
                   : std::string(place) + (direction.empty() ? "" : " ") + std::string(direction);
    }
};

class rooms_t {
  public:
    rooms_t(const scene_t &looked_at, const difference_t &told)
        : model(looked_at.before), rows(looked_at.effects_before), difference(told) {
        std::set<uint32_t> with_rows;
        for (const row_t &row : rows) {
            with_rows.insert(row.attachment_line);
            shown.insert(row.action_line);
        }
        for (const attachment_t &each : model.attachments) {
            if (!with_rows.contains(each.line) && keeps_its_name(each))
                silent.push_back(&each);
        }
    }

    std::string run() const {
        for (const attachment_t *each : silent) {
            if (!concerns(*each))
                continue;
            for (const auto check : {&rooms_t::beside_another, &rooms_t::said_by_namesakes,
                                     &rooms_t::said_elsewhere}) {
                if (std::string why = (this->*check)(*each); !why.empty())
                    return why;
            }
        }
        return "";
    }

  private:
    // The same attachments that the comparison wants to find again under their names.
    bool keeps_its_name(const attachment_t &attachment) const {
        const bool system = attachment.kind == place_kind_t::system;
        if (attachment.kind == place_kind_t::control_plane ||
            (system && attachment.type == types::qos))
            return false;
        const policy_t *policy = model.policy_of(attachment);
        return policy && (attachment.type != types::network || policy->has_actions());
    }

    bool is_told(uint32_t line) const {
        return std::binary_search(difference.before.begin(), difference.before.end(), line);
    }

    bool is_told(const slot_t &slot, std::string_view traffic, std::string_view effect) const {
        return std::any_of(difference.rows.begin(), difference.rows.end(), [&](const auto &change) {
            return slot.has(change.row) && change.row.traffic == traffic &&
                   change.row.effect == effect;
        });
    }

    bool is_gained(const slot_t &slot, const class_t &from, const action_t &action) const {
        return std::any_of(difference.rows.begin(), difference.rows.end(), [&](const auto &change) {
            return change.gained && slot.has(change.row) && change.row.class_name == from.name &&
                   change.row.effect == action.text;
        });
    }

    // Spares looking further at most of them.
    bool concerns(const attachment_t &attachment) const {
        if (is_told(attachment.line))
            return true;
        for (const attachment_t *other : silent) {
            if (other->name == attachment.name &&
                std::any_of(difference.rows.begin(), difference.rows.end(),
                            [&](const auto &each) { return each.row.place == other->place; }))
                return true;
        }
        for (const uint32_t named : model.policies_named(attachment.name)) {
            for (const class_t &each : model.policies[named].classes) {
                if (std::any_of(each.actions.begin(), each.actions.end(),
                                [&](const action_t &action) { return is_told(action.line); }))
                    return true;
            }
        }
        return false;
    }

    std::string beside_another(const attachment_t &one) const {
        for (const attachment_t *other : silent) {
            if (slot_t(*other) == slot_t(one) && other->name != one.name &&
                (is_told(one.line) || is_told(other->line)))
                return "before 4.1(3) " + slot_t(one).words() +
                       " takes one policy-map, and the original has both " + std::string(one.name) +
                       " and " + std::string(other->name) + " there, without an effect";
        }
        return "";
    }

    bool has(const slot_t &slot, std::string_view traffic, std::string_view effect) const {
        return std::any_of(rows.begin(), rows.end(), [&](const row_t &row) {
            return slot.has(row) && row.traffic == traffic && row.effect == effect;
        });
    }

    bool has(const slot_t &slot, std::string_view effect) const {
        return std::any_of(rows.begin(), rows.end(),
                           [&](const row_t &row) { return slot.has(row) && row.effect == effect; });
    }

    // An action of a namesake that takes effect as soon as there is only one of the name.
    std::string said_by_namesakes(const attachment_t &one) const {
        const slot_t slot(one);
        for (const uint32_t named : model.policies_named(one.name)) {
            for (const class_t &from : model.policies[named].classes) {
                const std::string traffic = in_words(traffic_of(model, types::qos, from.name));
                for (const action_t &action : from.actions) {
                    const bool stays =
                        action.kind != action_kind_t::group && !shown.contains(action.line);
                    const bool fits = is_predefined(from.name) ? has(slot, traffic, action.text)
                                                               : has(slot, action.text);
                    if (stays && !traffic.empty() && !fits &&
                        (is_told(one.line) || is_told(action.line) ||
                         is_gained(slot, from, action)))
                        return "before 4.1(3) policy-map " + std::string(one.name) +
                               " is one for all its types, and attached to " + slot.words() +
                               " it would say " + action.text + " for " + traffic;
                }
            }
        }
        return "";
    }

    // An effect that would be met wherever its policy-map is.
    std::string said_elsewhere(const attachment_t &one) const {
        for (const attachment_t *other : silent) {
            const slot_t here(one), there(*other);
            if (other->name != one.name || here == there)
                continue;
            for (const row_t &row : rows) {
                const bool meets = row.is_marking() && there.is_system()
                                       ? false
                                       : has(there, row.traffic, row.effect);
                if (here.has(row) && !meets &&
                    (is_told(one.line) || is_told(other->line) || is_told(row.action_line) ||
                     is_told(here, row.traffic, row.effect) ||
                     is_told(there, row.traffic, row.effect)))
                    return "before 4.1(3) " + here.words() + " and " + there.words() +
                           " have one policy-map, " + std::string(one.name) +
                           ", which is attached to both in the original, and only " + here.words() +
                           " has " + row.effect + " for " + row.traffic;
            }
        }
        return "";
    }

    const model_t &model;
    const table_t &rows;
    const difference_t &difference;
    std::set<uint32_t> shown; // lines of actions of which rows tell
    std::vector<const attachment_t *> silent;
};

// A number that nothing on the system has; before 4.1(3) it is the system's own classes that have
// the queues.
std::string joins_the_system(const scene_t &scene, const row_t &row) {
    constexpr std::string_view numbered = "qos-group ";
    if (!row.is_marking() || !row.effect.starts_with(numbered))
        return "";
    const std::string number = row.effect.substr(numbered.size());
    if (number == "0" || number == "1")
        return "before 4.1(3) qos-group " + number + " is always that of " +
               std::string(number == "0" ? classes::rest : classes::fcoe);
    for (const row_t &other : scene.effects_before) {
        if (other.place == "system" && other.traffic == row.traffic)
            return "before 4.1(3) what is marked goes with its own class on the system, and " +
                   row.traffic + " has " + other.effect + " there";
    }
    return "";
}

} // namespace

std::string no_room(const scene_t &scene, const difference_t &difference) {
    if (!scene.before.dialect.typed || scene.typed())
        return "";
    for (const row_change_t &change : difference.rows) {
        if (std::string why = joins_the_system(scene, change.row); !change.gained && !why.empty())
            return why;
    }
    return rooms_t(scene, difference).run();
}

} // namespace infraconvert::mending
