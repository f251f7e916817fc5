// What is told of an original and a result, and how it is mended: ../judged/*.txt, in cases like
//
//     @ 4.2(1) 4.2(1) a match line is another one
//      class-map type qos voice                  a line of both texts
//     -  match cos 5                             of the original only
//     +  match cos 4                             of the result only
//     = IC023 1,2|1,2 class-map voice has ...    a difference, with the lines of both texts
//     > class-map type qos voice                 the lines of a fix, with a blank line between two
//     ! no lines were found that ...             why there is none for an error
//     ? system qos: several policies ...         what the release of the result has no form for
//
// With one release the text is judged by itself, and with "@@" nothing is mended. What differs from
// what is written there can be taken over with GOLDEN_ACCEPT in the environment, and read before it
// is kept.

#include "meaning/compare.h"
#include "mending/mend.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

using namespace infraconvert;

struct case_t {
    std::string title, texts; // as they are written
    std::vector<std::string> releases;
    std::string original, result, told;
};

void begin(std::vector<case_t> &cases, const std::string &line) {
    cases.push_back({line + '\n', {}, {}, {}, {}, {}});
    std::istringstream words(line.substr(line.find(' ')));
    for (std::string word; words >> word && isdigit(static_cast<unsigned char>(word[0]));)
        cases.back().releases.push_back(word);
}

void add(case_t &to, const std::string &line) {
    const char mark = line.empty() ? ' ' : line[0];
    if (mark != ' ' && mark != '-' && mark != '+') {
        to.told += line + '\n';
        return;
    }
    to.texts += line + '\n';
    const std::string text = line.empty() ? "\n" : line.substr(1) + '\n';
    to.original += mark == '+' ? "" : text;
    to.result += mark == '-' ? "" : text;
}

std::vector<case_t> cases_in(const std::filesystem::path &file) {
    std::vector<case_t> cases;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);)
        line.starts_with('@') ? begin(cases, line) : add(cases.back(), line);
    return cases;
}

std::string listed(const std::vector<uint32_t> &lines) {
    std::string text;
    for (const uint32_t line : lines)
        text += (text.empty() ? "" : ",") + std::to_string(line);
    return text;
}

std::string told_of(const std::vector<meaning::difference_t> &differences, const char *mark) {
    std::string told;
    for (const auto &difference : differences)
        told += std::string(mark) + difference.code.name() + ' ' + listed(difference.before) + '|' +
                listed(difference.after) + ' ' + difference.words + '\n';
    return told;
}

std::string fixes_of(const mending::mended_t &mended) {
    std::string told;
    for (const mending::fix_t &fix : mended.fixes) {
        told += told.empty() ? "" : ">\n";
        for (const std::string &line : lines_of(fix.commands))
            told += "> " + line + '\n';
    }
    for (const mending::by_hand_t &left : mended.by_hand)
        told += "! " + left.why + '\n';
    return told;
}

std::string told_of(const case_t &asked) {
    if (asked.releases.size() == 1)
        return told_of(meaning::judge_form(asked.original, asked.releases[0]), "= ");
    const std::vector<std::string_view> route(asked.releases.begin(), asked.releases.end());
    const meaning::original_t original(asked.original, route.front());
    std::string told = told_of(original.compare(asked.result, route), "= ");
    if (!asked.title.starts_with("@@"))
        told += fixes_of(
            mending::mend({.original = asked.original, .result = asked.result, .route = route}));
    return told + told_of(meaning::unsayable(asked.original, route.front(), route.back()), "? ");
}

TEST(judged, as_it_is_written) {
    size_t count = 0;
    for (const auto &entry : std::filesystem::directory_iterator(JUDGED_DIRECTORY)) {
        std::string now;
        for (const case_t &each : cases_in(entry.path())) {
            const std::string told = told_of(each);
            if (!getenv("GOLDEN_ACCEPT")) {
                EXPECT_EQ(told, each.told)
                    << entry.path().filename() << ": " << each.title << each.texts;
            }
            now += each.title + each.texts + told;
            count++;
        }
        if (getenv("GOLDEN_ACCEPT"))
            std::ofstream(entry.path()) << now;
    }
    EXPECT_GT(count, 20U);
}

} // namespace
