// The engine from inside: releases, scanning, edits at the borders of the text, navigation,
// loading.

#include "assoc/assoc_engine.h"
#include "engine/engine.h"
#include "engine/loaded.h"
#include "fc_port_sec/fcportsec_engine.h"
#include "fwm/fwmcnv_engine.h"
#include "ipqosmgr/qosmgrcnv_engine.h"
#include "npiv/npiv_engine.h"
#include "satmgr/satcnv_engine.h"
#include "support/converter_process.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>
#include <utility>

using namespace engine;

TEST(releases, a_text_sets_the_fields_that_it_supplies) {
    struct {
        release_format_t format;
        const char *text;
        release_t expected;
    } const rows[] = {
        {release_format_t::product, "5.0(3)U2(1)", {5, 0, 3, 9, 9, 'U', 2}},
        {release_format_t::product, "4.1(3)", {4, 1, 3, 9, 9, 'x', 9}},
        {release_format_t::product, "4.1", {4, 1, 9, 9, 9, 'x', 9}},
        {release_format_t::k_train, "4.1(3)K2(1)", {4, 1, 3, 2, 1, 'x', 9}},
        {release_format_t::k_train, "4.1(3)K2", {4, 1, 3, 2, 9, 'x', 9}},
        {release_format_t::k_train, "4.1(3u)K2(1u)", {4, 1, 3, 9, 9, 'x', 9}},
        {release_format_t::k_train_or_u, "4.1(3u)K2(1u)", {4, 1, 3, 2, 1, 'x', 9}},
        {release_format_t::k_train_or_u, "4.1(3)K2(1)", {4, 1, 3, 2, 1, 'x', 9}},
        {release_format_t::k_train, "4294967300.1(3)", {4, 1, 3, 9, 9, 'x', 9}},
        {release_format_t::k_train, "next", {9, 9, 9, 9, 9, 'x', 9}},
    };
    for (const auto &row : rows) {
        release_t r = {9, 9, 9, 9, 9, 'x', 9};
        read_release(r, row.format, row.text);
        EXPECT_EQ(quintuple(r), quintuple(row.expected)) << row.text;
        EXPECT_EQ(r.product, row.expected.product) << row.text;
        EXPECT_EQ(r.subversion, row.expected.subversion) << row.text;
    }
}

TEST(releases, a_missing_text_comes_from_the_platform) {
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/release";
    struct {
        const char *content, *plain, *with_k_train;
    } const rows[] = {
        {"4.1(3)K2(1)\nmore", "4.1(3)", "4.1(3)K2(1)"},
        {"4.1(3x)K2(1)", "4.1(3)", "4.1(3)K2(1)"},
        {"5.0(3)U2(1)", "5.0(3)", "5.0(3)K0(0)"},
        {"4.1(3", "4.1(3)", "4.1(3)K0(0)"},
        {"7.2", "7.2(0)", "7.2(0)K0(0)"},
        {"", "0.0(0)", "0.0(0)K0(0)"},
    };
    for (const auto &row : rows) {
        support::write_file(file, row.content);
        setenv(to_release_file_variable, file.c_str(), 1);
        EXPECT_EQ(release_from_platform(to_release_file_variable, false), row.plain);
        EXPECT_EQ(release_from_platform(to_release_file_variable, true), row.with_k_train);
    }
    support::write_file(file, "7.2");
    EXPECT_EQ(release_from_platform(to_release_file_variable, false), "7.2(0)");
    unlink(file.c_str());
    EXPECT_EQ(release_from_platform(to_release_file_variable, false), "0.0(0)");
    unsetenv(to_release_file_variable);
    EXPECT_EQ(release_from_platform(to_release_file_variable, false), "0.0(0)");
    EXPECT_TRUE(npiv_read_versions("4.1(3)", nullptr));
    EXPECT_TRUE(npiv_ver_to_lt_4_1_3_K_2_1());
    EXPECT_FALSE(npiv_read_versions(nullptr, nullptr));
}

TEST(releases, fields_stay_from_the_call_before) {
    fcportsec_read_versions("4.1(3)K2(1)", "4.1(3)K2(2)");
    EXPECT_FALSE(fcportsec_ver_sam());
    EXPECT_TRUE(fcportsec_read_versions("4.1(3)", "4.1(3)K2(1)"));
    EXPECT_TRUE(fcportsec_ver_sam());
}

