// Lines outside the maps: those that went come back under their stanza, those that appeared go;
// features and commands in the target's spelling; fabric extender lines in the target's order.

#include "mending/restore.h"

#include <algorithm>
#include <cstring>

namespace infraconvert::mending {

using namespace meaning;

namespace {

constexpr const char *npiv_lines[] = {"npiv enable", "feature npiv"};
constexpr const char *fc_lines[] = {"port-security enable", "feature port-security",
                                    "feature fc-port-security"};
constexpr const char *mac_words[] = {"mac-address-table", "mac address-table"};
constexpr const char *fc_words[] = {"port-security", "port-security", "fc-port-security"};

class line_restorer_t {
  public:
    line_restorer_t(const scene_t &looked_at, const difference_t &told)
        : scene(looked_at), difference(told) {}

    candidate_t run() {
        if (concerns_vlans())
            return restored_vlans();
        if (put_fabric_lines_in_order())
            return {commands, ""};
        for_each_line(scene.after, difference.after,
                      [&](const stanza_t &stanza, const line_t &line) {
                          const bool gone = goes_as_a_whole(stanza) && !is_header(stanza, line);
                          if (!gone && (!difference.before.empty() || !respell(stanza, line)))
                              remove(stanza, line);
                      });
        for_each_line(scene.before, difference.before,
                      [&](const stanza_t &stanza, const line_t &line) { restore(stanza, line); });
        return {why_not.empty() ? commands : commands_t(), why_not};
    }

  private:
    // Stanzas and lines of a text that are among these numbers; a header comes with itself.
    template<typename visit_t>
    static void for_each_line(const model_t &model, const std::vector<uint32_t> &numbers,
                              visit_t visit) {
        const auto told = [&](const line_t &line) {
            return std::binary_search(numbers.begin(), numbers.end(), line.number);
        };
        for (const stanza_t &stanza : model.reading.stanzas) {
            if (told(stanza.header))
                visit(stanza, stanza.header);
            for (const line_t &line : stanza.body) {
                if (told(line))
                    visit(stanza, line);
            }
        }
    }

    static bool is_header(const stanza_t &stanza, const line_t &line) {
        return stanza.header.number == line.number;
    }

    // With its first line go those below, which would make it again.
    bool goes_as_a_whole(const stanza_t &stanza) const {
        return !difference.before.empty() && !is_map_line(stanza) &&
               std::binary_search(difference.after.begin(), difference.after.end(),
                                  stanza.header.number);
    }

    static bool is_map_line(const stanza_t &stanza) {
        const words_t words = split_words(stanza.header.text);
        return is_map(words);
    }

    // ---- VLANs

    bool is_told(const vlan_stanza_t &stanza, const std::vector<uint32_t> &numbers) const {
        const auto told = [&](uint32_t line) {
            return std::binary_search(numbers.begin(), numbers.end(), line);
        };
        return told(stanza.line) || std::any_of(stanza.fcoe.begin(), stanza.fcoe.end(), told);
    }

    bool concerns_vlans() const {
        const auto any = [&](const model_t &model, const std::vector<uint32_t> &numbers) {
            return std::any_of(model.vlans.begin(), model.vlans.end(),
                               [&](const auto &stanza) { return is_told(stanza, numbers); });
        };
        return any(scene.before, difference.before) || any(scene.after, difference.after);
    }

