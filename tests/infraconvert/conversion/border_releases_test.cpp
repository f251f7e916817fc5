// The list of border releases against the converters' rules, over a fine grid of releases.

#include "conversion/border_releases.h"

#include "conversion/services.h"
#include "engine/release.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace infraconvert;

std::vector<std::string> grid() {
    std::vector<std::string> releases;
    for (const char *number : {"3.", "4.", "5.", "6.", "7."}) {
        for (const char *minor : {"0", "1", "2", "3"}) {
            for (const char *patch : {"(1)", "(2)", "(3)", "(4)", "(5)"}) {
                for (const char *train : {"", "K1(1)", "K1(2)", "K2(1)", "K2(2)", "K3(1)", "U1(1)",
                                          "U1(2)", "U2(1)", "U2(2)", "U3(1)"})
                    releases.push_back(std::string(number) + minor + patch + train);
            }
        }
    }
    return releases;
}

// For the order of releases.
auto numbers_of(const std::string &text) {
    engine::release_t k, u;
    engine::read_release(k, engine::release_format_t::k_train, text.c_str());
    engine::read_release(u, engine::release_format_t::product, text.c_str());
    return std::tuple(k.major, k.minor, k.patch, k.kesto_major, k.kesto_minor, u.product,
                      u.subversion);
}

std::string border_of(const std::string &release) {
    std::string border = border_releases[0];
    for (const char *each : border_releases) {
        if (numbers_of(each) <= numbers_of(release))
            border = each;
    }
    return border;
}

// The rules from `release` to all others, and from all others to it.
std::string rules_of(const std::string &release, const std::vector<std::string> &others) {
    std::string rules;
    for (const service_t &service : services()) {
        for (const std::string &other : others) {
            rules += other + " to it: " + routing_of(service, {other, release}).ids() + ", back: ";
            rules += routing_of(service, {release, other}).ids() + '\n';
        }
    }
    return rules;
}

TEST(border_releases, no_rule_begins_or_ends_between_two) {
    // Borders that only see each other are seen by releases between them.
    std::vector<std::string> others(std::begin(border_releases), std::end(border_releases));
    for (const char *between :
         {"3.3(5)", "4.0(3)", "4.3(1)", "5.2(1)", "5.3(5)", "6.2(1)", "7.0(1)"})
        others.emplace_back(between);
    for (const std::string &release : grid()) {
        const std::string border = border_of(release);
        ASSERT_TRUE(rules_of(release, others) == rules_of(border, others))
            << release << " has other rules than " << border << ", the border release before it: "
            << "add it to the list";
    }
}

TEST(border_releases, come_oldest_first) {
    EXPECT_TRUE(
        std::is_sorted(std::begin(border_releases), std::end(border_releases),
                       [](const char *a, const char *b) { return numbers_of(a) < numbers_of(b); }));
}

} // namespace