TEST(scan, words_as_formatted_scanning_reads_them) {
    const std::string longest(area_length, 'w');
    struct {
        std::string line;
        const char *pattern;
        int count;
        std::string words; // with blanks between
    } const rows[] = {
        {"class-map type qos c1", "class-map type %s %s", 2, "qos c1"},
        {"class-map\n type\tqos\n\n c1 rest", "class-map type %s %s", 2, "qos c1"},
        {"class-map typeqos", "class-map type %s %s", 1, "qos"},
        {"class-map c1", "class-map type %s %s", 0, ""},
        {"  class", "  class %s\n", 0, ""},
        {"   classy", "  class %s\n", 1, "y"},
        {"class \xFF", "class %s", 0, ""},
        {"class c\xFF", "class %s", 1, "c\xFF"},
        {std::string("class c\0d", 9), "class %s", 1, "c"},
        {"class " + longest, "class %s", 1, longest},
        {"class " + longest + "x y", "class %s %s", 1, longest + "x"},
    };
    for (const auto &row : rows) {
        const words_t words = scan_words(row.line, row.pattern);
        EXPECT_EQ(words.count, row.count) << row.line;
        std::string read;
        for (int i = 0; i < words.count; i++)
            read += (i > 0 ? " " : "") + words.word[static_cast<size_t>(i)];
        EXPECT_EQ(read, row.words) << row.line;
        EXPECT_EQ(words.too_long() != nullptr, row.words.size() > area_length);
    }
}

TEST(scan, numbers_are_limited_to_32_bits) {
    EXPECT_EQ(scan_number(" \n+12x"), 12);
    EXPECT_EQ(scan_number("-0012"), -12);
    EXPECT_EQ(scan_number("99999999999999999999"), INT32_MAX);
    EXPECT_EQ(scan_number("-99999999999999999999"), INT32_MIN);
    for (const char *none : {"", " ", "x1", "-", "+-1"})
        EXPECT_FALSE(scan_number(none)) << none;
}

TEST(edits, deletions_are_cut_to_the_text) {
    struct {
        position_t from;
        uint32_t size;
        const char *result;
    } const rows[] = {
        {2, 3, "abfg\n"},
        {5, 99, "abcde"},
        {0, 7, ""},
        {7, 1, "abcdefg"},
        {99, 1, "abcdefg"},
        {2, UINT32_MAX, "ab"},
        {position_t(-2), 5, "defg\n"},
        {position_t(-2), 2, "abcdefg\n"},
    };
    for (const auto &row : rows) {
        const std::string before =
            row.result[0] && row.result[strlen(row.result) - 1] == '\n' ? "abcdefg\n" : "abcdefg";
        load(fwmcnv_engine, before);
        fwmcnv_delete_text(row.from, row.size);
        EXPECT_EQ(text_of(fwmcnv_engine), row.result) << row.from << ' ' << row.size;
        EXPECT_EQ(fwmcnv_engine.text->at(fwmcnv_engine.text->size()), end_marker);
    }
}

TEST(edits, insertions_that_do_harm_are_refused) {
    load(npiv_engine, "abcd"); // room for 20 bytes, marker and zero included
    EXPECT_TRUE(npiv_insert_text(2, "12"));
    EXPECT_TRUE(npiv_insert_text(6, "e"));
    EXPECT_EQ(text_of(npiv_engine), "ab12cde");
    EXPECT_FALSE(npiv_engine.edit_refused);
    EXPECT_FALSE(npiv_insert_text(8, "x"));
    EXPECT_FALSE(npiv_insert_text(nowhere, "x"));
    EXPECT_FALSE(npiv_insert_text(0, "a\xFF"));
    EXPECT_FALSE(engine::replace_text(npiv_engine, 0, 2, "\xFF"));
    EXPECT_FALSE(npiv_insert_text(0, std::string(12, 'x')));
    EXPECT_EQ(text_of(npiv_engine), "ab12cde");
    EXPECT_TRUE(npiv_engine.edit_refused);
    EXPECT_TRUE(npiv_insert_text(0, std::string(11, 'x')));
    load(npiv_engine, "abcd");
    EXPECT_FALSE(npiv_engine.edit_refused);
}

TEST(edits, removal_goes_on_until_nothing_is_left) {
    struct {
        const char *text, *wanted;
        uint32_t before, after;
        const char *result;
    } const rows[] = {
        {"aabb", "ab", 0, 0, ""},
        {"aaabbb\n", "ab", 0, 0, "\n"},
        {"x  match qos-group 2\n  match qos-group 3\ny", "  match qos-group", 0, 3, "xy"},
        {"a\nmatch qos-group 3\nb", "\nmatch qos-group", UINT32_MAX, 3, "a\nb"},
        {"    set qos-group 12\n", "set qos-group", 4, 3, "\n"},
        {" ab", "ab", 4, 0, ""},            // cut at the start
        {"abc", "ab", 0, 9, ""},            // cut at the end
        {"abc", "b", UINT32_MAX, 0, "abc"}, // removes nothing, and ends
        {"abc", "", 0, 1, "abc"},
        {"abc", "d", 0, 1, "abc"},
    };
    for (const auto &row : rows) {
        load(qoscnv_engine, row.text);
        EXPECT_EQ(qoscnv_remove_regexp(row.wanted, row.before, row.after), 0u);
        EXPECT_EQ(text_of(qoscnv_engine), row.result) << row.text;
    }
}