    // Each VLAN by itself, as releases 5 want "fcoe"; older ones read it too.
    candidate_t restored_vlans() {
        const vlans_t lost = all_vlans(scene.before) & ~all_vlans(scene.after);
        const vlans_t lost_fcoe = fcoe_vlans(scene.before) & ~fcoe_vlans(scene.after);
        const vlans_t gained = all_vlans(scene.after) & ~all_vlans(scene.before);
        const vlans_t new_fcoe = fcoe_vlans(scene.after) & ~fcoe_vlans(scene.before);
        for (size_t vlan = 0; vlan < vlan_numbers; vlan++) {
            const std::string header = "vlan " + std::to_string(vlan);
            if (lost_fcoe[vlan])
                commands.push_back(
                    {.header = header, .how = command_t::apart, .body = {{"  fcoe"}}});
            else if (lost[vlan])
                block(commands, header);
            else if (gained[vlan])
                remove_stanza(commands, header);
        }
        for (const stanza_t &stanza : scene.after.reading.stanzas) {
            for (const vlan_stanza_t &vlans : scene.after.vlans) {
                if (vlans.line != stanza.header.number || vlans.fcoe.empty())
                    continue;
                const bool apart =
                    is_told(vlans, difference.after) && (vlans.vlans & new_fcoe).none();
                if (apart || (vlans.vlans & new_fcoe).any())
                    remove_line(commands, std::string(stanza.header.text), "  fcoe");
                for (size_t vlan = 0; apart && vlan < vlan_numbers; vlan++) {
                    if (vlans.vlans[vlan])
                        commands.push_back({.header = "vlan " + std::to_string(vlan),
                                            .how = command_t::apart,
                                            .body = {{"  fcoe"}}});
                }
            }
        }
        return {commands, ""};
    }

    // ---- fabric extender ports

    bool put_fabric_lines_in_order() {
        constexpr std::string_view member = "fex associate";
        for_each_line(scene.after, difference.after,
                      [&](const stanza_t &stanza, const line_t &line) {
                          if (!line.text.starts_with(member) || !is_out_of_order(stanza, line))
                              return;
                          const std::string header(stanza.header.text), text(line.text);
                          remove_line(commands, header, "  " + text);
                          add_line(commands, header, "  " + text);
                      });
        return !commands.empty();
    }

    bool is_out_of_order(const stanza_t &stanza, const line_t &member) const {
        return scene.after.dialect.fabric_order &&
               std::any_of(stanza.body.begin(), stanza.body.end(), [&](const line_t &line) {
                   return line.number > member.number &&
                          is_exactly(line.text, {"switchport", "mode", "fex-fabric"});
               });
    }

    // ---- any other line

    // Nobody can type what stands ahead of the first stanza.
    bool stands_nowhere(const stanza_t &stanza) {
        if (stanza.header.text.empty())
            why_not = "a line ahead of the first stanza cannot be typed";
        return stanza.header.text.empty();
    }

    void remove(const stanza_t &stanza, const line_t &line) {
        if (stands_nowhere(stanza))
            return;
        const std::string header(stanza.header.text);
        if (line.number != stanza.header.number) {
            remove_below(stanza, line);
            keep_one(header, line);
        } else if (is_map_line(stanza))
            write_header_anew(stanza);
        else
            remove_stanza(commands, header);
    }

    // An action is taken out of its class.
    void remove_below(const stanza_t &stanza, const line_t &line) {
        const std::string header(stanza.header.text), text(line.text);
        const line_t *in_class = nullptr;
        for (const line_t &above : stanza.body) {
            if (above.number <= line.number && split_words(above.text).front() == "class")
                in_class = &above;
        }
        if (header.starts_with("policy-map ") && in_class && in_class->number != line.number)
            add_action(commands, header, "  " + std::string(in_class->text), {"    " + text, true});
        else
            remove_line(commands, header, "  " + text);
    }

    // What stands there once too often goes as a whole, and comes back.
    void keep_one(const std::string &header, const line_t &line) {
        for (const stanza_t &stanza : scene.before.reading.stanzas) {
            for (const line_t &below : stanza.body) {
                if (stanza.header.text == header && below.text == line.text)
                    return restore(stanza, below);
            }
        }
    }

