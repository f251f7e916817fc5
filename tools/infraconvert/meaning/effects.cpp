// From attachments to rows.

#include "meaning/effects.h"

#include <algorithm>
#include <tuple>

namespace infraconvert::meaning {

namespace {

// Rows of one attachment.
struct writer_t {
    const attachment_t &attachment;
    const policy_t &policy;
    table_t &table;

    void add(std::string_view direction, const traffic_t &traffic, const class_t &from,
             const action_t &action, const std::string &effect) const {
        if (traffic.empty())
            return;
        table.push_back({.place = attachment.place,
                         .direction = std::string(direction),
                         .traffic = in_words(traffic),
                         .effect = effect,
                         .keyword = action.keyword,
                         .mtu = action.mtu,
                         .policy = std::string(policy.name),
                         .type = std::string(policy.type),
                         .class_name = std::string(from.name),
                         .attachment_line = attachment.line,
                         .class_line = from.lines.front(),
                         .action_line = action.line});
    }

    void add(const traffic_t &traffic, const class_t &from, const action_t &action) const {
        const bool system = attachment.kind == place_kind_t::system;
        const bool scheduling = action.kind == action_kind_t::scheduling;
        if (system && scheduling && policy.type == types::none) {
            add("input", traffic, from, action, action.text);
            add("output", traffic, from, action, action.text);
        } else if (system && !scheduling) {
            add("", traffic, from, action, action.text);
        } else {
            add(attachment.direction, traffic, from, action, action.text);
        }
    }

    void add(const std::vector<mark_t> &marks) const {
        for (const mark_t &mark : marks)
            add("input", mark.traffic, *mark.from, *mark.action,
                mark.joins.empty() ? "qos-group " + std::string(mark.action->group())
                                   : "goes with " + in_words(mark.joins));
    }
};

// ---- one attachment

// True when a policy of this type can say such an action; another type's means nothing there.
bool says(std::string_view type, action_kind_t kind) {
    if (kind == action_kind_t::group)
        return false; // rows of its own
    if (kind == action_kind_t::other || type == types::none)
        return true;
    return type == (kind == action_kind_t::scheduling ? types::queuing : types::network);
}

// Rows of all attachments; what they share is looked up once.
class table_writer_t {
  public:
    explicit table_writer_t(const model_t &read)
        : model(read), untyped(read, types::none), typed(read, types::qos) {}

    table_t run() {
        for (const attachment_t &attachment : model.attachments) {
            if (const policy_t *policy = model.policy_of(attachment))
                add_rows({attachment, *policy, table});
        }
        return std::move(table);
    }

  private:
    void add_rows(const writer_t &writer) {
        const policy_t &policy = writer.policy;
        for (const class_t &from : policy.classes) {
            const traffic_t traffic = traffic_at(writer.attachment.place, policy.type, from.name);
            for (const action_t &action : from.actions) {
                if (says(policy.type, action.kind))
                    writer.add(traffic, from, action);
            }
        }
        if (writer.attachment.kind != place_kind_t::interface)
            return;
        if (policy.type == types::none)
            writer.add(untyped.marks(policy));
        if (policy.type == types::qos)
            writer.add(typed.marks(policy));
    }

    traffic_t traffic_at(std::string_view place, std::string_view type, std::string_view name) {
        if (!is_by_group(type))
            return traffic_of(model, type, name);
        const policy_t *in_force = policy_in_force(model, place);
        const auto [known, added] = groups.try_emplace(in_force, model, in_force);
        return queued_traffic(model, known->second, type, name);
    }

    const model_t &model;
    const system_marking_t untyped, typed;
    std::unordered_map<const policy_t *, groups_t> groups; // by the policy in force
    table_t table;
};

auto key(const row_t &row) {
    return std::tie(row.place, row.direction, row.traffic, row.keyword, row.effect);
}

} // namespace

bool same_row(const row_t &one, const row_t &other) { return key(one) == key(other); }

std::string place_in_words(const row_t &row) {
    constexpr std::string_view interface = "interface ";
    std::string text =
        row.place.starts_with(interface) ? row.place.substr(interface.size()) : row.place;
    return row.direction.empty() ? text : text + ' ' + row.direction;
}

std::string in_words(const row_t &row) {
    return place_in_words(row) + ": " + row.effect + " for " + row.traffic;
}

table_t effects_of(const model_t &model) {
    table_t table = table_writer_t(model).run();
    std::stable_sort(table.begin(), table.end(),
                     [](const row_t &a, const row_t &b) { return key(a) < key(b); });
    table.erase(std::unique(table.begin(), table.end(), same_row), table.end());
    return table;
}

} // namespace infraconvert::meaning
