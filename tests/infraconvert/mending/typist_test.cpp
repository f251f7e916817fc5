// The lines of fixes, typed one by one on a switch that knows them only as text: each is read under
// the first line that was typed before it, and stanzas of one first line are one. What the switch
// has in the end must be what the fixes were judged by.

#include "infraconvert/meaning/configurations.h"
#include "support/services.h"

#include "mending/mend.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;
using namespace meaning_test;
using infraconvert::mending::mended_t;

std::vector<std::string> words_of(const std::string &line) {
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::string in_words(const std::vector<std::string> &words) {
    std::string line;
    for (const std::string &word : words)
        line += (line.empty() ? "" : " ") + word;
    return line;
}

class switch_t {
  public:
    explicit switch_t(const std::string &saved) {
        for (const std::string &line : meaning_test::lines_of(saved))
            take(line, false);
        nowhere.clear(); // a saved text may have what it likes
        stanza = nullptr;
    }

    void type(const std::string &line) { take(line, true); }

    // What is on it. Only of classes the order means something; the other lines of a stanza the
    // switch writes in an order of its own.
    std::set<std::string> holds() const {
        std::set<std::string> all;
        for (const auto &[header, body] : stanzas) {
            all.insert(header);
            std::string order;
            for (const auto &[line, actions] : body) {
                all.insert(header + " | " + line);
                for (const std::string &action : actions)
                    all.insert(header + " | " + line + " | " + action);
                if (line.starts_with("class "))
                    order += ", " + line;
            }
            all.insert(header + " in this order" + order);
        }
        return all;
    }

    std::set<std::string> nowhere; // lines that were typed where they have no meaning

  private:
    struct line_t {
        std::string text;
        std::vector<std::string> actions; // of a class
    };
    using body_t = std::vector<line_t>;

    static bool is_comment(const std::vector<std::string> &words) {
        return words.empty() || words[0][0] == '!' || words[0][0] == '#';
    }

    void take(const std::string &line, bool typed) {
        std::vector<std::string> words = words_of(line);
        if (is_comment(words))
            return;
        const bool no = typed && words[0] == "no";
        const std::string said = in_words(words);
        if (no)
            words.erase(words.begin());
        const std::string text = in_words(words);
        if (line[0] != ' ' && line[0] != '\t')
            take_header(text, said, no);
        else if (!stanza)
            nowhere.insert(line);
        else if (policy && words[0] == "class")
            take_class("class " + words.back(), no);
        else if (policy && words[0] != "description")
            take_action(words, no, line);
        else
            take_line(text, said, no);
    }

    void take_header(const std::string &header, const std::string &said, bool no) {
        in_class.clear();
        stanza = nullptr;
        if (no && stanzas.erase(header) > 0)
            return;
        policy = said.starts_with("policy-map ");
        stanza = &stanzas[said];
    }

    body_t::iterator find(const std::string &text) {
        return std::find_if(stanza->begin(), stanza->end(),
                            [&](const line_t &line) { return line.text == text; });
    }

    void take_class(const std::string &name, bool no) {
        in_class = no ? "" : name;
        const auto known = find(name);
        if (no && known != stanza->end())
            stanza->erase(known);
        else if (!no && known == stanza->end())
            stanza->push_back({name, {}});
    }

    // Of most actions a class has one, and a later one is in its place.
    void take_action(const std::vector<std::string> &words, bool no, const std::string &line) {
        const auto known = find(in_class);
        if (in_class.empty() || known == stanza->end()) {
            nowhere.insert(line);
            return;
        }
        const bool set = words[0] == "set" && words.size() > 1;
        const std::string text = in_words(words);
        const std::string keyword = no ? text : set ? "set " + words[1] : words[0];
        std::erase_if(known->actions, [&](const std::string &action) {
            return action == keyword || (!no && action.starts_with(keyword + ' '));
        });
        if (!no)
            known->actions.push_back(text);
    }

    void take_line(const std::string &text, const std::string &said, bool no) {
        const auto known = find(text);
        if (no && known != stanza->end())
            stanza->erase(known);
        else if (find(said) == stanza->end())
            stanza->push_back({said, {}});
    }

    std::map<std::string, body_t> stanzas;
    body_t *stanza = nullptr;
    bool policy = false;
    std::string in_class;
};

struct tally_t {
    size_t fixed = 0, mended_mtus = 0;

    // True when there was something to type.
    bool type(const std::string &original, const std::string &result,
              const std::vector<std::string> &route) {
        const std::vector<std::string_view> releases(route.begin(), route.end());
        const mended_t mended = infraconvert::mending::mend(
            {.original = original, .result = result, .route = releases});
        switch_t typed(result);
        for (const auto &fix : mended.fixes) {
            mended_mtus += fix.codes.contains("IC054");
            for (const std::string &line : lines_of(fix.commands))
                typed.type(line);
        }
        fixed += !mended.fixes.empty();
        if (mended.fixes.empty())
            return false;
        EXPECT_EQ(typed.nowhere, std::set<std::string>()) << original;
        EXPECT_EQ(typed.holds(), switch_t(mended.result).holds()) << original;
        return true;
    }
};

std::string converted(const std::string &service, const std::string &text, const std::string &from,
                      const std::string &to) {
    const auto made =
        support::convert(support::service_named(service), text, from.c_str(), to.c_str(), 0);
    return made.status == 0 ? made.file : "";
}

// Those of conversions that do not fail.
std::vector<fs::path> golden_folders() {
    std::vector<fs::path> folders;
    for (const auto &entry : fs::recursive_directory_iterator(GOLDEN_DIRECTORY)) {
        if (fs::exists(entry.path() / "in.cfg") && !fs::exists(entry.path() / "fails"))
            folders.push_back(entry.path());
    }
    return folders;
}

TEST(typed_lines, make_what_was_judged) {
    tally_t there;
    for (const conversion_t &made : conversions(7, 100))
        there.type(made.before, made.after, made.route);
    EXPECT_GT(there.fixed, 10);
}

TEST(typed_lines, make_what_was_judged_after_a_rollback) {
    tally_t back;
    const auto look_back = [&](const conversion_t &made, const std::string &service) {
        const std::string rolled_back =
            converted(service, made.after, made.route[1], made.route[0]);
        if (!rolled_back.empty())
            back.type(made.before, rolled_back, {made.route[0], made.route[1], made.route[0]});
    };
    for (const conversion_t &made : conversions(8, 100))
        look_back(made, "qos");
    for (const fs::path &folder : golden_folders()) {
        const fs::path releases = folder.parent_path();
        const std::string pair = releases.filename();
        const size_t middle = pair.find("__");
        const std::string text = support::read_file(folder / "in.cfg");
        look_back({text,
                   fs::exists(folder / "out.cfg") ? support::read_file(folder / "out.cfg") : text,
                   {pair.substr(0, middle), pair.substr(middle + 2)}},
                  releases.parent_path().filename());
    }
    EXPECT_GT(back.fixed, 10);
    EXPECT_GT(back.mended_mtus, 5);
}

} // namespace