    // A class-map under a first line that the target reads, with the lines that it has.
    void write_header_anew(const stanza_t &stanza) {
        const words_t words = split_words(stanza.header.text);
        const bool typed = words.size() > 2 && words[1] == "type";
        if (typed && words[2] == types::control_plane && !scene.after.dialect.control_plane)
            return remove_stanza(commands, std::string(stanza.header.text));
        if (words[0] != "class-map")
            return;
        const std::string_view type = typed && scene.typed() ? words[2] : types::none;
        const std::string header = class_map_header(scene, type, words.back());
        if (header.empty()) {
            why_not = "the target release has no match-all, which class-map " +
                      std::string(words.back()) + " needs";
            return;
        }
        remove_stanza(commands, std::string(stanza.header.text));
        block(commands, header);
        for (const line_t &line : stanza.body)
            add_line(commands, header, "  " + std::string(line.text));
    }

    void restore(const stanza_t &stanza, const line_t &line) {
        // Attachments have another form in the other model, which others here know.
        const bool in_form = scene.before.dialect.typed == scene.typed() ||
                             !begins_with(split_words(line.text), {"service-policy"});
        if (is_map_line(stanza) || !in_form || stands_nowhere(stanza))
            return;
        const std::string header = carried_over(stanza.header.text);
        command_t &command = block(commands, header);
        for (const line_t &below : command.order.empty() ? stanza.body : std::span<const line_t>())
            command.order.push_back(joined(split_words(carried_over(below.text))));
        const bool whole = line.number == stanza.header.number;
        for (const line_t &below : whole ? stanza.body : std::span(&line, 1))
            add_line(commands, header, std::string(below.indent, ' ') + carried_over(below.text));
    }

    // A line of the original as the target spells it. What the original's release does not read as
    // a command of the services is another feature's.
    std::string carried_over(std::string_view text) const {
        const auto own = static_cast<size_t>(scene.before.dialect.fc_security);
        const words_t words = split_words(text);
        const bool off = !words.empty() && words[0] == "no";
        const std::string said = joined(std::span(words).subspan(off ? 1 : 0));
        const bool is_fc = is_one_of(fc_lines, said);
        return is_fc && said != fc_lines[own] ? std::string(text) : spelled(text);
    }

    // A command as the target spells it, whichever release spelled it before.
    std::string spelled(std::string_view text) const {
        const words_t words = split_words(text);
        if (words.empty())
            return "";
        const bool off = words[0] == "no";
        const std::string said = joined(std::span(words).subspan(off ? 1 : 0));
        const dialect_t &target = scene.after.dialect;
        const std::string front = off ? "no " : "";
        const auto security = static_cast<size_t>(target.fc_security);
        if (is_one_of(npiv_lines, said))
            return front + npiv_lines[target.npiv_feature];
        if (is_one_of(fc_lines, said))
            return front + fc_lines[security];
        for (const char *word : fc_words) {
            if (said.starts_with(std::string(word) + ' '))
                return front + fc_words[security] + said.substr(strlen(word));
        }
        for (const char *word : mac_words) {
            if (said.starts_with(std::string(word) + ' '))
                return front + mac_words[target.mac_by_blank] + said.substr(strlen(word));
        }
        return std::string(text);
    }

    template<typename list_t> static bool is_one_of(const list_t &list, const std::string &said) {
        return std::find(std::begin(list), std::end(list), said) != std::end(list);
    }

    // A command of the result in another release's spelling, with the lines below it.
    bool respell(const stanza_t &stanza, const line_t &line) {
        if (stanza.header.text.empty())
            return false;
        const std::string header(stanza.header.text), text(line.text), now = spelled(text);
        if (now == text)
            return false;
        if (line.number != stanza.header.number) {
            remove_line(commands, header, "  " + text);
            add_line(commands, header, "  " + now);
            return true;
        }
        remove_stanza(commands, header);
        block(commands, now);
        for (const line_t &below : stanza.body)
            add_line(commands, now, "  " + std::string(below.text));
        return true;
    }

    const scene_t &scene;
    const difference_t &difference;
    commands_t commands;
    std::string why_not;
};

} // namespace

candidate_t restored_lines(const scene_t &scene, const difference_t &difference) {
    return line_restorer_t(scene, difference).run();
}

} // namespace infraconvert::mending
