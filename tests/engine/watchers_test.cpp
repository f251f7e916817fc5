// Searches that remember against searches anew, over random edits.

#include "engine/loaded.h"
#include "engine/watchers.h"
#include "npiv/npiv_engine.h"

#include <memory>
#include <random>
#include <tuple>

using engine::nowhere;
using engine::position_t;

namespace {

constexpr std::string_view wanted = "aba";

position_t last_of(std::string_view text) {
    position_t last = nowhere;
    for (position_t at = 0; (at = engine::find(npiv_engine, text, at)) != nowhere; at++)
        last = at;
    return last;
}

class random_watchers_t : public testing::TestWithParam<uint32_t> {
  protected:
    uint32_t below(uint32_t limit) { return static_cast<uint32_t>(random()) % limit; }

    // Two letters, so that hits come, go and overlap; zero bytes in some texts only.
    std::string some_bytes(uint32_t length) {
        const std::string_view letters =
            GetParam() % 2 ? "ab\n" : std::string_view("abababab\n\0", 10);
        std::string bytes;
        while (bytes.size() < length)
            bytes += letters[below(static_cast<uint32_t>(letters.size()))];
        return bytes;
    }

    void edit() {
        const uint32_t size = npiv_engine.text->size();
        const position_t at = below(size + 2);
        if (below(2) == 0)
            npiv_delete_text(at, below(5));
        else if (npiv_engine.text->has_room(at, 5) && !npiv_insert_text(at, some_bytes(below(6))))
            FAIL() << "refused at " << at;
    }

    void compare() {
        const position_t at = below(npiv_engine.text->size() + 2);
        ASSERT_EQ(ahead.from(at), npiv_find(at));
        ASSERT_EQ(from_start.from(0), npiv_find(0));
        ASSERT_EQ(last.find(0), last_of("aba"));
        ASSERT_EQ(last.find(1), last_of("abba"));
        const position_t hit = last_of("aba"), hit_at_line = last_of("\nab");
        ASSERT_EQ(last.stanza_behind(0), hit == nowhere ? nowhere : npiv_goto_nextstanza(hit));
        ASSERT_EQ(last_at_line.stanza_behind(0),
                  hit_at_line == nowhere ? nowhere : npiv_goto_nextstanza(hit_at_line + 1));
    }

    static position_t npiv_find(position_t at) { return engine::find(npiv_engine, wanted, at); }

    std::mt19937 random{GetParam()};
    engine::search_ahead_t ahead{npiv_engine, wanted}, from_start{npiv_engine, wanted};
    engine::last_hits_t last{npiv_engine, "ab", {"a", "ba"}};
    engine::last_hits_t last_at_line{npiv_engine, "\n", {"ab"}};
};

TEST_P(random_watchers_t, know_what_a_search_would_find) {
    for (int text = 0; text < 20; text++) {
        load(npiv_engine, some_bytes(1 + below(60)));
        for (int step = 0; step < 300 && !HasFatalFailure(); step++) {
            edit();
            if (below(3) != 0) // several edits may come between two looks
                compare();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(seeds, random_watchers_t, testing::Range(1u, 7u));

// Deletions are cut to the text.
TEST(watchers, are_told_what_an_edit_did) {
    using told_t = std::tuple<position_t, uint32_t, uint32_t>;
    struct recorder_t final : engine::edit_watcher_t {
        using edit_watcher_t::edit_watcher_t;
        void edited(const engine::edit_t &edit) override { last = edit; }
        told_t told() const { return {last.at, last.removed, last.inserted}; }
        engine::edit_t last = {};
    };
    load(npiv_engine, "abcdefg\n");
    const recorder_t recorder(npiv_engine);
    npiv_delete_text(2, 3);
    EXPECT_EQ(recorder.told(), told_t(2, 3, 0));
    npiv_delete_text(3, 99);
    EXPECT_EQ(recorder.told(), told_t(3, 2, 0));
    npiv_delete_text(position_t(-1), 2);
    EXPECT_EQ(recorder.told(), told_t(0, 1, 0));
    EXPECT_TRUE(npiv_insert_text(1, "xyz"));
    EXPECT_EQ(recorder.told(), told_t(1, 0, 3));
    EXPECT_TRUE(engine::replace_text(npiv_engine, 0, 2, "p"));
    EXPECT_EQ(recorder.told(), told_t(0, 2, 1));
    EXPECT_EQ(text_of(npiv_engine), "pyzf");
}

TEST(watchers, end_in_any_order) {
    struct counter_t final : engine::edit_watcher_t {
        using edit_watcher_t::edit_watcher_t;
        void edited(const engine::edit_t &) override { count++; }
        int count = 0;
    };
    load(npiv_engine, "abcd\n");
    counter_t stays(npiv_engine);
    auto first = std::make_unique<counter_t>(npiv_engine);
    const counter_t last(npiv_engine);
    first.reset();
    npiv_delete_text(0, 1);
    EXPECT_EQ(stays.count + last.count, 2);
}

} // namespace
