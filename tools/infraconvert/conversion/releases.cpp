// The converters take any text for a release and go on with the numbers that they happened to read,
// so a slip of the keyboard would silently choose other rules.

#include "conversion/releases.h"

#include "base/errors.h"
#include "base/messages.h"
#include "conversion/border_releases.h"
#include "engine/release.h"

#include <iterator>
#include <regex>
#include <vector>

namespace infraconvert {

namespace {

constexpr const char *accepted_forms = "accepted forms: 4.1(3), 5.0(3)U2(1), 4.1(3)K2(1)";

// Numbers of at most nine digits fit the converters' 32 bits.
constexpr const char *release_form = R"(\d{1,9}\.\d{1,9}\(\d{1,9}[a-z]*\))";
constexpr const char *train_form = R"([A-Z]\d{1,9}\(\d{1,9}[a-z]*\))";

const std::regex &complete_release() {
    static const std::regex form(std::string(release_form) + "(" + train_form + ")?");
    return form;
}

// A release with something behind it, of which nobody knows what it is.
const std::regex &release_and_more() {
    static const std::regex form(std::string(release_form) + "[^]*");
    return form;
}

// The fields in the order in which releases follow one another.
auto rank(const std::string &text) {
    engine::release_t k, u;
    engine::read_release(k, engine::release_format_t::k_train, text.c_str());
    engine::read_release(u, engine::release_format_t::product, text.c_str());
    return std::tuple(k.major, k.minor, k.patch, k.kesto_major, k.kesto_minor, u.product,
                      u.subversion);
}

// The numbers and the train of a text that is no release, in the form of one; empty when they do
// not make one.
std::string respelled(const std::string &text) {
    static const std::regex parts(
        R"(\D*(\d{1,9})\D+(\d{1,9})\D+(\d{1,9})([a-z]*)[^A-Za-z\d]*(([A-Z])(\d{1,9})(\D+(\d{1,9}[a-z]*))?)?\D*)");
    std::smatch part;
    if (!std::regex_match(text, part, parts))
        return "";
    const std::string release =
        part.str(1) + '.' + part.str(2) + '(' + part.str(3) + part.str(4) + ')';
    if (!part[5].matched)
        return release;
    return release + part.str(6) + part.str(7) + '(' + (part[9].matched ? part.str(9) : "1") + ')';
}

// "5.0(1), 5.0(2) or 5.0(3)": the releases known here that begin like this.
std::string releases_of(const std::string &beginning) {
    std::vector<std::string> known;
    for (const std::string release : border_releases) {
        if (release.starts_with(beginning + '('))
            known.push_back(release);
    }
    std::string list;
    for (size_t i = 0; i < known.size(); i++)
        list += (i == 0 ? "" : i + 1 < known.size() ? ", " : " or ") + known[i];
    return list;
}

std::string suggestion_for(const std::string &text) {
    if (const std::string likely = respelled(text); !likely.empty())
        return "; did you mean '" + likely + "'?";
    const std::string list = releases_of(text);
    return list.empty() ? "" : "; did you mean " + list + "?";
}

void warn_beyond_the_last(const char *option, const std::string &text) {
    const std::string last = *std::rbegin(border_releases);
    if (is_older(last, text))
        message(std::string("warning: ") + option + ": " + text + " is newer than " + last +
                ", the last release known here; its rules are the last known, and they are used");
}

} // namespace

bool is_complete_release(const std::string &text) {
    return std::regex_match(text, complete_release());
}

void require_release(const char *option, const std::string &text) {
    if (text.empty())
        throw usage_error_t(std::string("missing ") + option + " RELEASE (" + accepted_forms + ")");
}

void check_release(const char *option, const std::string &text) {
    require_release(option, text);
    if (!std::regex_match(text, release_and_more()))
        throw usage_error_t(std::string(option) + ": '" + text + "' is not a release" +
                            suggestion_for(text) + " (" + accepted_forms + ")");
    if (!is_complete_release(text))
        message(std::string("warning: ") + option + ": '" + text +
                "' is an unusual release; the converters read it only as far as they know it" +
                suggestion_for(text) + " (" + accepted_forms + ")");
    warn_beyond_the_last(option, text);
}

bool is_older(const std::string &one, const std::string &other) { return rank(one) < rank(other); }

} // namespace infraconvert
