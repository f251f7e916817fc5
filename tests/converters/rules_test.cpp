// At most one rule of a converter applies to a pair of releases: the routing would run both, and
// what the second one returns would hide that the first one failed.

#include "assoc/assoc_converter.h"
#include "assoc/assoc_engine.h"
#include "fc_port_sec/fcportsec_converter.h"
#include "fwm/fwmcnv_converter.h"
#include "ipqosmgr/qosmgrcnv_4_1_3.h"
#include "npiv/npiv_converter.h"
#include "satmgr/satcnv_converter.h"

#include <gtest/gtest.h>
#include <set>

using engine::release_t;

namespace {

struct converter_t {
    engine::engine_t &instance;
    std::span<const engine::rule_t> rules;
};

std::vector<converter_t> converters() {
    std::vector<converter_t> all = {{assoc_engine, assoc_rules}};
    for (const engine::conversion_t *conversion :
         {&qoscnv_conversion, &fcportsec_conversion, &npiv_conversion, &fwmcnv_conversion,
          &satcnv_conversion})
        all.push_back({conversion->engine, conversion->rules});
    return all;
}

// Every border of a rule with its neighbours, and much in between.
std::vector<std::string> fine_grid() {
    std::vector<std::string> releases;
    for (const char *train :
         {"", "U1(1)", "U2(1)", "N2(1)", "K1(0)", "K1(1)", "K2(0)", "K2(1)", "K2(2)", "K3(1)"}) {
        for (int major = 3; major <= 6; major++) {
            for (int minor = 0; minor <= 3; minor++) {
                for (int patch = 0; patch <= 4; patch++)
                    releases.push_back(std::to_string(major) + '.' + std::to_string(minor) + '(' +
                                       std::to_string(patch) + ')' + train);
            }
        }
    }
    return releases;
}

// The releases as the instance reads them, each once.
std::vector<release_t> as_read(const engine::engine_t &instance) {
    std::vector<release_t> releases;
    std::set<std::tuple<int, int, int, int, int, char, int>> seen;
    for (const std::string &text : fine_grid()) {
        release_t r;
        engine::read_release(r, instance.format, text.c_str());
        if (seen.emplace(r.major, r.minor, r.patch, r.kesto_major, r.kesto_minor, r.product,
                         r.subversion)
                .second)
            releases.push_back(r);
    }
    return releases;
}

std::string words(const release_t &r) {
    return testing::PrintToString(engine::quintuple(r)) + r.product + std::to_string(r.subversion);
}

} // namespace

TEST(rules, at_most_one_applies_to_a_pair_of_releases) {
    for (const auto &[instance, rules] : converters()) {
        std::set<std::string> applied;
        const std::vector<release_t> releases = as_read(instance);
        for (const release_t &from : releases) {
            for (const release_t &to : releases) {
                instance.from = from;
                instance.to = to;
                std::vector<std::string> ids;
                for (const engine::rule_t &rule : rules) {
                    if (rule.applies())
                        ids.emplace_back(rule.id);
                }
                ASSERT_LE(ids.size(), 1u)
                    << words(from) << " to " << words(to) << ": " << ids[0] << " and " << ids[1];
                applied.insert(ids.begin(), ids.end());
            }
        }
        EXPECT_EQ(applied.size(), rules.size()) << instance.prefix << ": a rule of no pair";
    }
}