// The removal as passes over the whole text.
std::string removed_in_passes(std::string text, const std::string &wanted, int before, int after) {
    const auto find = [&](size_t from) {
        return text.substr(0, text.find('\0', from)).find(wanted, from);
    };
    for (bool found = true; found;) {
        found = false;
        for (size_t at = 0; (at = find(at)) != text.npos; found = true) {
            const int first = static_cast<int>(at) - before;
            const int end = first + before + after + static_cast<int>(wanted.size());
            const size_t size = text.size(), start = static_cast<size_t>(std::max(first, 0));
            if (end > first && end > 0 && start < size)
                text.erase(start, static_cast<size_t>(end) - start);
            if (text.size() == size)
                return text;
        }
    }
    return text;
}

TEST(edits, removal_ends_as_passes_over_the_whole_text_do) {
    std::mt19937 random(1);
    const auto below = [&](size_t limit) { return random() % limit; };
    for (int i = 0; i < 2000; i++) {
        const std::string_view letters = i % 3 ? "aab" : std::string_view("aabababaabab\0", 13);
        std::string text;
        for (size_t length = 1 + below(40); length > 0; length--)
            text += letters[below(letters.size())];
        const std::string wanted = std::array{"ab", "aab", "aba", "ba"}[below(4)];
        const int before = std::array{0, 1, 4, -1, -2}[below(5)],
                  after = std::array{0, 1, 3}[below(3)];
        load(qoscnv_engine, text);
        qoscnv_remove_regexp(wanted.c_str(), static_cast<uint32_t>(before),
                             static_cast<uint32_t>(after));
        ASSERT_EQ(text_of(qoscnv_engine), removed_in_passes(text, wanted, before, after))
            << text << ' ' << wanted << ' ' << before << ' ' << after;
    }
}

TEST(edits, removal_without_a_word_or_a_text) {
    load(npiv_engine, "ab\n");
    EXPECT_EQ(npiv_remove_substring(""), 0u);
    EXPECT_EQ(text_of(npiv_engine), "ab\n");
    delete std::exchange(npiv_engine.text, nullptr);
    EXPECT_EQ(npiv_remove_substring("a"), 0u);
    EXPECT_EQ(npiv_nextline(0), nowhere);
}

TEST(navigation, a_stanza_begins_with_an_ascii_letter) {
    const std::string first_bytes = "AZaz@[`{09 !\xC4\xE4";
    for (const char first : first_bytes) {
        load(npiv_engine, std::string(1, first));
        EXPECT_EQ(npiv_nextstanza(0), first_bytes.find(first) < 4) << first;
    }
}

TEST(navigation, previous_lines_and_sections) {
    load(qoscnv_engine, "a\n  b\npolicy-map p\n");
    EXPECT_EQ(qoscnv_prevline(3, 0), 2u);
    EXPECT_EQ(qoscnv_prevline(5, 0), 2u);
    EXPECT_EQ(qoscnv_prevline(0, 0), 0u);
    EXPECT_EQ(qoscnv_prevline(3, 3), 3u);
    EXPECT_EQ(qoscnv_prevline(nowhere, 0), nowhere);
    EXPECT_EQ(qoscnv_file_start_qossection(), 5u);
    load(qoscnv_engine, "class-map c\n");
    EXPECT_EQ(qoscnv_file_start_qossection(), nowhere);
}

TEST(navigation, a_zero_byte_ends_the_text_behind_it) {
    load(qoscnv_engine, std::string_view("ab\nc\0d\nclass", 12));
    EXPECT_EQ(qoscnv_find("d", 0), nowhere);
    EXPECT_EQ(qoscnv_find("d", 5), 5u);
    EXPECT_EQ(qoscnv_nextline(3), nowhere);
    EXPECT_EQ(qoscnv_getline(3, 99), "c");
    EXPECT_EQ(qoscnv_engine.text->end(0), 4u);
    EXPECT_EQ(qoscnv_engine.text->end(5), 12u);
    EXPECT_EQ(qoscnv_goto_nextstanza(5), 7u);
}

TEST(loading, failures_say_why) {
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/ascii/system.cfg";
    errno = 0;
    EXPECT_EQ(satcnv_read_ascii_file(nullptr), failure);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(satcnv_write_ascii_file(nullptr), failure);
    EXPECT_EQ(satcnv_read_ascii_file(place.path().c_str()), failure);
    support::write_file(file, "");
    EXPECT_EQ(satcnv_read_ascii_file(place.path().c_str()), failure);
    EXPECT_EQ(satcnv_read_ascii_file(std::string(300, '/').c_str()), failure);
}

// Positions are traced as signed numbers, so the file with its room must be one. The last size
// would look like a small one in 32 bits.
TEST(loading, a_file_may_be_too_large) {
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/ascii/system.cfg";
    support::write_file(file, "");
    for (engine_t *instance : {&satcnv_engine, &assoc_engine}) {
        const int64_t most =
            (INT32_MAX - int64_t{instance->capacity_extra}) / instance->capacity_factor;
        for (const int64_t size : {most + 1, (int64_t{1} << 32) + 5}) {
            ASSERT_EQ(truncate(file.c_str(), size), 0);
            EXPECT_EQ(read_ascii_file(*instance, place.path().c_str()), failure);
            EXPECT_EQ(errno, ENOMEM) << size;
        }
    }
}
