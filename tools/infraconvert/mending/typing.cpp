// What typing makes of the lines of a stanza: what stands already is not repeated, an action
// replaces the one with its keyword, and a line that comes back stands where it did.

#include "mending/commands.h"
#include "mending/line_words.h"
#include "mending/saved_text.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <unordered_map>

namespace infraconvert::mending {

namespace {

struct place_t {
    body_t *body;
    body_t::iterator line;
};

// The lines of stanzas with one first line, by their words.
class body_lines_t {
  public:
    body_lines_t(saved_text_t::stanzas_t same, const std::vector<std::string> &original_order)
        : stanzas(std::move(same)), order(original_order) {
        for (size_t i = 0; i < order.size(); i++)
            positions[order[i]].push_back(i);
        for (saved_stanza_t *stanza : stanzas) {
            for (auto line = stanza->body().begin(); line != stanza->body().end(); ++line)
                note(plain(*line), {&stanza->body(), line});
        }
    }

    void remove(std::string_view line) {
        const std::string words = plain(line);
        for (const auto &[body, at] : places[words])
            body->erase(at);
        places.erase(words);
        for (const size_t position : positions_of(words))
            standing.erase(position);
    }

    void add(std::string_view line) {
        const std::string words = plain(line);
        if (places.contains(words))
            return;
        const place_t next = place_for(words);
        note(words, {next.body, next.body->insert(next.line, line)});
    }

  private:
    void note(const std::string &words, const place_t &place) {
        places[words].push_back(place);
        const auto &all = positions_of(words);
        standing.insert(all.begin(), all.end());
    }

    const std::vector<size_t> &positions_of(const std::string &words) const {
        static const std::vector<size_t> none;
        const auto known = positions.find(words);
        return known == positions.end() ? none : known->second;
    }

    // Ahead of the line that follows it in the original, else at the end of the last stanza.
    place_t place_for(const std::string &words) {
        const auto &own = positions_of(words);
        const auto next = own.empty() ? standing.end() : standing.upper_bound(own.front());
        if (next != standing.end())
            return places[order[*next]].front();
        return {&stanzas.back()->body(), stanzas.back()->end_of_body()};
    }

    const saved_text_t::stanzas_t stanzas;
    const std::vector<std::string> &order;
    std::unordered_map<std::string, std::vector<size_t>> positions; // in the original's order
    std::unordered_map<std::string, std::vector<place_t>> places;
    std::set<size_t> standing; // positions of lines that stand there
};

// The classes of a policy-map by their names.
class policy_classes_t {
  public:
    explicit policy_classes_t(saved_text_t::stanzas_t same) : stanzas(std::move(same)) {
        for (saved_stanza_t *stanza : stanzas) {
            for (auto line = stanza->body().begin(); line != stanza->body().end(); ++line) {
                if (is_class_line(*line))
                    places[class_name(*line)].push_back({&stanza->body(), line});
            }
        }
    }

    void add(std::string_view line) {
        auto &known = places[class_name(line)];
        if (!known.empty())
            return;
        saved_stanza_t &last = *stanzas.back();
        known.push_back({&last.body(), last.body().insert(last.end_of_body(), line)});
    }

    void remove(std::string_view line) {
        for (const place_t &place : places[class_name(line)])
            place.body->erase(place.line, end_of_actions(place));
        places.erase(class_name(line));
    }

    // Stanzas of one first line are one to the switch, and so is the class in all of them.
    void edit_action(const std::string &class_of, const typed_line_t &action) {
        const auto known = places.find(class_of);
        if (known == places.end())
            return;
        bool stands = action.removes;
        for (const place_t &place : known->second)
            edit_action(place, action, stands);
        const place_t &first = known->second.front();
        if (!stands)
            first.body->insert(end_of_actions(first), action.text);
    }

  private:
    static void edit_action(const place_t &place, const typed_line_t &action, bool &stands) {
        const auto words_of = action.removes ? plain : keyword_of;
        const std::string wanted = words_of(action.text);
        const auto end = end_of_class(place);
        for (auto line = std::next(place.line); line != end;) {
            if (words_of(*line) != wanted) {
                ++line;
            } else if (stands) {
                line = place.body->erase(line);
            } else {
                *line++ = action.text;
                stands = true;
            }
        }
    }

    static body_t::iterator end_of_class(const place_t &place) {
        return std::find_if(std::next(place.line), place.body->end(), is_class_line);
    }

    // Ahead of the comments at its end.
    static body_t::iterator end_of_actions(const place_t &place) {
        auto end = end_of_class(place);
        while (std::prev(end) != place.line && !means_something(*std::prev(end)))
            --end;
        return end;
    }

    const saved_text_t::stanzas_t stanzas;
    std::unordered_map<std::string, std::vector<place_t>> places;
};

void type_policy(const saved_text_t::stanzas_t &stanzas, const command_t &command) {
    policy_classes_t classes(stanzas);
    std::string in_class;
    for (const typed_line_t &line : command.body) {
        if (is_class_line(line.text)) {
            in_class = line.removes ? "" : class_name(line.text);
            line.removes ? classes.remove(line.text) : classes.add(line.text);
        } else if (!in_class.empty()) {
            classes.edit_action(in_class, line);
        } else {
            body_lines_t lines(stanzas, command.order);
            line.removes ? lines.remove(line.text) : lines.add(line.text);
        }
    }
}

void type_body(const saved_text_t::stanzas_t &stanzas, const command_t &command) {
    body_lines_t lines(stanzas, command.order);
    for (const typed_line_t &line : command.body)
        line.removes ? lines.remove(line.text) : lines.add(line.text);
}

void type(saved_text_t &text, const command_t &command) {
    auto stanzas = text.stanzas(command.header);
    if (command.how == command_t::remove) {
        for (saved_stanza_t *stanza : stanzas)
            stanza->take_away();
        return;
    }
    if (command.how == command_t::apart) {
        body_t &body = text.add_in_front(command.header).body();
        for (const typed_line_t &line : command.body)
            body.push_back(line.text);
        return;
    }
    if (stanzas.empty())
        stanzas = {&text.add(command.header)};
    const bool policy = command.header.starts_with("policy-map ");
    policy ? type_policy(stanzas, command) : type_body(stanzas, command);
}

} // namespace

std::string applied(std::string_view text, const commands_t &commands) {
    saved_text_t saved(text);
    for (const command_t &command : commands)
        type(saved, command);
    return saved.text();
}

} // namespace infraconvert::mending
